#pragma once
// RTF as it lies in files.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtf {

// The bytes of an RTF text, all of them ASCII: each other character becomes a Unicode escape in a group of
// its own,
// "{\uc1\u8364?}". For texts whose own escapes have no stand-ins beyond ASCII, as those that markupToRtf
// gives.
Bytes fileForm(TextView rtf);

}  // namespace tsRtm::rtf
