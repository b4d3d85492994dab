#pragma once
// Reads RTF texts.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The plain text of an RTF text: paragraphs and lines end in CR LF, cells and tabulators are tabs; fonts,
// pictures, heads and whatever else is not running text is left out. Damaged and hostile texts give what can
// be read; nothing fails, and time and memory stay proportional to the length.
Text rtfToPlainText(TextView rtf);

}  // namespace tsRtm
