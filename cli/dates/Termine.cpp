// tsrtm termine: a calendar of appointments.
#include <iostream>

#include "cli/Commands.hpp"
#include "cli/dates/Calendar.hpp"
#include "cli/dates/DateExpression.hpp"
#include "cli/dates/TerminTransfer.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/Session.hpp"
#include "cli/shared/SharedOptions.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/appointments/clsTerminkalender.hpp"
#include "tsRtm/appointments/ical/Recurrence.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {
namespace {

constexpr int32 kWeek = 7;
constexpr int32 kMonth = 31;
constexpr int32 kMostDays = 3660;
constexpr int32 kNext = 5;            // days that `what` tells
constexpr int32 kFarAhead = 9 * 366;  // and how far it looks for them

struct TermineOptions {
    std::string name, file = "-", key, date, until, time, duration, text, from, to, memo;
    std::vector<std::string> words;
    bool json = false;
};

Text digitsOfDate(const std::string& expression) {
    const auto dates = readDates(expression.empty() ? "today" : expression);
    if (dates.until) throw CliError("one date is enough");
    return dates.date;
}
Text optionalDate(const std::string& expression) {
    return expression.empty() ? Text() : digitsOfDate(expression);
}

std::string timesOf(const clsTermin& termin) {
    std::string out = toUtf8(termin.Uhrzeitvon());
    if (!out.empty() && termin.MinuteDuration() > 0) out += "-" + toUtf8(termin.Uhrzeitbis());
    return out;
}

bool isSeries(const clsTermin& termin) { return termin.SerienTyp() != ttEinzel; }

Json jsonOf(clsTermin& termin) {
    Json json = {{"id", toUtf8(termin.ID())},
                 {"key", toUtf8(termin.Termin())},
                 {"from", toUtf8(termin.Uhrzeitvon())},
                 {"to", toUtf8(termin.Uhrzeitbis())},
                 {"text", toUtf8(termin.Betreff())}};
    if (isSeries(termin)) json["what"] = toUtf8(trimLeft(termin.What()));
    return json;
}

// The appointments of some days, one after the other.
class Days {
 public:
    Days(clsTerminkalender& calendar, const DayFirst& form, bool json, bool empty)
        : calendar_(calendar), form_(form), json_(json), empty_(empty) {}

    void show(int32 first, int32 last) {
        for (int32 number = first; number <= last; ++number) {
            const Text date = kCalendar.KalenderDay(number);
            const auto list = calendar_.Termine(date);
            if (list && (list->Count() > 0 || empty_)) show(date, *list);
        }
        if (json_) std::cout << jsonText({{"days", std::move(days_)}}) << '\n';
    }

 private:
    void show(const Text& date, const clsTermine& list) {
        if (json_) {
            Json entries = Json::array();
            for (int32 i = 1; i <= list.Count(); ++i) entries.push_back(jsonOf(*list.Item(i)));
            days_.push_back({{"date", toUtf8(kCalendar.DateIso8601(date))},
                             {"weekdayName", weekdayName(date)},
                             {"appointments", std::move(entries)}});
            return;
        }
        std::cout << toUtf8(form_.local(date)) << ' ' << weekdayName(date) << '\n';
        for (int32 i = 1; i <= list.Count(); ++i) {
            const auto& termin = *list.Item(i);
            const std::string times = timesOf(termin);
            std::cout << "  " << times << std::string(13 - std::min<std::size_t>(12, times.size()), ' ')
                      << printable(termin.Betreff());
            if (isSeries(termin)) std::cout << " (" << printable(calendar_.What(termin.Termin())) << ')';
            std::cout << '\n';
        }
    }

    clsTerminkalender& calendar_;
    const DayFirst& form_;
    bool json_, empty_;
    Json days_ = Json::array();
};

void create(const TermineOptions& options) {
    const Text folder = databaseFolder(options.name);
    if (FilesTopic::Exist(FilesTopic::MakePath({Variant(folder), Variant(u"Control.tsd")})))
        throw CliError("there is a database '" + options.name + "' already");
    const auto calendar = std::make_shared<clsTerminkalender>();
    if (!calendar->Init(folder)) throw CliError("cannot make '" + options.name + "'");
    std::cout << "made " << toUtf8(folder) << '\n';
}

void add(const TermineOptions& options) {
    const DayFirst form;
    const auto calendar = openCalendar(options.name, true);
    const Text typed = fromUtf8(options.key);
    const Text key = calendar->CreateKey(typed);
    if (key.empty())
        throw CliError("'" + options.key + "' is no date and no series (see: tsrtm termine what --help)");
    const bool single = appointments::kindOf(key) == ttEinzel;
    const Text from = optionalDate(options.from), to = optionalDate(options.to);
    if (key.starts_with(u'*') && from.empty())
        throw CliError("a series that counts days or months needs --from");
    const Text date = single ? kCalendar.KalenderDay(appointments::dayOfIcalDate(toUtf8(key))) : Text();
    const Text day = single ? kCalendar.DateTo8(date) : typed;
    const auto termin = calendar->Add(key, day, fromUtf8(options.time), fromUtf8(options.duration),
                                      fromUtf8(options.text), from, to);
    if (termin && !options.memo.empty()) termin->Memo(fromUtf8(options.memo));
    if (!termin || !termin->Update()) throw CliError("cannot store the appointment");
    std::cout << "added " << toUtf8(termin->ID()) << ": "
              << toUtf8(trimLeft((single ? form.local(date) : Text()) + termin->What())) << '\n';
}

void show(const TermineOptions& options, int32 before, int32 days, bool empty) {
    const DayFirst form;
    const auto calendar = openCalendar(options.name, false);
    const int32 first = kCalendar.JulianDay(digitsOfDate(options.date)) - before;
    int32 last = first + days - 1;
    if (!options.until.empty()) last = kCalendar.JulianDay(digitsOfDate(options.until));
    if (last < first || last - first >= kMostDays) throw CliError("at most ten years, the first day first");
    Days(*calendar, form, options.json, empty).show(first, last);
}

void week(const TermineOptions& options) {
    const DayFirst form;
    const int32 weekday = kCalendar.DayOfWeek(digitsOfDate(options.date));
    show(options, weekday, kWeek, true);
}

void what(const TermineOptions& options) {
    const DayFirst form;
    const Text key = appointments::createKey(fromUtf8(options.key));
    if (key.empty()) throw CliError("'" + options.key + "' is no date and no series");
    const Text from = options.from.empty() ? digitsOfDate("today") : digitsOfDate(options.from);
    const Text words = appointments::wordsOf(key);
    std::cout << toUtf8(key) << "  " << (words.empty() ? "one day" : toUtf8(words)) << '\n';
    const appointments::DueRule rule(key, key.starts_with(u'*') ? from : Text(), {});
    int32 shown = 0;
    for (int32 number = kCalendar.JulianDay(from), end = number + kFarAhead; shown < kNext && number < end;
         ++number)
        if (rule.on(appointments::dayOf(number))) {
            const Text date = kCalendar.KalenderDay(number);
            std::cout << "  " << toUtf8(form.local(date)) << ' ' << weekdayName(date) << '\n';
            ++shown;
        }
}

constexpr const char* kKeys =
    "When, KEY:\n"
    "  24.12.2026   one day             24.12.   each year        31   each month\n"
    "  MO           each Monday         MO2, MO9 the second, the last one of each month\n"
    "  .12  .2026   a month, a year     *2W *10T *3M *1J   every so many weeks, days, months, years";

}  // namespace

void addTermine(Command app) {
    const auto termine = app.add("termine", "A calendar of appointments");
    termine.needsCommand();
    termine.footer(
        "Examples:\n"
        "  tsrtm termine create Termine\n"
        "  tsrtm termine add Termine MO2 --time 10:00 --duration 01:00 --text Besprechung\n"
        "  tsrtm termine week Termine\n"
        "  tsrtm termine export Termine termine.ics");
    auto options = std::make_shared<TermineOptions>();
    const auto command = [&](const char* name, const char* help, auto work) {
        const auto made = termine.add(name, help);
        made.onRun([options, work] { work(*options); });
        return made;
    };
    const auto dated = [&](Command made, const char* help) {
        addDatabase(made, options->name);
        made.option("DATE", options->date, help);
        addJson(made, options->json);
        return made;
    };
    addDatabase(command("create", "Make a calendar", create), options->name);

    const auto adding = command("add", "Add an appointment", add);
    addDatabase(adding, options->name);
    adding.option("KEY", options->key, "When it is due").required();
    adding.option("--time", options->time, "When it begins, 10:00").typeName("T");
    adding.option("--duration", options->duration, "How long it takes, 01:30").typeName("T");
    adding.option("--text", options->text, "What it is about").required().typeName("TEXT");
    adding.option("--memo", options->memo, "A remark").typeName("TEXT");
    adding.option("--from", options->from, "Not before this date").typeName("DATE");
    adding.option("--to", options->to, "Not after this date").typeName("DATE");
    adding.footer(kKeys);

    dated(command("day", "What is due on a day", [](const TermineOptions& o) { show(o, 0, 1, true); }),
          "The day; today without it");
    dated(command("week", "What is due in a week", week), "A day of it; today without it");
    dated(command("list", "What is due from one day to another",
                  [](const TermineOptions& o) { show(o, 0, kMonth, false); }),
          "The first day; today without it")
        .option("UNTIL", options->until, "The last day; a month on without it");

    const auto asking = command("what", "A key in words, and when it is due next", what);
    asking.option("KEY", options->key, "When").required();
    asking.option("--from", options->from, "From this date on; today without it").typeName("DATE");
    asking.footer(kKeys);

    const auto importing = command("import", "Take appointments from an iCalendar file",
                                   [](const TermineOptions& o) { importTermine(o.name, o.file); });
    addDatabase(importing, options->name);
    importing.option("ICS", options->file, "The file").required();
    importing.footer(
        "Times of other zones become those of this place. What would be due on other days than the file says "
        "is\n"
        "left out, and named with its reason.");

    const auto exporting =
        command("export", "Write all appointments into an iCalendar file", [](const TermineOptions& o) {
            const DayFirst form;
            exportTermine(o.name, o.file,
                          kCalendar.JulianDay(digitsOfDate(o.from.empty() ? "today" : o.from)),
                          kCalendar.JulianDay(digitsOfDate("today")));
        });
    addDatabase(exporting, options->name);
    exporting.option("ICS", options->file, "The file; standard output without it");
    exporting.option("--from", options->from, "When series without a beginning begin; today without it")
        .typeName("DATE");
}

}  // namespace tsRtm::cli
