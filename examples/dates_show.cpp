// Dates: their forms, days and bank days between them, months that end.
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

void show(const char* what, TextView answer) { std::cout << what << "  " << toUtf8(answer) << '\n'; }
void show(const char* what, int32 answer) { show(what, toText(answer)); }

}  // namespace

int main() {
    const clsRtm rtm;  // starts the library: dates follow the locale
    const clsDatum calendar;

    // One day in the forms in which it travels. Dates with dots are day first in every locale.
    const Text day = calendar.DateTo6(u"31.12.2024");
    show("digits              ", day);
    show("sorts as text       ", calendar.DateSort(day));
    show("for XML files       ", calendar.DateIso8601(day));
    show("in words            ", calendar.WordDate(day));
    show("day number          ", calendar.JulianDay(day));
    show("week of the year    ", calendar.WeekNr(day));

    // What was typed is tested before it is used.
    show("31.11.2024 is a date", calendar.DateOK(u"31112024") ? u"yes" : u"no");

    // Reckoning: a month more than the last of January is the last of February.
    show("30 days on          ", calendar.DateTo8(calendar.AddDayC(day, 30)));
    show("a month on          ", calendar.DateTo8(calendar.AddMonth(u"31.01.2024", 1)));
    show("days in the year    ", calendar.DifDateC(u"31.12.2023", day));
    show("bank days in it     ", calendar.DifDateB(u"31.12.2023", day));
    show("last Sunday in March", calendar.DateTo8(calendar.FindDate(2024, 3, Sonntag, 5)));

    // The calendar of 1582 went from the 4th to the 15th of October.
    show("the day after 4.10.1582", calendar.DateTo8(calendar.AddDayC(u"04.10.1582", 1)));
    return calendar.AddMonth(u"31.01.2024", 1) == calendar.DateTo6(u"29.02.2024") ? 0 : 1;
}
