#include "cli/dates/IcsZones.hpp"

#include <algorithm>
#include <stdexcept>

#include "cli/dates/Calendar.hpp"
#include "tsRtm/appointments/ical/Recurrence.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::cli {

using appointments::dayOfIcalDate;

namespace {

// The years for which changes are reckoned in advance.
constexpr int32 kFirstZoneYear = 1970, kLastZoneYear = 2100;
constexpr int32 kForward = 2 * 60, kBack = 3 * 60;
constexpr std::string_view kWeekdays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};

int64 minuteOf(IcsMoment moment) { return int64{moment.day} * kDayMinutes + std::max(moment.minute, 0); }
IcsMoment momentOf(int64 minute) {
    return {static_cast<int32>(minute / kDayMinutes), static_cast<int32>(minute % kDayMinutes)};
}

int32 wholeNumber(const std::string& text) {
    const bool negative = text.starts_with('-');
    const Text digits = fromUtf8(text.substr(negative || text.starts_with('+') ? 1 : 0));
    if (!IstZiffern(digits) || digits.size() > 6) throw std::invalid_argument("no number: " + text);
    const int32 value = roundToInt32(Val(digits));
    return negative ? -value : value;
}

// "+0100" in minutes.
int32 offsetOf(const std::string& text) {
    const int32 value = wholeNumber(text.substr(0, 5));
    return value / 100 * 60 + value % 100;
}

// The day of a month that "-1SU" names, 0 where it has no such.
int32 dayOfMonth(int32 year, int32 month, const std::string& which) {
    const auto* day = which.size() < 2 ? std::end(kWeekdays)
                                       : std::find(std::begin(kWeekdays), std::end(kWeekdays),
                                                   which.substr(which.size() - 2));
    if (day == std::end(kWeekdays)) throw std::invalid_argument("BYDAY=" + which);
    const int32 place = wholeNumber(which.substr(0, which.size() - 2));
    const int32 length = kCalendar.DaysInMonth(month, year);
    const int32 begin = kCalendar.JulianDay(kCalendar.DtoC(1, month, year));
    const int32 first = (static_cast<int32>(day - std::begin(kWeekdays)) - begin % 7 + 7) % 7;
    const int32 last = first + (length - 1 - first) / 7 * 7;
    const int32 at = place > 0 ? first + 7 * (place - 1) : last + 7 * (place + 1);
    return place != 0 && at >= 0 && at < length ? begin + at : 0;
}

}  // namespace

std::optional<IcsMoment> icsMoment(const std::string& value) {
    IcsMoment out;
    out.day = dayOfIcalDate(value.substr(0, 8));
    if (out.day == 0) return std::nullopt;
    if (value.size() == 8) return out;
    const std::string zoned = value.ends_with('Z') ? value.substr(0, value.size() - 1) : value;
    const Text time = fromUtf8(zoned.substr(std::min<std::size_t>(9, zoned.size())));
    if (value[8] != 'T' || time.size() != 6 || !IstZiffern(time)) return std::nullopt;
    const int32 hour = roundToInt32(Val(time.substr(0, 2))), minute = roundToInt32(Val(time.substr(2, 2)));
    if (hour > 23 || minute > 59) return std::nullopt;
    out.minute = hour * 60 + minute;
    return out;
}

// One STANDARD or DAYLIGHT of a zone: when it begins, and what holds then.
class IcsZones::Description {
 public:
    void take(const IcsProperty& property) {
        const auto& [line, name, parameters, value] = property;
        if (name == "DTSTART")
            first_ = needMoment(value);
        else if (name == "TZOFFSETFROM")
            before_ = offsetOf(value);
        else if (name == "TZOFFSETTO")
            after_ = offsetOf(value);
        else if (name == "RRULE")
            rule_ = icsParts(icsCapitals(value));
        else if (name == "RDATE")
            for (const auto& one : icsList(value)) more_.push_back(needMoment(one));
    }

    void into(Zone& zone) const {
        if (zone.changes.empty() || minuteOf(first_) < zone.changes.front().at) zone.aheadAtFirst = before_;
        put(zone, minuteOf(first_));
        for (const auto& moment : more_) put(zone, minuteOf(moment));
        if (!rule_.empty()) repeat(zone);
        std::sort(zone.changes.begin(), zone.changes.end(),
                  [](const auto& a, const auto& b) { return a.at < b.at; });
    }

 private:
    static IcsMoment needMoment(const std::string& value) {
        const auto moment = icsMoment(value);
        if (!moment) throw std::invalid_argument("no date: " + value);
        return *moment;
    }
    void put(Zone& zone, int64 at) const { zone.changes.push_back({at, after_}); }
    std::string part(const char* name) const {
        const auto found = rule_.find(name);
        return found == rule_.end() ? std::string() : found->second;
    }
    void repeat(Zone& zone) const {
        for (const auto& [name, value] : rule_)
            if (name != "BYMONTH" && name != "BYDAY" && name != "UNTIL" && name != "WKST" &&
                !(name == "FREQ" && value == "YEARLY") && !(name == "INTERVAL" && value == "1"))
                throw std::invalid_argument("a rule with " + name);
        const auto begin = appointments::dayOf(first_.day);
        const int32 month = part("BYMONTH").empty() ? begin.month : wholeNumber(part("BYMONTH"));
        const std::string which = part("BYDAY");
        const std::string until = part("UNTIL");
        const int64 end =
            until.empty() ? 0 : minuteOf(needMoment(until)) + (until.ends_with('Z') ? before_ : 0);
        for (int32 year = std::max(begin.year, kFirstZoneYear); year <= kLastZoneYear; ++year) {
            const int32 day = which.empty() ? kCalendar.JulianDay(kCalendar.DtoC(begin.day, month, year))
                                            : dayOfMonth(year, month, which);
            const int64 at = minuteOf({day, first_.minute});
            if (end != 0 && at > end) break;
            if (day != 0 && day > first_.day) put(zone, at);
        }
    }

    IcsMoment first_;
    int32 before_ = 0, after_ = 0;
    std::map<std::string, std::string> rule_;
    std::vector<IcsMoment> more_;
};

IcsZones::IcsZones(const std::vector<IcsProperty>& file) {
    std::string name;
    Zone zone;
    std::optional<Description> description;
    bool inside = false;
    for (const auto& property : file) {
        const std::string what = icsCapitals(property.value);
        try {
            if (property.name == "BEGIN" && what == "VTIMEZONE") {
                inside = true;
                name.clear();
                zone = {};
            } else if (property.name == "END" && what == "VTIMEZONE") {
                inside = false;
                zones_.emplace(name, zone);
            } else if (inside && property.name == "TZID") {
                name = property.value;
            } else if (inside && property.name == "BEGIN") {
                description.emplace();
            } else if (inside && property.name == "END" && description) {
                description->into(zone);
                description.reset();
            } else if (description) {
                description->take(property);
            }
        } catch (const std::invalid_argument& why) {
            faults_.emplace(name, why.what());
        }
    }
}

std::optional<IcsZones::Zone> IcsZones::known(const std::string& name) {
    auto& zones = rtmMain::system().zones;
    const Text wanted = fromUtf8(name);
    Zone out;
    for (int32 year = kFirstZoneYear; year <= kLastZoneYear; ++year) {
        const auto rules = zones.year(wanted, year);
        if (!rules) return std::nullopt;
        const int32 standard = -(rules->bias + rules->standardBias);
        if (year == kFirstZoneYear) out.aheadAtFirst = standard;
        const auto put = [&](const platform::ClockChange& change, int32 minute, int32 ahead) {
            if (change.month == 0) return;
            const auto weekday = static_cast<Wochentage>((change.dayOfWeek + 6) % 7);
            const Text date = kCalendar.FindDate(year, change.month, weekday, change.occurrence);
            out.changes.push_back({minuteOf({kCalendar.JulianDay(date), minute}), ahead});
        };
        put(rules->daylight, kForward, -(rules->bias + rules->daylightBias));
        put(rules->standard, kBack, standard);
    }
    std::sort(out.changes.begin(), out.changes.end(),
              [](const auto& a, const auto& b) { return a.at < b.at; });
    return out;
}

const IcsZones::Zone& IcsZones::zone(const std::string& name) {
    if (const auto fault = faults_.find(name); fault != faults_.end())
        throw std::invalid_argument("its time zone '" + name + "' has " + fault->second);
    const auto found = zones_.find(name);
    if (found != zones_.end()) return found->second;
    auto zone = name == kUtc ? Zone() : known(name);
    if (!zone) throw std::invalid_argument("its time zone '" + name + "' is not in the file");
    return zones_.emplace(name, std::move(*zone)).first->second;
}

namespace {

template <class Zone>
int32 aheadAt(const Zone& zone, int64 local) {
    const auto behind = std::upper_bound(zone.changes.begin(), zone.changes.end(), local,
                                         [](int64 wanted, const auto& change) { return wanted < change.at; });
    return behind == zone.changes.begin() ? zone.aheadAtFirst : std::prev(behind)->ahead;
}

}  // namespace

int64 IcsZones::toUtc(IcsMoment moment, const std::string& name) {
    const int64 local = minuteOf(moment);
    return local - aheadAt(zone(name), local);
}

IcsMoment IcsZones::moved(IcsMoment there, const std::string& from, const std::string& to) {
    if (there.minute < 0 || from == to) return there;
    const int64 utc = toUtc(there, from);
    const Zone& other = zone(to);
    return momentOf(utc + aheadAt(other, utc + aheadAt(other, utc)));
}

int64 IcsZones::minutes(IcsMoment begin, const std::string& beginZone, IcsMoment end,
                        const std::string& endZone) {
    if (begin.minute < 0 || end.minute < 0) return minuteOf(end) - minuteOf(begin);
    return toUtc(end, endZone) - toUtc(begin, beginZone);
}

}  // namespace tsRtm::cli
