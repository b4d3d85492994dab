#pragma once
// Easter and Advent, from which most days that move are counted.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::holidays {

// Easter Sunday by the Gregorian rule for every year, as local digits (two for a year up to 100).
Text easterSunday(int32 year);
// Easter Sunday of the orthodox churches as a day number.
int32 orthodoxEaster(int32 year) noexcept;
// The first Sunday of Advent as local digits.
Text firstAdvent(int32 year);

}  // namespace tsRtm::holidays
