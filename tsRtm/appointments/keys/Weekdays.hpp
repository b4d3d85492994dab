#pragma once
// The weekdays as keys have them.
#include "tsRtm/calendar/Wochentage.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::appointments {

inline constexpr TextView kWeekdayCodes = u"MODIMIDOFRSASO";

constexpr TextView weekdayCode(Wochentage day) {
    return kWeekdayCodes.substr(2 * static_cast<std::size_t>(day), 2);
}

// 1 for "MO" to 7 for "SO", 0 for anything else.
constexpr int32 weekdayOf(TextView code) {
    for (int32 day = Montag; day <= Sonntag; ++day)
        if (weekdayCode(static_cast<Wochentage>(day)) == code) return day + 1;
    return 0;
}

}  // namespace tsRtm::appointments
