#pragma once
// The plain text of RTF.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Paragraphs, lines and rows end in CR LF, cells and tabulators are tabs; all formats and whatever is no
// running text are left out (Reader.hpp tells what). Nothing fails.
Text rtfToPlainText(TextView rtf);

}  // namespace tsRtm
