#include "tsRtm/calendar/days/DateText.hpp"

#include "tsRtm/calendar/days/DayNumbers.hpp"

namespace tsRtm {

Text DateSort(TextView Datum) { return Text(dates::sortDigits(Datum).view()); }

int32 JulianDay(TextView Datum) { return dates::julianDay(Datum); }

Text KalenderDay(int32 TagesZahl) { return Text(dates::gregorianDate(TagesZahl).view()); }

}  // namespace tsRtm
