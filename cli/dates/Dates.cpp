// tsrtm date: a date in all its forms, and reckoning with dates.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/dates/DateExpression.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kFirstGregorianDay = 2299161;  // before, a date has no serial number

struct Options {
    std::vector<std::string> words;
    bool json = false;
};

const clsDatum kCalendar;

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

void line(const char* title, const std::string& text) {
    std::cout << title << std::string(17 - std::string_view(title).size(), ' ') << text << '\n';
}

void printForms(const Json& forms) {
    const auto text = [&](const char* name) { return forms.at(name).text(); };
    const auto number = [&](const char* name) { return std::to_string(forms.at(name).whole()); };
    line("local", text("local"));
    line("words", text("words"));
    line("TTMMJJJJ", text("digits"));
    line("JJJJMMTT", text("sort"));
    line("ISO 8601", text("iso"));
    line("weekday", text("weekdayName"));
    line("week", number("week"));
    line("day of the year", number("dayOfYear"));
    line("days in month", number("daysInMonth"));
    line("day number", "J" + number("dayNumber"));
    line("bank day", number("bankDay") + " (30/360)");
    if (!forms.at("serial").isNull()) line("serial", number("serial"));
    line("Julian calendar", text("julianCalendar"));
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
    line("from", toUtf8(form.local(from)) + " " + weekdayName(from));
    line("to", toUtf8(form.local(to)) + " " + weekdayName(to));
    line("days", std::to_string(days));
    line("bank days", std::to_string(bankDays) + " (30/360)");
}

void date(const Options& options) {
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
    auto options = std::make_shared<Options>();
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
