#include "tsRtm/calendar/DayNumbers.hpp"

#include <limits>

#include "tsRtm/frame/rtmMain.hpp"

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

int32 julianDay(TextView date) {
    if (date.empty()) return 0;
    const auto present = currentYear();
    const auto normal = normalDigits(date);
    int64 year = number(normal.between(5, 8));
    if (normal.size() < 8) year = widenYear(year, present);
    const auto month = std::max(number(normal.between(3, 4)), 1);
    const auto day = std::max(number(normal.between(1, 2)), 1);
    const auto [y, m] = marchYear(month, year);
    const auto julian = day + 306001 * m / 10000 + 36525 * y / 100 + kFloor;
    return narrow(reformed(julian, year, y));
}

DateDigits gregorianDate(int32 dayNumber) noexcept {
    if (dayNumber <= kFloor) return {};
    int64 shifted = dayNumber;
    if (dayNumber > kLastJulianDay) {
        // The century step counts whole 36524s, so it runs ahead of the true rule from 28.2.2400 on: stored
        // data agree.
        if (dayNumber > 2305507) shifted += (dayNumber - 2305508) / 36524 - (dayNumber - 2305507) / 146097;
        shifted += 10;
    }
    return julianDate(shifted);
}

DateDigits julianDate(int64 dayNumber) noexcept {
    if (dayNumber <= kFloor) return {};
    const auto days = dayNumber - kFloor;
    auto year = (100 * days - 12210) / 36525;
    const auto rest = days - 1461 * year / 4;
    const auto k = 10000 * rest / 306001;
    const auto day = rest - 306001 * k / 10000;
    const auto month = k < 14 ? k - 1 : k - 13;
    if (month < 3) ++year;
    // To local form a second time: outside day-first locales this swaps again, and callers are used to it.
    return toLocal(compose(day, month, year));
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
