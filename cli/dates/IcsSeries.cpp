#include "cli/dates/IcsSeries.hpp"

#include <stdexcept>

#include "cli/dates/Calendar.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/appointments/keys/Weekdays.hpp"
#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::cli {

using appointments::KeyedSeries;

namespace {

// How far ahead the clocks of two zones are compared for a series without an end.
constexpr int32 kCompared = 5 * 366;
constexpr std::size_t kMostParts = 100;

// Days of a series that have the same time here.
struct Part {
    int32 first, last;
    IcsMoment shift;  // days, and the time here
};

std::vector<Part> partsOf(const KeyedSeries& series, const IcsEvent& event, IcsZones& zones) {
    const appointments::DueRule rule(series.key, kCalendar.KalenderDay(series.from), u"");
    const int32 last = series.to != 0 ? series.to : series.from + kCompared;
    std::vector<Part> parts;
    for (int32 day = series.from; day <= last && parts.size() <= kMostParts; ++day) {
        if (!rule.on(appointments::dayOf(day))) continue;
        IcsMoment here = zones.moved({day, event.minute}, event.zone, IcsZones::kHere);
        here.day -= day;
        if (parts.empty() || parts.back().shift != here) parts.push_back({day, day, here});
        parts.back().last = day;
    }
    return parts;
}

// The key of days that are one later, or earlier.
Text shifted(const Text& key, int32 days) {
    if (days == 0 || key.starts_with(u"*T") || key == u"++++++++") return key;
    const int32 weekday =
        key.starts_with(u"+++++") && key.ends_with(u"+") ? appointments::weekdayOf(key.substr(5, 2)) : 0;
    if (weekday == 0) throw std::invalid_argument("its days are others here than in its time zone");
    return u"+++++" + Text(appointments::weekdayCode(static_cast<Wochentage>((weekday - 1 + days + 7) % 7))) +
           u"+";
}

void takeHere(const KeyedSeries& series, const IcsEvent& event, IcsZones& zones,
              std::vector<IcsSeries>& out) {
    const auto parts = partsOf(series, event, zones);
    if (parts.size() > 1 && (series.to == 0 || parts.size() > kMostParts))
        throw std::invalid_argument("its clocks are changed on other days than ours");
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const auto& [first, last, shift] = parts[i];
        // Both ends as they were.
        const int32 from = i == 0 ? series.from : first;
        const int32 to = i + 1 == parts.size() ? series.to : last;
        out.push_back(
            {{shifted(series.key, shift.day), from + shift.day, to == 0 ? 0 : to + shift.day}, shift.minute});
    }
}

IcsSeries single(const IcsTime& time, IcsZones& zones) {
    const IcsMoment here = zones.moved(time.at, time.zone, IcsZones::kHere);
    return {{fromUtf8(appointments::icalDate(here.day)), 0, 0}, here.minute};
}

}  // namespace

std::vector<IcsSeries> icsSeries(const IcsEvent& event, IcsZones& zones) {
    const bool lasting = event.days > 1;
    if (lasting && !event.rule.empty()) throw std::invalid_argument("a series of several days each");
    std::vector<IcsSeries> out;
    if (lasting)
        // Several whole days are one series of days.
        out.push_back({{u"++++++++", event.day, event.day + event.days - 1}, event.minute});
    else if (event.rule.empty())
        out.push_back(single({{event.day, event.minute}, event.zone}, zones));
    else
        for (const auto& series : appointments::seriesOf({event.day, event.rule}))
            takeHere(series, event, zones, out);
    for (const auto& time : event.left) {
        const int32 day = zones.moved(time.at, time.zone, IcsZones::kHere).day;
        std::vector<IcsSeries> kept;
        for (const auto& series : out)
            for (auto& keyed : appointments::withoutDay(series.keyed, day))
                kept.push_back({std::move(keyed), series.minute});
        out = std::move(kept);
    }
    for (const auto& time : event.further)
        out.push_back(single({{time.at.day, event.minute < 0 ? -1 : time.at.minute}, time.zone}, zones));
    return out;
}

}  // namespace tsRtm::cli
