#pragma once
// When clocks are put forward and back, by the year.
#include <optional>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// A day on which clocks are changed, as a rule of its month; the local date before the change.
struct ClockChange {
    int32 month = 0;       // 1 to 12; 0: clocks are never changed
    int32 dayOfWeek = 0;   // 0 Sunday .. 6 Saturday
    int32 occurrence = 0;  // 1 to 4: which one of the month; 5: the last
};

// What holds in a zone for a year. Minutes: UTC is local time and `bias` and what holds of the other two.
struct ZoneYear {
    int32 bias = 0;
    int32 standardBias = 0;
    int32 daylightBias = 0;
    ClockChange daylight;  // to summer time
    ClockChange standard;  // back
};

class TimeZones {
 public:
    virtual ~TimeZones() = default;
    // Of a zone by its name in the public zone data ("Europe/Berlin"), or of this machine's zone at this
    // moment for an empty name; nothing for a name that is not there. A year in which the zone did not go to
    // summer time once and back once, or which the data do not reach, has the rules of the present.
    virtual std::optional<ZoneYear> year(TextView zone, int32 year) = 0;
};

}  // namespace tsRtm::platform
