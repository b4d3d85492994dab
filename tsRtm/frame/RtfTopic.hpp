#pragma once
// The topic of clsRtm for stored markup and RTF.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Nothing here fails.
class RtfTopic {
 public:
    // Stored markup, lines of commands behind "." and styles behind "~", as RTF; OhneHeader leaves out fonts
    // and colours, for a piece of a larger text. RTF comes back unchanged.
    Text ConvertToRTF(TextView OriginalText, bool OhneHeader = false) const;
    // Plain text of an RTF text: paragraphs, lines and rows end in CR LF, cells and tabulators are tabs. A
    // text that does not begin with "{\rtf" comes back unchanged.
    Text ConvertRTFToText(TextView RTFText) const;
};

}  // namespace tsRtm
