// tsrtm date: a date in all its forms, and reckoning with dates.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/dates/Calendar.hpp"
#include "cli/dates/DateExpression.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

struct DatesOptions {
    std::vector<std::string> words;
    bool json = false;
};

// By its true number: clsDatum counts names from the first day of the user's week.
std::string weekdayName(TextView date) {
    return toUtf8(rtmMain::system().locale.weekdayName(kCalendar.DayOfWeek(date)));
}

Json formsOf(TextView date, const DayFirst& form) {
    const int32 number = kCalendar.JulianDay(date);
    Json serial;
    if (number >= kFirstGregorianDay) serial = kCalendar.JulianToDate(number).day();
    return {{"local", toUtf8(form.local(date))},
            {"words", toUtf8(kCalendar.WordDate(date))},
            {"digits", toUtf8(date)},
            {"sort", toUtf8(kCalendar.DateSort(date))},
            {"iso", toUtf8(kCalendar.DateIso8601(date))},
            {"weekday", static_cast<int32>(kCalendar.DayOfWeek(date))},
            {"weekdayName", weekdayName(date)},
            {"week", kCalendar.WeekNr(date)},
            {"dayOfYear", kCalendar.DayOfYear(date)},
            {"daysInMonth", kCalendar.MonthLen(date)},
            {"dayNumber", number},
            {"bankDay", kCalendar.BankDay(date)},
            {"serial", std::move(serial)},
            {"julianCalendar", toUtf8(kCalendar.DateTo8(kCalendar.KalenderDayJulian(number)))}};
}

void printForms(const Json& forms) {
    const auto text = [&](const char* name) { return forms.at(name).text(); };
    const auto number = [&](const char* name) { return std::to_string(forms.at(name).whole()); };
    titledLine("local", 17, text("local"));
    titledLine("words", 17, text("words"));
    titledLine("TTMMJJJJ", 17, text("digits"));
    titledLine("JJJJMMTT", 17, text("sort"));
    titledLine("ISO 8601", 17, text("iso"));
    titledLine("weekday", 17, text("weekdayName"));
    titledLine("week", 17, number("week"));
    titledLine("day of the year", 17, number("dayOfYear"));
    titledLine("days in month", 17, number("daysInMonth"));
    titledLine("day number", 17, "J" + number("dayNumber"));
    titledLine("bank day", 17, number("bankDay") + " (30/360)");
    if (!forms.at("serial").isNull()) titledLine("serial", 17, number("serial"));
    titledLine("Julian calendar", 17, text("julianCalendar"));
}

void printSpan(const DateExpression& dates, const DayFirst& form, bool json) {
    const Text& from = dates.date;
    const Text& to = *dates.until;
    const int32 days = kCalendar.DifDateC(from, to), bankDays = kCalendar.DifDateB(from, to);
    if (json) {
        std::cout << jsonText({{"from", formsOf(from, form)},
                               {"to", formsOf(to, form)},
                               {"days", days},
                               {"bankDays", bankDays}})
                  << '\n';
        return;
    }
    titledLine("from", 17, toUtf8(form.local(from)) + " " + weekdayName(from));
    titledLine("to", 17, toUtf8(form.local(to)) + " " + weekdayName(to));
    titledLine("days", 17, std::to_string(days));
    titledLine("bank days", 17, std::to_string(bankDays) + " (30/360)");
}

void date(const DatesOptions& options) {
    std::string expression;
    for (const auto& word : options.words) expression += (expression.empty() ? "" : " ") + word;
    const DayFirst form;
    const auto dates = readDates(expression.empty() ? "today" : expression);
    if (dates.until) return printSpan(dates, form, options.json);
    const Json forms = formsOf(dates.date, form);
    if (options.json)
        std::cout << jsonText(forms) << '\n';
    else
        printForms(forms);
}

}  // namespace

void addDates(Command app) {
    auto options = std::make_shared<DatesOptions>();
    const auto command = app.add("date", "A date in all its forms; reckoning with dates");
    command.option("EXPR", options->words, "A date or a reckoning, see below; today without it");
    addJson(command, options->json);
    command.footer(std::string(kDateSyntax) +
                   "\nExamples:\n"
                   "  tsrtm date 20241231\n"
                   "  tsrtm date 31.01.2024 +1m\n"
                   "  tsrtm date +14t --json\n"
                   "  tsrtm date 01.01.2024 .. 2024-12-31\n"
                   "  tsrtm date J2460676");
    command.onRun([options] { date(*options); });
}

}  // namespace tsRtm::cli
