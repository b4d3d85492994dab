#pragma once
// Day numbers and the calendar reform. Stored data and holiday rules rest on these very formulas, truncation
// and all.
#include "tsRtm/calendar/days/DateForms.hpp"

namespace tsRtm::dates {

constexpr int32 kLastJulianDay = 2299160;      // 4.10.1582
constexpr int32 kFirstGregorianDay = 2299161;  // 15.10.1582
constexpr int32 kFloor = 1720995;              // day numbers up to here have no date
constexpr int32 kSerialOffset = 2415019;       // day number of Date serial 0, 30.12.1899
constexpr int32 kSerialEnd = 2958466;          // first Date serial behind 31.12.9999

// A two-digit year, seen from `currentYear`: the range ends ten years ahead.
int64 widenYear(int64 year, int32 currentYear) noexcept;
// The system's year when it was first asked for; never refreshed, so that one process widens all years alike.
int32 currentYear();

// Chronological Julian day number of a date in its parts, and of a local date, 0 for an empty one.
int32 dayNumber(int64 day, int64 month, int64 year) noexcept;
int32 julianDay(TextView date);
// Local digits of a day number; empty at or below kFloor.
DateDigits gregorianDate(int32 dayNumber) noexcept;
DateDigits julianDate(int64 dayNumber) noexcept;
// The year that a day number lies in, above 9999 too; 0 at or below kFloor.
int32 yearOf(int32 dayNumber) noexcept;

// 30/360: days from year 1 on, a 31st counting as the 30th.
int32 bankDay(TextView date);

// Week of the year (ISO 8601).
int32 weekNumber(TextView date);

// A date in its parts, six digits widened.
struct DateParts {
    int32 day = 0, month = 0, year = 0;
};
DateParts split(TextView date);

}  // namespace tsRtm::dates
