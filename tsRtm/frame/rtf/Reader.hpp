#pragma once
// Reads RTF texts (Rich Text Format 1.9): runs of equal format, and the breaks between them.
#include "tsRtm/frame/rtf/Formats.hpp"

namespace tsRtm::rtf {

// Characters of one format. Valid during the call only.
struct Run {
    TextView text;  // tabulators are u'\t'; no line ends
    const CharacterFormat& format;
    const Font& font;
    Colour colour, background;
};

enum class Break {
    paragraph,
    line,
    page,  // of a section or column, too
    cell,  // of a table
    row,
    end,  // of the text: the last paragraph may have had no end of its own
};

// Takes what a text consists of, in its order.
class Visitor {
 public:
    virtual ~Visitor() = default;
    virtual void onRun(const Run& run) = 0;
    // `format` is that of the paragraph in which the break stands; it counts for the whole paragraph where
    // the break ends one. Break::end comes once, last.
    virtual void onBreak(Break kind, const ParagraphFormat& format) = 0;
    // Just before the break that ends a paragraph: how the paragraph's mark looks, on which the height of an
    // empty one rests. Without text.
    virtual void onMark(const Run&) {}
    // Just before the Break::row of a row whose cells were told.
    virtual void onRow(const RowFormat&) {}
    // In the line, as a character is.
    virtual void onPicture(const Picture&) {}
};

// Reads a text to its end. Left out is whatever is no running text: heads and feet, notes, styles, the
// instructions of fields, labels of lists without a letter, and all destinations that are unknown. Characters
// come by the code page of their font or the document, or as Unicode with their stand-ins skipped. Of shapes
// their picture and text come, of tables within a cell their cells with tabs between them, a row a paragraph.
//
// Any text has some reading: broken words mean nothing, groups beyond the thousandth level share one format,
// an unclosed group ends with the text. Time and memory grow with the length and nothing else. Throws only
// what the visitor throws.
void read(TextView rtf, Visitor& visitor);

}  // namespace tsRtm::rtf
