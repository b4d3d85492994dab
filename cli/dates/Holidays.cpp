// tsrtm holidays and tsrtm easter: the named days of a year.
#include <algorithm>
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/dates/Calendar.hpp"
#include "cli/dates/DateExpression.hpp"
#include "cli/dates/HolidayOptions.hpp"
#include "cli/dates/IcsFile.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

// Below 101, the library's dates have two digits for the year.

struct HolidaysOptions : HolidayOptions {
    int32 year = 0;
    bool all = false;
    bool ics = false;
};

struct NamedDay {
    Text date;  // TTMMJJJJ
    std::string name;
    bool holiday;
    std::string law;     // of an amendment
    std::string remark;  // what the law says otherwise
};

Text fourDigits(int32 year) { return toText(int64{year} + 10000).substr(1); }

std::vector<NamedDay> daysOf(int32 year, clsFeierTage& days) {
    std::vector<NamedDay> found;
    const auto rows = days.FeierTage(year);
    for (std::size_t row = 1; row < rows.size(); ++row) {
        const auto& [name, day, kind, fixed] = rows[row];
        if (day.empty()) continue;
        const Text date = day + fourDigits(year);
        const bool holiday = kind != u"0" && days.IstFeierTag(date);
        found.push_back({date, toUtf8(name), holiday, toUtf8(days.Gesetz(static_cast<int32>(row))),
                         holiday ? remarkOn(name) : ""});
    }
    std::stable_sort(found.begin(), found.end(), [](const NamedDay& a, const NamedDay& b) {
        return kCalendar.DateSort(a.date) < kCalendar.DateSort(b.date);
    });
    return found;
}

std::string remarks(const NamedDay& day) {
    return day.remark + (day.remark.empty() || day.law.empty() ? "" : "; ") + day.law;
}

void printIcs(const HolidaysOptions& options, const std::vector<NamedDay>& found) {
    const auto now = rtmMain::system().clock.now().parts();
    const std::string land = chosenLand();
    IcsFile file("Feiertage " + std::to_string(options.year) + (land.empty() ? "" : " " + land),
                 toUtf8(kCalendar.DateSort(kCalendar.DtoC(now.day, now.month, now.year))));
    int32 number = 0;
    for (const auto& day : found)
        file.day(
            toUtf8(kCalendar.DateSort(day.date)),
            std::to_string(options.year) + "-" + std::to_string(++number) + (land.empty() ? "" : "-" + land),
            day.name, day.holiday ? "Feiertag" : "Gedenktag", remarks(day));
}

void printJson(const HolidaysOptions& options, const std::vector<NamedDay>& found) {
    Json list = Json::array();
    for (const auto& day : found)
        list.push_back({{"date", toUtf8(kCalendar.DateIso8601(day.date))},
                        {"weekdayName", weekdayName(day.date)},
                        {"name", day.name},
                        {"holiday", day.holiday},
                        {"remark", day.remark.empty() ? Json() : Json(day.remark)},
                        {"law", day.law.empty() ? Json() : Json(day.law)}});
    const std::string land = chosenLand();
    std::cout << jsonText({{"year", options.year},
                           {"land", land.empty() ? Json() : Json(land)},
                           {"days", std::move(list)}})
              << '\n';
}

void holidays(const HolidaysOptions& options) {
    const DayFirst form;
    auto days = openHolidays(options);
    auto found = daysOf(options.year, days);
    if (!options.all) std::erase_if(found, [](const NamedDay& day) { return !day.holiday; });
    if (options.ics) return printIcs(options, found);
    if (options.json) return printJson(options, found);
    std::vector<Table::Column> columns{{"Date", 10}, {"Day", 10}, {"Name", 24}, {"Remark", 6}};
    if (options.all) columns.insert(columns.begin() + 2, {"Holiday", 7});
    Table table(std::move(columns));
    for (const auto& day : found) {
        std::vector<std::string> row{toUtf8(form.local(day.date)), weekdayName(day.date), day.name,
                                     remarks(day)};
        if (options.all) row.insert(row.begin() + 2, day.holiday ? "yes" : "");
        table.row(row);
    }
}

struct EasterOptions {
    int32 year = 0;
    bool json = false;
};

void easter(const EasterOptions& options) {
    const DayFirst form;
    const clsFeierTage days;
    const Text start = u"0101" + fourDigits(options.year);
    const Text sunday = days.Ostern(start), advent = days.Advent(start);
    const Text orthodox = kCalendar.KalenderDay(days.OsternOrthodox(start));
    const bool late = options.year % 4 != 0;
    if (options.json) {
        std::cout << jsonText({{"year", options.year},
                               {"easter", toUtf8(kCalendar.DateIso8601(sunday))},
                               {"orthodoxEaster", toUtf8(kCalendar.DateIso8601(orthodox))},
                               {"orthodoxDaysLate", late ? 2 : 0},
                               {"firstAdvent", toUtf8(kCalendar.DateIso8601(advent))}})
                  << '\n';
        return;
    }
    std::cout << "Easter Sunday    " << toUtf8(form.local(sunday)) << '\n'
              << "orthodox Easter  " << toUtf8(form.local(orthodox));
    if (late)
        std::cout << "  two days late by the library's rule; the churches have "
                  << toUtf8(form.local(kCalendar.AddDayC(orthodox, -2)));
    std::cout << "\nfirst Advent     " << toUtf8(form.local(advent)) << '\n';
}

void addYear(Command command, int32& year) {
    command.option("YEAR", year, "The year, 101 to 9999")
        .required()
        .range(kFirstYear, kLastYear)
        .typeName("");
}

}  // namespace

void addHolidays(Command app) {
    auto options = std::make_shared<HolidaysOptions>();
    const auto command = app.add("holidays", "The holidays of a year in a federal state");
    addYear(command, options->year);
    addHolidayOptions(command, *options);
    command.flag("--all", options->all, "All named days, also those that are no holidays");
    command.flag("--ics", options->ics, "Write an iCalendar file").excludes("--json");
    command.footer(std::string(kHolidayHelp) +
                   "\nExamples:\n"
                   "  tsrtm holidays 2026 --land NRW\n"
                   "  tsrtm holidays 2026 --land BY --all --json\n"
                   "  tsrtm holidays 2026 --land Berlin --ics > feiertage.ics\n"
                   "  tsrtm holidays 2025 --land BERLIN --law 31.12.2020");
    command.onRun([options] { holidays(*options); });

    auto easterOptions = std::make_shared<EasterOptions>();
    const auto easterCommand = app.add("easter", "Easter and Advent of a year");
    addYear(easterCommand, easterOptions->year);
    addJson(easterCommand, easterOptions->json);
    easterCommand.footer(
        "Easter is reckoned by the Gregorian rule for every year, also before the calendar of 1582.\n"
        "Example: tsrtm easter 2026");
    easterCommand.onRun([easterOptions] { easter(*easterOptions); });
}

}  // namespace tsRtm::cli
