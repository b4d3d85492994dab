// tsrtm workday: whether a date is a working day, and which is the next one.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/dates/Calendar.hpp"
#include "cli/dates/DateExpression.hpp"
#include "cli/dates/HolidayOptions.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

struct WorkdayOptions : HolidayOptions {
    std::vector<std::string> words;
    bool working = false;
};

struct Question {
    Text date;
    int32 distance = 0;
};

bool isDistance(const std::string& word) {
    constexpr std::size_t kMostDigits = 7;
    const bool sized = word.size() > 1 && word.size() <= 1 + kMostDigits;
    return sized && (word[0] == '+' || word[0] == '-') &&
           word.find_first_not_of("0123456789", 1) == std::string::npos;
}

// The last word is the distance when it is a number with its sign.
Question read(const std::vector<std::string>& words) {
    Question question;
    auto dateWords = words;
    if (!words.empty() && isDistance(words.back())) {
        question.distance = roundToInt32(Val(fromUtf8(words.back().substr(1))));
        if (words.back().front() == '-') question.distance = -question.distance;
        dateWords.pop_back();
    }
    std::string expression;
    for (const auto& word : dateWords) expression += (expression.empty() ? "" : " ") + word;
    const auto dates = readDates(expression.empty() ? "today" : expression);
    if (dates.until) throw CliError("one date is enough (see: tsrtm workday --help)");
    question.date = dates.date;
    return question;
}

std::string namesOf(clsFeierTage& days, TextView date) {
    std::string names;
    for (const auto& name : days.TagNamen(date)) {
        if (name.empty()) continue;
        const std::string remark = remarkOn(name);
        names += (names.empty() ? "" : ", ") + toUtf8(name) + (remark.empty() ? "" : " (" + remark + ")");
    }
    return names;
}

// Holidays from Monday to Friday that the way to the answer passed over.
std::vector<Text> passed(clsFeierTage& days, const Question& question, TextView answer, bool working) {
    const int32 end = kCalendar.JulianDay(answer);
    const int32 step = question.distance < 0 ? -1 : 1;
    std::vector<Text> found;
    for (int32 day = kCalendar.JulianDay(question.date) + (working ? 1 : question.distance);
         (end - day) * step > 0; day += step) {
        auto date = kCalendar.KalenderDay(day);
        if (day % 7 <= Freitag && days.IstFeierTag(date)) found.push_back(std::move(date));
    }
    return found;
}

void workday(const WorkdayOptions& options) {
    const DayFirst form;
    const auto question = read(options.words);
    if (options.working && question.distance < 1)
        throw CliError("--working counts forward: DATE +N --working");
    auto days = openHolidays(options);
    const Text answer = options.working ? days.AddBankWorkDays(question.date, question.distance)
                                        : days.NextWorkday(question.date, question.distance);
    if (answer.empty()) throw CliError("there is no such day: the calendar ends");
    const auto over = passed(days, question, answer, options.working);
    if (options.json) {
        Json list = Json::array();
        for (const auto& date : over)
            list.push_back({{"date", toUtf8(kCalendar.DateIso8601(date))}, {"name", namesOf(days, date)}});
        const std::string land = chosenLand();
        std::cout << jsonText({{"date", toUtf8(kCalendar.DateIso8601(answer))},
                               {"weekdayName", weekdayName(answer)},
                               {"from", toUtf8(kCalendar.DateIso8601(question.date))},
                               {"land", land.empty() ? Json() : Json(land)},
                               {"passedOver", std::move(list)}})
                  << '\n';
        return;
    }
    std::cout << toUtf8(form.local(answer)) << ' ' << weekdayName(answer) << '\n';
    for (const auto& date : over)
        std::cout << "  not " << toUtf8(form.local(date)) << ' ' << weekdayName(date) << ": "
                  << namesOf(days, date) << '\n';
}

}  // namespace

void addWorkday(Command app) {
    auto options = std::make_shared<WorkdayOptions>();
    const auto command = app.add("workday", "The next working day, Monday to Friday and no holiday");
    command.option("DATE [+N|-N]", options->words,
                   "A date, today without it; the working day at least N days on, or back");
    command.flag("--working", options->working, "N counts working days; forward only");
    addHolidayOptions(command, *options);
    command.footer(std::string(kHolidayHelp) +
                   "\nExamples:\n"
                   "  tsrtm workday 25.12.2026 --land NRW          # that day, or the next working day\n"
                   "  tsrtm workday 25.12.2026 -1                  # the last one before\n"
                   "  tsrtm workday today +14                      # two weeks on, or the next one then\n"
                   "  tsrtm workday 31.01.2027 +1m +0              # a month on, or the next one then\n"
                   "  tsrtm workday 23.12.2026 +3 --working        # three working days on");
    command.onRun([options] { workday(*options); });
}

}  // namespace tsRtm::cli
