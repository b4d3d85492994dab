#pragma once
// The date conversions that records and index keys need, free of any object. clsDatum gives the same answers.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Sort form JJJJMMTT of a local date; empty for an empty date and for one that begins with "J".
Text DateSort(TextView Datum);
// Chronological Julian day number of a local date; 0 for an empty one. Two-digit years reach ten years ahead.
int32 JulianDay(TextView Datum);
// Local digits of a day number; empty at or below 1720995.
Text KalenderDay(int32 TagesZahl);

}  // namespace tsRtm
