#pragma once
#include <memory>

#include "desktop/paper/RichRows.hpp"

namespace tsRtm::desktop {

struct RichRow {
    rtf::RowFormat format;
    std::vector<RichCell> cells;
};

// A paragraph or a row of a table, with its place in the text.
struct RichItem {
    int32 start = 0, end = 0;  // characters, that of its end among them
    RichParagraph paragraph;
    std::unique_ptr<const RichRow> row;  // in place of the paragraph
};

// A formatted text as it was read, before any width is known: what is laid out are parts of it.
struct RichFlow {
    // Without the end of the last paragraph.
    int32 length() const { return items.empty() ? 0 : items.back().end - 1; }

    std::vector<RichItem> items;
    int32 defaultTab = 720;
};

RichFlow readFlow(TextView rtf);

}  // namespace tsRtm::desktop
