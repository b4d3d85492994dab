#pragma once
// Sort keys of texts with characters outside code page 1252.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::textorder {

// Appends the sort key of such a text. A run of foreign characters weighs as one letter behind all of the
// code page; runs among themselves sort by ICU's German order without regard to case (which may change with
// ICU), or by their codes where ICU has no data.
void appendForeignSortKey(Bytes& key, TextView text);

}  // namespace tsRtm::textorder
