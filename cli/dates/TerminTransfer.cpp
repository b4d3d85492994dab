#include "cli/dates/TerminTransfer.hpp"

#include <iostream>
#include <stdexcept>

#include "cli/dates/Calendar.hpp"
#include "cli/dates/DateExpression.hpp"
#include "cli/dates/IcsSeries.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Session.hpp"
#include "cli/shared/Terminal.hpp"
#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::size_t kSubject = 40;  // characters of the standard store

Text clock(int32 minutes) { return minutes < 0 ? Text() : kCalendar.ToTime(minutes); }
Text date(int32 day) { return day == 0 ? Text() : kCalendar.KalenderDay(day); }

// The same appointment is there already, from an import before.
bool isThere(clsTerminkalender& calendar, const IcsSeries& series, const IcsEvent& event) {
    const auto& [key, from, to] = series.keyed;
    const auto found = calendar.Selection(calendar.FeldNummern()[TerminFelder::schluessel], key, key);
    for (int32 i = 1; found && i <= found->Count(); ++i) {
        const auto& termin = *found->Item(i);
        const auto same = [](TextView stored, int32 day) {
            return stored.empty() ? day == 0 : kCalendar.JulianDay(stored) == day;
        };
        if (!termin.Deleted() && termin.Betreff() == event.summary.substr(0, kSubject) &&
            termin.MinuteStart() == std::max(series.minute, 0) && same(termin.DatumVon(), from) &&
            same(termin.DatumBis(), to))
            return true;
    }
    return false;
}

bool storeSeries(clsTerminkalender& calendar, const IcsSeries& series, const IcsEvent& event) {
    const auto& [key, from, to] = series.keyed;
    const int32 only = appointments::dayOfIcalDate(toUtf8(key));  // 0 for a series
    const auto termin =
        calendar.Add(key, only != 0 ? kCalendar.DateTo8(date(only)) : Text(), clock(series.minute),
                     event.minutes > 0 ? clock(event.minutes) : Text(), event.summary, date(from), date(to));
    if (!termin) return false;
    termin->Ort(event.location);
    Text memo = event.summary.size() > kSubject ? event.summary : Text();
    if (!event.description.empty()) (memo += memo.empty() ? u"" : u"\r\n") += event.description;
    if (!memo.empty()) termin->Memo(memo);
    return termin->Update();
}

// Those that stand in the place of a day of a series take that day from it.
void leaveOutWhatIsReplaced(std::vector<IcsEvent>& events) {
    for (const auto& event : events) {
        if (!event.instead || event.uid.empty()) continue;
        for (auto& series : events)
            if (!series.instead && series.uid == event.uid) series.left.push_back(*event.instead);
    }
}

}  // namespace

std::shared_ptr<clsTerminkalender> openCalendar(const std::string& name, bool writing) {
    const Text folder = databaseFolder(name);
    if (!FilesTopic::Exist(FilesTopic::MakePath({Variant(folder), Variant(u"Control.tsd")})))
        throw CliError("no calendar '" + name + "'; make one with: tsrtm termine create " + name);
    auto calendar = std::make_shared<clsTerminkalender>();
    if (!calendar->Init(folder, nullptr, true, false))
        throw CliError("'" + name + "' cannot be opened, or is no calendar: it needs a field TERMIN");
    if (writing && calendar->IsReadOnly())
        throw CliError("cannot open '" + name +
                       "' for writing: somebody holds it alone, or you may not write there");
    return calendar;
}

void importTermine(const std::string& name, const std::string& file) {
    const DayFirst form;
    InputFile in(file);
    auto [events, zones] = readIcs(in);
    leaveOutWhatIsReplaced(events);
    const auto calendar = openCalendar(name, true);
    int32 added = 0, there = 0, left = 0;
    for (const auto& event : events) try {
            if (!event.fault.empty()) throw std::invalid_argument(event.fault);
            if (event.cancelled) continue;  // a day of a series
            for (const auto& series : icsSeries(event, zones)) {
                if (isThere(*calendar, series, event))
                    ++there;
                else if (storeSeries(*calendar, series, event))
                    ++added;
                else
                    throw CliError("cannot store what stands in line " + std::to_string(event.line));
            }
        } catch (const std::invalid_argument& why) {
            ++left;
            std::cerr << file << ':' << event.line << ": left out '" << printable(event.summary)
                      << "': " << why.what() << '\n';
        }
    std::cout << "added " << added << " appointments";
    if (there > 0) std::cout << "; " << there << " were there";
    if (left > 0) std::cout << "; left out " << left;
    std::cout << '\n';
}

void exportTermine(const std::string& name, const std::string& file, int32 begin, int32 today) {
    const DayFirst form;
    const auto calendar = openCalendar(name, false);
    OutputFile out(file);
    IcsEvents events(out, name, appointments::icalDate(today));
    int32 written = 0, never = 0;
    const int32 count = calendar->DB()->AnzahlDSaetze();
    for (int32 number = 1; number <= count; ++number) {
        const auto termin = calendar->TerminAusSatz(number);
        if (!termin || termin->Deleted()) continue;
        const bool timed = !termin->Tagestermin();
        const auto recurrence = appointments::recurrenceOf(termin->Termin(), termin->DatumVon(),
                                                           termin->DatumBis(), begin, timed);
        if (!recurrence) {
            ++never;
            continue;
        }
        IcsEvent event;
        event.uid = toUtf8(termin->ID()) + "." + toUtf8(calendar->DB()->DBName()) + "@tsrtm";
        event.day = recurrence->first;
        event.minute = timed ? termin->MinuteStart() : -1;
        event.minutes = termin->MinuteDuration();
        event.rule = recurrence->rule;
        event.summary = termin->Betreff();
        event.description = termin->Memo();
        event.location = termin->Ort();
        events.add(event);
        ++written;
    }
    events.finish();
    out.finish();
    if (file != "-") std::cout << "wrote " << written << " appointments\n";
    if (never > 0) std::cerr << never << " are never due, and were left out\n";
}

}  // namespace tsRtm::cli
