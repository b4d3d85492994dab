#pragma once
// What all the commands about days ask.
#include <string>

#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::cli {

inline const clsDatum kCalendar;

// In the language of the locale; a date is TTMMJJJJ.
std::string weekdayName(TextView date);

// Below the first, the library's dates have two digits for the year.
inline constexpr int32 kFirstYear = 101, kLastYear = 9999;
// Its Julian day; before it a date has no serial number.
inline constexpr int32 kFirstGregorianDay = 2299161;

}  // namespace tsRtm::cli
