#include "tsRtm/appointments/keys/DueRule.hpp"

#include "tsRtm/appointments/keys/Calendar.hpp"
#include "tsRtm/appointments/keys/Weekdays.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"

namespace tsRtm::appointments {
namespace {

bool isAny(TextView part) noexcept { return part.find_first_not_of(u'+') == TextView::npos; }

// A part of a pattern: its number, 0 for any, -1 for what no date has.
int32 partOf(TextView part) noexcept {
    if (isAny(part)) return 0;
    const int32 number = IstZiffern(part) ? dates::number(part) : 0;
    return number > 0 ? number : -1;
}

int32 numberOf(TextView date) { return date.empty() ? 0 : kCalendar.JulianDay(date); }

}  // namespace

Day dayOf(int32 number) {
    const auto parts = dates::split(dates::gregorianDate(number).view());
    return {number,    parts.year, parts.month,
            parts.day, number % 7, kCalendar.DaysInMonth(parts.month, parts.year)};
}

std::vector<Day> daysBetween(int32 first, int32 last) {
    std::vector<Day> days;
    for (int32 number = first; number <= last; ++number) days.push_back(dayOf(number));
    return days;
}

DueRule::DueRule(TextView key, TextView from, TextView to) : from_(numberOf(from)), to_(numberOf(to)) {
    if (key.size() != kKeyLength) return;
    if (key.front() == u'*')
        readInterval(key);
    else if (isAny(key.substr(0, 5)) && weekdayOf(upper(key.substr(5, 2))) > 0)
        readWeekday(key);
    else
        readPattern(key);
}

void DueRule::readPattern(TextView key) {
    year_ = partOf(key.substr(0, 4));
    month_ = partOf(key.substr(4, 2));
    day_ = partOf(key.substr(6));
    // Nobody asks for a day of any month in one year.
    if (year_ < 0 || month_ < 0 || day_ < 0 || (year_ > 0 && month_ == 0 && day_ > 0)) return;
    const bool monthly = year_ == 0 && month_ == 0 && day_ > 0;
    kind_ = monthly ? (day_ <= 31 ? Kind::monthly : Kind::never) : Kind::pattern;
}

void DueRule::readWeekday(TextView key) {
    weekday_ = weekdayOf(upper(key.substr(5, 2))) - 1;
    const char16_t which = key[7];
    count_ = which - u'0';
    kind_ = which == u'+'                    ? Kind::weekday
            : which == u'9'                  ? Kind::lastWeekday
            : which >= u'1' && which <= u'5' ? Kind::nthWeekday
                                             : Kind::never;
}

// Counted from the beginning of the validity, never due without one.
void DueRule::readInterval(TextView key) {
    const TextView digits = key.substr(2);
    count_ = IstZiffern(digits) ? dates::number(digits) : 0;
    if (count_ < 1 || from_ == 0) return;
    if (key[1] == u'T') kind_ = Kind::days;
    if (key[1] != u'M') return;
    const Day start = dayOf(from_);
    startMonth_ = start.year * 12 + start.month;
    startDay_ = start.day;
    kind_ = Kind::months;
}

bool DueRule::comes(const Day& day) const noexcept {
    switch (kind_) {
        case Kind::never:
            return false;
        case Kind::pattern:
            return (year_ == 0 || year_ == day.year) && (month_ == 0 || month_ == day.month) &&
                   (day_ == 0 || day_ == day.day);
        case Kind::monthly:
            // The last day of a short month stands for the days that it lacks.
            return day_ == day.day || (day_ > day.length && day.day == day.length);
        case Kind::weekday:
            return weekday_ == day.weekday;
        case Kind::nthWeekday:
            return weekday_ == day.weekday && (day.day - 1) / 7 + 1 == count_;
        case Kind::lastWeekday:
            return weekday_ == day.weekday && day.length - day.day < 7;
        case Kind::days:
            return (day.number - from_) % count_ == 0;
        case Kind::months:
            return day.day == startDay_ && (day.year * 12 + day.month - startMonth_) % count_ == 0;
    }
    return false;
}

}  // namespace tsRtm::appointments
