#include "tsRtm/appointments/ical/Recurrence.hpp"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "tsRtm/appointments/keys/Calendar.hpp"
#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/appointments/keys/Weekdays.hpp"
#include "tsRtm/calendar/clsDatum.hpp"

namespace tsRtm::appointments {
namespace {

constexpr std::string_view kDays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
// From one 29th of February to the next.
constexpr int32 kLongestGap = 8 * 366 + 1;
// How far ahead the last one of a counted series is looked for.
constexpr int32 kFurthest = 100 * 366;

// --- From a key to a rule

std::string ascii(TextView text) { return toUtf8(text); }
std::string plain(TextView digits) { return std::to_string(roundToInt32(Val(digits))); }

std::string monthlyRule(int32 day) {
    // The last day of a short month stands for the days that it lacks.
    switch (day) {
        case 29:
            return "FREQ=MONTHLY;BYMONTHDAY=28,29;BYSETPOS=-1";
        case 30:
            return "FREQ=MONTHLY;BYMONTHDAY=28,29,30;BYSETPOS=-1";
        case 31:
            return "FREQ=MONTHLY;BYMONTHDAY=-1";
        default:
            return "FREQ=MONTHLY;BYMONTHDAY=" + std::to_string(day);
    }
}

std::string weekdayRule(TextView key) {
    const std::string day(kDays[weekdayOf(upper(key.substr(5, 2))) - 1]);
    if (key[7] == u'+') return "FREQ=WEEKLY;BYDAY=" + day;
    return "FREQ=MONTHLY;BYDAY=" + (key[7] == u'9' ? "-1" : ascii(key.substr(7))) + day;
}

std::string ruleFor(TextView key, const Day& first) {
    switch (kindOf(key)) {
        case ttEinzel:
            return {};
        case ttTagesAbstand:
            return "FREQ=DAILY;INTERVAL=" + plain(key.substr(2));
        case ttMonatsAbstand:
            return "FREQ=MONTHLY;INTERVAL=" + plain(key.substr(2)) +
                   ";BYMONTHDAY=" + std::to_string(first.day);
        case ttMonatlich:
            return monthlyRule(roundToInt32(Val(key.substr(6))));
        case ttWoechentlich:
        case ttMonatlichWoche:
            return weekdayRule(key);
        case ttJaehrlich:
            return "FREQ=YEARLY;BYMONTH=" + plain(key.substr(4, 2)) + ";BYMONTHDAY=" + plain(key.substr(6));
        case ttJaehrlichGanzerMonat:
            return "FREQ=DAILY;BYMONTH=" + plain(key.substr(4, 2));
        default:
            return "FREQ=DAILY";  // every day, of a year or a month as well
    }
}

// The last day of what a key itself ends, 0 for a key that goes on.
int32 endOf(TextView key) {
    const auto kind = kindOf(key);
    if (kind == ttGanzesJahr)
        return kCalendar.JulianDay(kCalendar.DtoC(31, 12, roundToInt32(Val(key.substr(0, 4)))));
    if (kind != ttGanzerMonat) return 0;
    const int32 year = roundToInt32(Val(key.substr(0, 4))), month = roundToInt32(Val(key.substr(4, 2)));
    return kCalendar.JulianDay(kCalendar.DtoC(kCalendar.DaysInMonth(month, year), month, year));
}

// The first day of a year or month that the key names, else of what is asked for.
int32 beginOf(TextView key, int32 otherwise) {
    const auto kind = kindOf(key);
    if (kind != ttGanzesJahr && kind != ttGanzerMonat && kind != ttEinzel) return otherwise;
    const int32 year = roundToInt32(Val(key.substr(0, 4)));
    const int32 month = kind == ttGanzesJahr ? 1 : roundToInt32(Val(key.substr(4, 2)));
    const int32 day = kind == ttEinzel ? roundToInt32(Val(key.substr(6))) : 1;
    return year > 0 && month > 0 && day > 0 ? kCalendar.JulianDay(kCalendar.DtoC(day, month, year))
                                            : otherwise;
}

// --- From a rule to keys

[[noreturn]] void refuse(const std::string& why) { throw std::invalid_argument(why); }

class Rule {
 public:
    explicit Rule(std::string_view text) {
        while (!text.empty()) {
            const auto end = std::min(text.find(';'), text.size());
            const auto part = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            const auto mark = std::min(part.find('='), part.size());
            if (mark < part.size()) parts_[std::string(part.substr(0, mark))] = part.substr(mark + 1);
        }
        for (const auto& [name, value] : parts_)
            if (!known(name)) refuse("a rule with " + name);
    }
    std::string get(const std::string& name) const {
        const auto found = parts_.find(name);
        return found == parts_.end() ? std::string() : found->second;
    }
    bool has(const std::string& name) const { return !get(name).empty(); }
    // A whole number; what is none is refused.
    int32 number(const std::string& name, int32 otherwise) const {
        const std::string text = get(name);
        if (text.empty()) return otherwise;
        const bool negative = text.front() == '-';
        const Text digits = fromUtf8(text.substr(negative ? 1 : 0));
        if (!IstZiffern(digits) || digits.size() > 6) refuse(name + "=" + text);
        const int32 value = roundToInt32(Val(digits));
        return negative ? -value : value;
    }

 private:
    static bool known(const std::string& name) {
        for (const char* one :
             {"FREQ", "INTERVAL", "BYDAY", "BYMONTHDAY", "BYMONTH", "BYSETPOS", "UNTIL", "COUNT", "WKST"})
            if (name == one) return true;
        return false;
    }
    std::map<std::string, std::string> parts_;
};

Text digits(int32 value, std::size_t width) {
    const Text text = toText(value);
    return Text(width - std::min(width, text.size()), u'0') + text;
}
Text seriesKey(char16_t unit, int32 interval) {
    if (interval < 1 || interval > 999999) refuse("INTERVAL=" + std::to_string(interval));
    return Text(u"*") + unit + digits(interval, 6);
}

// "MO", "-1FR": the weekday from 0, and which one, 0 for each.
struct ByDay {
    int32 weekday = 0, which = 0;
};
std::vector<ByDay> byDays(const std::string& list) {
    std::vector<ByDay> out;
    for (std::size_t at = 0; at < list.size();) {
        const auto end = std::min(list.find(',', at), list.size());
        const std::string word = list.substr(at, end - at);
        at = end + 1;
        const auto* day = word.size() < 2
                              ? std::end(kDays)
                              : std::find(std::begin(kDays), std::end(kDays), word.substr(word.size() - 2));
        if (day == std::end(kDays)) refuse("BYDAY=" + word);
        const Text which = fromUtf8(word.substr(0, word.size() - 2));
        out.push_back({static_cast<int32>(day - std::begin(kDays)), roundToInt32(Val(which))});
    }
    return out;
}

class Series {
 public:
    explicit Series(const Recurrence& recurrence)
        : rule_(recurrence.rule), first_(recurrence.first), day_(dayOf(recurrence.first)) {}

    std::vector<KeyedSeries> run() {
        const std::string often = rule_.get("FREQ");
        interval_ = rule_.number("INTERVAL", 1);
        if (often == "DAILY")
            daily();
        else if (often == "WEEKLY")
            weekly();
        else if (often == "MONTHLY")
            monthly();
        else if (often == "YEARLY")
            yearly();
        else
            refuse("FREQ=" + often);
        limit();
        return out_;
    }

 private:
    void add(Text key) { add(std::move(key), first_); }
    void add(Text key, int32 from) { out_.push_back({std::move(key), from, 0}); }
    void without(std::initializer_list<const char*> names) const {
        for (const char* name : names)
            if (rule_.has(name)) refuse(rule_.get("FREQ") + " with " + name);
    }
    void once() const {
        if (interval_ != 1) refuse("INTERVAL with other parts");
    }

    void daily() {
        without({"BYDAY", "BYMONTHDAY", "BYSETPOS"});
        if (!rule_.has("BYMONTH"))
            return add(interval_ == 1 ? Text(u"++++++++") : seriesKey(u'T', interval_));
        once();
        add(u"++++" + digits(rule_.number("BYMONTH", 0), 2) + u"++");
    }

    void weekly() {
        without({"BYMONTHDAY", "BYMONTH", "BYSETPOS"});
        if (rule_.has("WKST") && rule_.get("WKST") != "MO" && interval_ != 1)
            refuse("WKST=" + rule_.get("WKST"));
        auto days = byDays(rule_.get("BYDAY"));
        if (days.empty()) days.push_back({day_.weekday, 0});
        for (const auto& [weekday, which] : days) {
            if (which != 0) refuse("BYDAY with numbers in a week");
            if (interval_ == 1) {
                add(u"+++++" + Text(weekdayCode(static_cast<Wochentage>(weekday))) + u"+");
                continue;
            }
            // Weeks begin on Monday: a day that has gone by comes first when the next one is due.
            const int32 from = first_ - day_.weekday + weekday;
            add(seriesKey(u'T', 7 * interval_), from < first_ ? from + 7 * interval_ : from);
        }
    }

    void monthly() {
        if (rule_.has("BYMONTH")) {
            without({"BYDAY", "BYSETPOS"});
            once();
            return add(yearlyKey());
        }
        if (rule_.has("BYDAY")) return monthlyByWeekday();
        const std::string days = rule_.get("BYMONTHDAY");
        const int32 place = rule_.number("BYSETPOS", 0);
        if (place != 0 || days == "-1") {
            once();
            if (days == "-1" && place == 0) return add(u"++++++31");
            if (place == -1)
                for (const auto& [list, key] : {std::pair{"28,29", u"++++++29"},
                                                {"28,29,30", u"++++++30"},
                                                {"28,29,30,31", u"++++++31"}})
                    if (days == list) return add(key);
            refuse("BYMONTHDAY=" + days + " with BYSETPOS");
        }
        const int32 day = rule_.number("BYMONTHDAY", day_.day);
        if (day < 1 || day > 31) refuse("BYMONTHDAY=" + days);
        // From the 29th on our monthly keys know no month without it; counted ones skip it.
        if (interval_ == 1 && day < 29) return add(u"++++++" + digits(day, 2));
        if (day != day_.day) refuse("BYMONTHDAY=" + days + " that is not the day of its start");
        add(seriesKey(u'M', interval_));
    }

    void monthlyByWeekday() {
        without({"BYMONTHDAY"});
        once();
        const auto days = byDays(rule_.get("BYDAY"));
        const int32 place = rule_.number("BYSETPOS", 0);
        for (const auto& [weekday, given] : days) {
            const int32 which = given != 0 ? given : place;
            if ((given != 0 && place != 0) || (place != 0 && days.size() > 1)) refuse("BYDAY with BYSETPOS");
            const Text code(weekdayCode(static_cast<Wochentage>(weekday)));
            if (which == 0)
                add(u"+++++" + code + u"+");
            else if (which == -1)
                add(u"+++++" + code + u"9");
            else if (which >= 1 && which <= 5)
                add(u"+++++" + code + toText(which));
            else
                refuse("BYDAY=" + rule_.get("BYDAY"));
        }
    }

    Text yearlyKey() const {
        const int32 month = rule_.number("BYMONTH", day_.month), day = rule_.number("BYMONTHDAY", day_.day);
        if (month < 1 || month > 12 || day < 1 || day > 31) refuse("BYMONTHDAY=" + rule_.get("BYMONTHDAY"));
        return u"++++" + digits(month, 2) + digits(day, 2);
    }
    void yearly() {
        without({"BYDAY", "BYSETPOS"});
        const Text key = yearlyKey();
        if (interval_ == 1) return add(key);
        if (key != u"++++" + digits(day_.month, 2) + digits(day_.day, 2))
            refuse("a day that is not that of its start");
        add(seriesKey(u'M', 12 * interval_));
    }

    // UNTIL, or COUNT turned into it.
    void limit() {
        int32 last = 0;
        if (rule_.has("UNTIL")) {
            last = dayOfIcalDate(rule_.get("UNTIL").substr(0, 8));
            if (last == 0) refuse("UNTIL=" + rule_.get("UNTIL"));
        } else if (const int32 count = rule_.number("COUNT", 0); count > 0) {
            std::vector<DueRule> rules;
            for (const auto& series : out_)
                rules.emplace_back(series.key, kCalendar.KalenderDay(series.from), TextView());
            int32 left = count;
            for (int32 number = first_; left > 0 && number < first_ + kFurthest; ++number) {
                const Day day = dayOf(number);
                if (std::any_of(rules.begin(), rules.end(), [&](const auto& rule) { return rule.on(day); })) {
                    --left;
                    last = number;
                }
            }
        }
        for (auto& series : out_) series.to = last;
        std::erase_if(out_, [](const auto& series) { return series.to != 0 && series.to < series.from; });
    }

    Rule rule_;
    int32 first_;
    Day day_;
    int32 interval_ = 1;
    std::vector<KeyedSeries> out_;
};

}  // namespace

std::string icalDate(int32 day) { return toUtf8(kCalendar.DateSort(kCalendar.KalenderDay(day))); }

int32 dayOfIcalDate(std::string_view text) {
    const Text sorted = fromUtf8(text);
    if (sorted.size() != kKeyLength || !IstZiffern(sorted)) return 0;
    const auto part = [&](std::size_t at, std::size_t size) {
        return roundToInt32(Val(sorted.substr(at, size)));
    };
    const Text date = kCalendar.DtoC(part(6, 2), part(4, 2), part(0, 4));
    return kCalendar.DateSort(date) == sorted ? kCalendar.JulianDay(date) : 0;
}

std::optional<Recurrence> recurrenceOf(TextView key, TextView from, TextView to, int32 notBefore,
                                       bool timed) {
    if (key.size() != kKeyLength) return std::nullopt;
    const DueRule due(key, from, to);
    const int32 valid = from.empty() ? 0 : kCalendar.JulianDay(from);
    const int32 start = std::max(valid, beginOf(key, valid > 0 ? valid : notBefore));
    for (int32 number = start; number < start + kLongestGap; ++number) {
        const Day day = dayOf(number);
        if (!due.on(day)) continue;
        Recurrence out{number, ruleFor(key, day)};
        int32 last = to.empty() ? 0 : kCalendar.JulianDay(to);
        if (const int32 own = endOf(key); own > 0) last = last > 0 ? std::min(last, own) : own;
        if (!out.rule.empty() && last > 0) out.rule += ";UNTIL=" + icalDate(last) + (timed ? "T235959" : "");
        return out;
    }
    return std::nullopt;
}

std::vector<KeyedSeries> seriesOf(const Recurrence& recurrence) {
    if (recurrence.rule.empty()) return {{fromUtf8(icalDate(recurrence.first)), 0, 0}};
    return Series(recurrence).run();
}

std::vector<KeyedSeries> withoutDay(const KeyedSeries& series, int32 day) {
    const DueRule rule(series.key, kCalendar.KalenderDay(series.from), kCalendar.KalenderDay(series.to));
    if (!rule.on(dayOf(day))) return {series};
    std::vector<KeyedSeries> out;
    if (series.from < day && kindOf(series.key) != ttEinzel)
        out.push_back({series.key, series.from, day - 1});
    const int32 last = series.to != 0 ? series.to : day + kFurthest;
    for (int32 next = day + 1; next <= last; ++next)
        if (rule.on(dayOf(next))) {
            out.push_back({series.key, next, series.to});
            break;
        }
    return out;
}

}  // namespace tsRtm::appointments
