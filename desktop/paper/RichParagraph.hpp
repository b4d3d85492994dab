#pragma once
#include <QColor>
#include <QImage>
#include <QTextCharFormat>
#include <QTextCursor>
#include <vector>

#include "tsRtm/frame/rtf/Formats.hpp"

namespace tsRtm::desktop {

// A paragraph on its way into a document.
struct RichParagraph {
    struct Piece {
        QString text;  // empty: a picture
        QTextCharFormat format;
        QImage picture;

        int32 length() const { return text.isEmpty() ? 1 : static_cast<int32>(text.size()); }
    };

    // Characters, with its end.
    int32 length() const;
    // So many characters from one of them on, into the block of the cursor, which is empty. Spaces add up:
    // `gap` is what the paragraph before wants. The rest of a paragraph has no first line.
    void write(QTextCursor& cursor, int32 gap, int32 from, int32 most) const;

    std::vector<Piece> pieces;
    QTextCharFormat mark;  // the look of its end, where it has no pieces
    rtf::ParagraphFormat format;
};

// Black where the text names none.
inline QColor colourOf(const rtf::Colour& colour) { return QColor(colour.red, colour.green, colour.blue); }

// What a paragraph's box takes above or below it.
inline int32 heightOf(const rtf::Box& box, rtf::Side side) {
    return box.borders[side] > 0 ? box.borders[side] + box.spaces[side] : 0;
}

// A block that is one of a paragraph has this property.
constexpr int kParagraph = QTextFormat::UserProperty + 1;

}  // namespace tsRtm::desktop
