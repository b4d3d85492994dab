#pragma once
// The markup of stored long texts: lines of commands behind ".", and "~" with a letter for a style inside a
// line.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The text in RTF. A text that is RTF already (begins with "{\") comes back unchanged. Nothing fails: unknown
// commands and letters vanish. With `withoutHeader` the fonts and colours are left out, for a piece of a
// larger RTF text.
//
// Command lines: LR and RR margins, RA first line, ZE LB RB BS alignment, TL tabulator, PD plain; numbers
// count columns of 144 twips. Styles: F bold, U underlined, K and I italic, B double size, S and E sizes, P
// characters per inch, C colour.
Text markupToRtf(TextView text, bool withoutHeader = false);

}  // namespace tsRtm
