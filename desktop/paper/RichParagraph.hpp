#pragma once
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
    };

    // Into the block of the cursor, which is empty. Spaces add up: `gap` is what the paragraph before wants.
    void write(QTextCursor& cursor, int32 gap) const;

    std::vector<Piece> pieces;
    QTextCharFormat mark;  // the look of its end, where it has no pieces
    rtf::ParagraphFormat format;
};

// How much of the space above a block is its own.
constexpr int kOwnSpace = QTextFormat::UserProperty + 1;

}  // namespace tsRtm::desktop
