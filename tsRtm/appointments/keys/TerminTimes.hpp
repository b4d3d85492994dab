#pragma once
// Times of day of appointments, as people type them: hours and minutes apart by the time separator, ":", "."
// or ",".
#include "tsRtm/types/Text.hpp"

namespace tsRtm::appointments {

// Minutes since midnight; 0 for an empty time and for one without a mark. What stands behind the minutes is
// nothing.
int32 minutesOf(TextView time);

// From one time to another, and a time so much later, over midnight too: hours and minutes by the time
// separator. Empty where one of them is no time of a day.
Text timeBetween(TextView from, TextView to);
Text timeAfter(TextView from, TextView duration);

}  // namespace tsRtm::appointments
