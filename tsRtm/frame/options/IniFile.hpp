#pragma once
// Values out of INI files.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Longest value that is given, in characters: what fits into a buffer of 32767 with the NUL behind it.
inline constexpr std::size_t kLongestIniValue = 32766;

// The value of a key in the first section of that name; names without regard to case, blanks around them and
// around values do not count, a pair of quotes around a value is taken off, ";" begins a line of comment. A
// value ends at a NUL. An empty section means "Default". Empty for whatever is missing or cannot be read;
// never fails.
//
// The file is in code page 1252, or in UTF-8 or UTF-16 with a mark. It is read piece by piece up to the
// value, whatever its size; of a line beyond a million bytes the rest does not count.
Text iniValue(TextView path, TextView section, TextView key);

}  // namespace tsRtm
