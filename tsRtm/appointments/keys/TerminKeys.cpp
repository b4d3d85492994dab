#include "tsRtm/appointments/keys/TerminKeys.hpp"

#include "tsRtm/appointments/keys/Calendar.hpp"
#include "tsRtm/appointments/keys/Weekdays.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::appointments {
namespace {

constexpr TextView kAny = u"++++++++";
constexpr int32 kGreatestInterval = 999999;

// Digits or codes put into the places from `first` on, 0-based; all others stand for anything.
Text withAt(std::size_t first, TextView part) { return Text(kAny).replace(first, part.size(), part); }

Text twoDigits(int32 value) { return Text(dates::twoDigits(value).view()); }

// Every so many days or months: one letter before or behind the digits.
Text intervalKey(TextView typed) {
    Text rest = upper(typed);
    if (rest.empty()) return {};
    const auto isLetter = [](char16_t c) { return c == u'T' || c == u'W' || c == u'M' || c == u'J'; };
    const bool letterFirst = isLetter(rest.front());
    char16_t unit = letterFirst ? rest.front() : rest.back();
    if (!isLetter(unit)) return {};
    rest.erase(letterFirst ? 0 : rest.size() - 1, 1);
    if (rest.size() > 6 || (!rest.empty() && !IstZiffern(rest))) return {};
    int32 count = dates::number(rest);
    if (unit == u'W') {
        count *= 7;
        unit = u'T';
    } else if (unit == u'J') {
        count *= 12;
        unit = u'M';
    }
    if (count > kGreatestInterval) return {};
    return Text(u"*") + unit + toText(int64{count} + kGreatestInterval + 1).substr(1);
}

// Behind the separator of dates: a month, a year or both.
Text periodKey(TextView typed, TextView separator) {
    const Text digits = replaceAll(typed, separator, u"");
    if (!IstZiffern(digits)) return {};
    const TextView view = digits;
    switch (digits.size()) {
        case 2:
            return withAt(4, digits);
        case 4:
            return withAt(0, digits);
        case 6:
            return withAt(0, Text(view.substr(2)) += view.substr(0, 2));
        default:
            return {};
    }
}

// Without its points, single digits between them filled up: "1.2." is the first of February.
Text withoutPoints(TextView typed) {
    const Text plain = replaceAll(typed, u".", u"");
    if (plain.size() == typed.size() || !IstZiffern(plain)) return upper(plain);
    Text filled;
    for (std::size_t at = 0; at <= typed.size();) {
        const auto end = std::min(typed.find(u'.', at), typed.size());
        if (end - at == 1) filled += u'0';
        filled += typed.substr(at, end - at);
        at = end + 1;
    }
    return filled;
}

Text weekdayKey(TextView code, TextView which) {
    if (weekdayOf(code) == 0) return {};
    return withAt(5, Text(code) += which);
}

Text dateKey(TextView typed) {
    const Text text = withoutPoints(typed);
    const TextView view = text;
    const bool digits = IstZiffern(text);
    const int32 day = dates::number(view.substr(0, 2));
    switch (text.size()) {
        case 2:
            if (!digits) return weekdayKey(text, u"+");
            return day >= 1 && day <= 31 ? withAt(6, text) : Text();
        case 3: {
            const char16_t which = text[2];
            if (which < u'1' || which > u'9') return {};
            return weekdayKey(view.substr(0, 2), which > u'5' ? u"9" : view.substr(2));
        }
        case 4: {
            const int32 month = dates::number(view.substr(2));
            if (!digits || day < 1 || day > 31 || month < 1 || month > 12) return {};
            return withAt(4, kCalendar.DateSort(text));
        }
        case 6:
            if (!digits || !kCalendar.DateOK(text)) return {};
            return kCalendar.DateSort(kCalendar.KalenderDay(kCalendar.JulianDay(text)));
        case 8:
            return digits && kCalendar.DateOK(text) ? kCalendar.DateSort(text) : Text();
        default:
            return {};
    }
}

}  // namespace

Text dateKeys(TextView date) {
    if (date.empty()) return {};
    Text local(date);
    if (kCalendar.DateSort(local).size() != kKeyLength)
        local = kCalendar.KalenderDay(kCalendar.JulianDay(date));  // a short year is widened
    const Text sorted = kCalendar.DateSort(local);
    const TextView s = sorted;
    const TextView year = s.substr(0, 4), month = s.substr(4, 2);
    const int32 day = dates::number(s.substr(6));
    const int32 length = kCalendar.MonthLen(local);
    const Text weekday(weekdayCode(kCalendar.DayOfWeek(local)));
    Text keys = sorted;
    keys += withAt(4, s.substr(4));
    keys += withAt(6, s.substr(6));
    // The last day of a short month stands for the days that it lacks.
    if (day >= 28 && day == length)
        for (int32 lacking = day + 1; lacking <= 31; ++lacking) keys += withAt(6, twoDigits(lacking));
    keys += withAt(5, weekday + toText((day - 1) / 7 + 1));
    keys += withAt(5, weekday + u"+");
    if (length - day < 7) keys += withAt(5, weekday + u"9");
    keys += kAny;
    keys += withAt(0, year);
    keys += withAt(0, Text(year) += month);
    keys += withAt(4, month);
    return keys;
}

Text createKey(TextView typed) {
    if (typed.empty()) return Text(kAny);
    if (typed.front() == u'*') return intervalKey(typed.substr(1));
    const TextView separator = rtmMain::state().locale.sepDate;
    if (!separator.empty() && typed.starts_with(separator)) return periodKey(typed, separator);
    return dateKey(typed);
}

eTerminTypen kindOf(TextView key) noexcept {
    const auto plus = [key](std::size_t first, std::size_t last) {
        return key.size() >= last &&
               key.substr(first, last - first).find_first_not_of(u'+') == TextView::npos;
    };
    if (key.starts_with(u'*'))
        return key.starts_with(u"*T") ? ttTagesAbstand : key.starts_with(u"*M") ? ttMonatsAbstand : ttEinzel;
    if (key.find(u'+') == TextView::npos) return ttEinzel;
    const bool lastAny = key.ends_with(u'+');
    if (plus(0, 8)) return ttTaeglich;
    if (plus(0, 6)) return ttMonatlich;
    if (plus(0, 5)) {
        if (key.substr(5).starts_with(u'W')) return ttJaehrlichGanzeWoche;  // no key is made so
        return lastAny ? ttWoechentlich : ttMonatlichWoche;
    }
    if (plus(0, 4)) return lastAny ? ttJaehrlichGanzerMonat : ttJaehrlich;
    if (key.ends_with(u"++++")) return ttGanzesJahr;
    if (key.ends_with(u"++")) return ttGanzerMonat;
    return key.size() > 4 && key[4] == u'+' ? ttGanzeWoche : ttEinzel;
}

}  // namespace tsRtm::appointments
