#pragma once
// Summer time of the machine's zone, as holiday rules ask for it.
#include <optional>

#include "tsRtm/platform/TimeZones.hpp"

namespace tsRtm::holidays {

// Remembers the year last asked for: make a new one for each question, since the zone may be changed.
class LocalZone {
 public:
    // The days of a year on which clocks are changed, as local digits; empty where they never are.
    Text summerTimeBegins(int32 year) { return dayOf(of(year).daylight, year); }
    Text summerTimeEnds(int32 year) { return dayOf(of(year).standard, year); }
    // Hours from UTC to local time on a date of any local form; today for an empty one.
    float64 hoursAhead(TextView date);

 private:
    const platform::ZoneYear& of(int32 year);
    static Text dayOf(const platform::ClockChange& change, int32 year);

    std::optional<int32> year_;
    platform::ZoneYear rules_;
};

}  // namespace tsRtm::holidays
