#pragma once
// Numbers and moments by format texts, under the separators of the locale.
#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// "Standard" (two decimals, thousands marks), or a pattern: "0" a digit that always shows, "#" one that shows
// where it counts, "," thousands marks, "." the decimal mark; "\x" and "..." stand for themselves, as all
// other characters do. What stands in front of the first digit goes in front of the number, all else behind
// it: "#,##0.0 \m\m". Rounds as decimalForm does and raises 6 as it does.
Text Format(float64 value, TextView format);

// "Short Date" (four-digit year), "Short Time" (24 hours, "18:05"), "General Date" (short date and long
// time), or a pattern of d, dd, m, mm, yy, yyyy, h, hh, n and nn (minutes), s, ss, ":" the time mark, "/" the
// date mark, and
// "\x" as above. Names are read without regard to case, pattern letters too.
Text Format(Date moment, TextView format);

// Dates and times by the numbers and marks of a locale: `form` is 0 month day year, 1 day month year, 2 year
// month day, and any other number the first of these behind "-". The year has four digits, the others two.
Text shortDate(const Date::Parts& at, int32 form, TextView mark);
Text shortTime(const Date::Parts& at, TextView mark);
Text longTime(const Date::Parts& at, bool twelveHours, TextView mark);

}  // namespace tsRtm
