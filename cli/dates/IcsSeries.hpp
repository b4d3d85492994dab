#pragma once
// What an event of an iCalendar file becomes in a calendar.
#include "cli/dates/IcsEvents.hpp"
#include "tsRtm/appointments/ical/Recurrence.hpp"

namespace tsRtm::cli {

// Keys with their validity, and the time here; -1 for all day.
struct IcsSeries {
    appointments::KeyedSeries keyed;
    int32 minute = -1;
};
// Days that are left out part a series in two. A series of a zone whose clocks are changed on other days than
// ours has parts with times of their own; where it has no end that cannot be told by keys. Throws a
// std::invalid_argument that says why an event has no keys.
std::vector<IcsSeries> icsSeries(const IcsEvent& event, IcsZones& zones);

}  // namespace tsRtm::cli
