#include "tsRtm/calendar/days/DayNumbers.hpp"

#include <limits>

#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::dates {
namespace {

// Half the range of int32, so that the difference of two nonsense dates is still a number.
int32 narrow(int64 value) noexcept {
    constexpr int64 kLimit = std::numeric_limits<int32>::max() / 2;
    return static_cast<int32>(std::clamp(value, -kLimit, kLimit));
}

// January and February count as months 13 and 14 of the year before, so that the leap day comes last.
struct MarchYear {
    int64 year, month;
};
MarchYear marchYear(int64 month, int64 year) noexcept {
    return month < 3 ? MarchYear{year - 1, month + 13} : MarchYear{year, month + 1};
}

// From the day number in the Julian calendar to the one in the calendar of the time.
int64 reformed(int64 dayNumber, int64 year, int64 marchYear) noexcept {
    constexpr int64 kTenDaysOn = kFirstGregorianDay + 11;
    if (dayNumber >= kTenDaysOn) {
        dayNumber -= 10;
        const auto century = marchYear / 100;
        // From 1700 on, since 1600 is a leap year in both calendars.
        return year > 1699 ? dayNumber + 16 - century + (century - 16) / 4 : dayNumber;
    }
    // The ten days that never were all stand for the first one of the new calendar.
    return dayNumber > kLastJulianDay ? kFirstGregorianDay : dayNumber;
}

struct Parts {
    int64 day, month, year;
};

// The date of a day number in the Julian calendar, the day number above kFloor.
Parts julianParts(int64 dayNumber) noexcept {
    const auto days = dayNumber - kFloor;
    const auto year = (100 * days - 12210) / 36525;
    const auto rest = days - 1461 * year / 4;
    const auto k = 10000 * rest / 306001;
    const auto month = k < 14 ? k - 1 : k - 13;
    return {rest - 306001 * k / 10000, month, month < 3 ? year + 1 : year};
}

// The day number that has the same date in the Julian calendar as this one has in the calendar of its time.
int64 unreformed(int64 dayNumber) noexcept {
    if (dayNumber <= kLastJulianDay) return dayNumber;
    auto shifted = dayNumber + 10;
    // The century step counts whole 36524s, so it runs ahead of the true rule from 28.2.2400 on: stored data
    // agree.
    if (dayNumber > 2305507) shifted += (dayNumber - 2305508) / 36524 - (dayNumber - 2305507) / 146097;
    return shifted;
}

// Of the normal form, widened where it has two digits.
int64 yearIn(const DateDigits& normal) {
    const int64 year = number(normal.between(5, 8));
    return normal.size() < 8 ? widenYear(year, currentYear()) : year;
}

// Week of the day number `day` when counted from 1 January of `year`; below 1 when it lies before that year's
// week 1.
int32 weekOfYear(int32 day, int64 year) noexcept {
    const auto first = dayNumber(1, 1, year);
    const auto weekday = first % 7;
    return (weekday - first + day + (weekday < 4 ? 7 : 0)) / 7;
}

// `ownYear` is the one that the date tells.
int32 weekNumber(int32 day, int64 ownYear) noexcept {
    const auto sunday = day - day % 7 + 6;
    const auto year = yearOf(sunday);
    if (const auto week = weekOfYear(sunday, year); week >= 1) return week;
    // The last week of the year before.
    if (year == ownYear) return weekNumber(dayNumber(1, 1, year) - 1, year - 1);
    return weekOfYear(day, ownYear);
}

}  // namespace

int64 widenYear(int64 year, int32 currentYear) noexcept {
    const int32 pivot = (currentYear + 10) % 100;
    const bool turnIsNear = currentYear % 100 >= 90;
    const auto widened = year + 100 * (currentYear / 100);
    if (year < pivot) return turnIsNear ? widened + 100 : widened;
    return turnIsNear ? widened : widened - 100;
}

int32 currentYear() {
    static int32 year = 0;
    if (year == 0) year = rtmMain::system().clock.now().parts().year;
    return year;
}

int32 dayNumber(int64 day, int64 month, int64 year) noexcept {
    const auto [y, m] = marchYear(month, year);
    const auto julian = day + 306001 * m / 10000 + 36525 * y / 100 + kFloor;
    return narrow(reformed(julian, year, y));
}

int32 julianDay(TextView date) {
    if (date.empty()) return 0;
    const auto normal = normalDigits(date);
    const auto month = std::max(number(normal.between(3, 4)), 1);
    const auto day = std::max(number(normal.between(1, 2)), 1);
    return dayNumber(day, month, yearIn(normal));
}

DateDigits gregorianDate(int32 dayNumber) noexcept {
    return dayNumber <= kFloor ? DateDigits() : julianDate(unreformed(dayNumber));
}

DateDigits julianDate(int64 dayNumber) noexcept {
    if (dayNumber <= kFloor) return {};
    const auto date = julianParts(dayNumber);
    // To local form a second time: outside day-first locales this swaps again, and stored data relies on it.
    return toLocal(compose(date.day, date.month, date.year));
}

int32 yearOf(int32 dayNumber) noexcept {
    return dayNumber <= kFloor ? 0 : static_cast<int32>(julianParts(unreformed(dayNumber)).year);
}

int32 weekNumber(TextView date) {
    return weekNumber(julianDay(date), date.empty() ? 0 : yearIn(normalDigits(date)));
}

int32 bankDay(TextView date) {
    const auto normal = normalDigits(date);
    const float64 day = number(normal.between(1, 2));
    const float64 month = number(normal.between(3, 4));
    const float64 year = number(normal.from(5));
    return narrow(roundToInt32((month - 1) * 30 + day - (day > 30 ? 1 : 0) + (year - 1) * 360));
}

DateParts split(TextView date) {
    auto normal = normalDigits(date);
    if (normal.size() == 6) normal = normalDigits(gregorianDate(julianDay(date)).view());
    return {number(normal.between(1, 2)), number(normal.between(3, 4)), number(normal.from(5))};
}

}  // namespace tsRtm::dates
