#pragma once
#include <QTextDocument>
#include <vector>

#include "tsRtm/frame/rtf/Formats.hpp"

namespace tsRtm::desktop {

struct RichFlow;

// What a document holds of a paragraph, or a row of a table.
struct RichPart {
    int32 start = 0, end = 0;  // characters of the text
    int32 space = 0;           // above it, twips, also where it begins a page
    // Of a paragraph with a box; whether this begins and ends with it.
    const rtf::ParagraphFormat* boxed = nullptr;
    bool opens = false, closes = false;
};

// Fills an empty document with a text from one of its characters on, until it has `most` of them or the text
// ends; of rows whole ones. One of its units is a twip. What it holds, in its order: whatever blocks else are
// in the document are nobody's, and take no room.
std::vector<RichPart> fillDocument(QTextDocument& document, const RichFlow& flow, int32 from, int32 most);

// Where a paragraph's box stands: from the left and from the right margin.
std::pair<int32, int32> edgesOf(const rtf::ParagraphFormat& format);

// Whether a block is that of a paragraph.
bool isParagraph(const QTextBlock& block);

}  // namespace tsRtm::desktop
