#pragma once
// Options in a text, as in "/Min:1 /Max:10" or "\"/Pattern:a b\" -Min:1".
#include <optional>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The value of an option, empty for one without a value; nothing where it is not there. An option begins with
// "/" or "-" and ends at a blank; one in quotation marks ends at the mark before a blank. Keys are compared
// without regard to case.
std::optional<Text> optionValue(TextView text, TextView key);

}  // namespace tsRtm
