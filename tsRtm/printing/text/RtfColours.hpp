#pragma once
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The same formatted text with black where it names no colour: on paper it is not to have the colour that the
// system has chosen for windows. What is no RTF comes back as it is.
Text blackened(TextView rtf);

}  // namespace tsRtm
