// A month's calendar with the holidays of a state: calendar_show [JAHR MONAT].
#include <stdlib.h>

#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

std::string twoWide(int32 number) { return (number < 10 ? " " : "") + std::to_string(number); }

}  // namespace

int main(int argc, char** argv) {
    ::setenv("LC_ALL", "de_DE", 1);  // holidays are asked for in locales that have the day first
    const clsRtm rtm;
    clsCommon().Bundesland(NRW);
    const clsDatum calendar;
    clsFeierTage days;
    days.Rechtsstand(99999999);  // the law of today, with all amendments

    const int32 year = argc > 2 ? ::atoi(argv[1]) : 2026;
    const int32 month = argc > 2 ? ::atoi(argv[2]) : 12;
    const Text first = calendar.DtoC(1, month, year);
    std::cout << toUtf8(calendar.MonthName(first)) << ' ' << year
              << " in Nordrhein-Westfalen; * is a holiday\n"
              << " Mo  Di  Mi  Do  Fr  Sa  So\n"
              << std::string(4 * static_cast<std::size_t>(calendar.DayOfWeek(first)), ' ');
    int32 workdays = 0;
    std::string named;
    for (int32 day = 1; day <= calendar.MonthLen(first); ++day) {
        const Text date = calendar.DtoC(day, month, year);
        std::cout << ' ' << twoWide(day) << (days.IstFeierTag(date) ? '*' : ' ');
        if (calendar.DayOfWeek(date) == Sonntag || day == calendar.MonthLen(first)) std::cout << '\n';
        if (days.NextWorkday(date, 0) == date) ++workdays;
        const auto names = days.TagNamen(date);
        for (std::size_t i = 1; i < names.size(); ++i)
            named += (i > 1 ? ", " : (named.empty() ? "" : "\n") + twoWide(day) + ". ") + toUtf8(names[i]);
    }
    std::cout << named << '\n'
              << workdays << " working days; the first one after the month is "
              << toUtf8(calendar.DateTo8(days.NextWorkday(calendar.LastOfMonth(first), 1))) << '\n';
    return workdays > 0 ? 0 : 1;
}
