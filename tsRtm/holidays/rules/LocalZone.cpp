#include "tsRtm/holidays/rules/LocalZone.hpp"

#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::holidays {

const platform::ZoneYear& LocalZone::of(int32 year) {
    if (year_ != year) {
        rules_ = rtmMain::system().zones.year({}, year).value_or(platform::ZoneYear{});
        year_ = year;
    }
    return rules_;
}

Text LocalZone::dayOf(const platform::ClockChange& change, int32 year) {
    // The zone counts weekdays from Sunday, the calendar from Monday.
    const auto weekday = static_cast<Wochentage>((change.dayOfWeek + 6) % 7);
    return clsDatum().FindDate(year, change.month, weekday, change.occurrence);
}

float64 LocalZone::hoursAhead(TextView date) {
    constexpr float64 kMinutesPerHour = 60;
    const clsDatum calendar;
    Text today;
    if (date.empty()) {
        const auto now = rtmMain::system().clock.now().parts();
        date = today = calendar.DtoC(now.day, now.month, now.year);
    }
    const int32 year = dates::split(date).year;
    const auto& rules = of(year);
    const int32 day = calendar.JulianDay(date);
    const int32 begin = calendar.JulianDay(summerTimeBegins(year));
    const int32 end = calendar.JulianDay(summerTimeEnds(year));
    const bool northern = begin < end;
    const bool summer = northern ? begin <= day && day < end : day < end || begin <= day;
    return -(rules.bias + (summer ? rules.daylightBias : rules.standardBias)) / kMinutesPerHour;
}

}  // namespace tsRtm::holidays
