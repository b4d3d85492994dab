#pragma once
// File names and patterns with "*" and "?".
#include "tsRtm/types/Text.hpp"

namespace tsRtm::wildcards {

inline bool contains(TextView name) noexcept { return name.find_first_of(u"*?") != TextView::npos; }

// "*" stands for any characters, "?" for one. Without regard to case.
bool matches(TextView name, TextView pattern);

// The rule for entries of a folder: an empty pattern matches all, and a name without a dot is also tried with
// one at its end where the pattern ends in "." or ".*".
bool matchesEntry(TextView name, TextView pattern);

}  // namespace tsRtm::wildcards
