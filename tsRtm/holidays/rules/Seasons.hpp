#pragma once
// When the seasons begin.
#include "tsRtm/holidays/rules/LocalZone.hpp"

namespace tsRtm::holidays {

// 0 spring, 1 summer, 2 autumn, 3 winter: whole part the day number, fraction the local time of day; 0 for
// any other season. Minutes off the true instant, and in few years the day.
float64 seasonStart(int32 year, int32 season, LocalZone& zone);

}  // namespace tsRtm::holidays
