#pragma once
// The calendar for all who only ask it.
#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::appointments {

inline const clsDatum kCalendar;

}  // namespace tsRtm::appointments
