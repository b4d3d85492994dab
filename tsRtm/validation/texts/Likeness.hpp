#pragma once
// Patterns with wildcards: "?" one character, "*" any run of them, "#" a digit, "[a-z]" one of a set,
// "[!a-z]" one that is not in it.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Whether the whole text is like the pattern, without regard to case. A "[" that nobody closes and a range
// that runs backwards make a pattern that nothing is like. Work that goes beyond a few milliseconds ends as
// unlike.
bool isLike(TextView text, TextView pattern);

}  // namespace tsRtm
