#pragma once
// Keys of appointments: when one is due, in eight characters that an index can be asked for.
//
//   JJJJMMTT   one date; "+" in a place stands for anything there: ++++MMTT each year, ++++++TT each month,
//              JJJJMM++ all days of a month, JJJJ++++ of a year, ++++MM++ of a month in each year, ++++++++
//              each day
//   +++++WW+   each such weekday: MO DI MI DO FR SA SO
//   +++++WWn   the n-th one of each month, 9 the last
//   *Tnnnnnn   every n days from the start date on, *Mnnnnnn every n months
//
// So a date has a handful of keys, and all that is due on it is found by looking them up, but for the last
// two.
#include "tsRtm/types/TerminTypes.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::appointments {

constexpr std::size_t kKeyLength = 8;

// All keys that are due on a date of any local form, one behind the other; empty for an empty date.
Text dateKeys(TextView date);
// The key for what a person types; empty for what says nothing.
//   ""                                every day
//   24.12.2024  241224  24.12.  31    a date; a day of each year; a day of each month
//   .12  .2024  .122024               behind the date separator: a month of each year; a year; a month
//   MO  MO2  MO9                      a weekday; the second one of each month; the last (6 to 9)
//   *14T  *2W  *3M  *1J               every so many days, weeks, months, years; the letter may come first
Text createKey(TextView typed);
// The key in German words, "jeden 2. Montag im Monat"; empty for one date. A part that is not known ends it.
Text wordsOf(TextView key);
eTerminTypen kindOf(TextView key) noexcept;

}  // namespace tsRtm::appointments
