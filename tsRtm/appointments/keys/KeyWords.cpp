// Keys in words.
#include "tsRtm/appointments/keys/TerminKeys.hpp"
#include "tsRtm/appointments/keys/Weekdays.hpp"
#include "tsRtm/calendar/days/DateForms.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::appointments {
namespace {

Text plainNumber(TextView digits) { return toText(dates::number(digits)); }
Text monthName(TextView digits) {
    const int32 month = dates::number(digits);
    return month >= 1 && month <= 12 ? rtmMain::system().locale.monthName(month) : Text();
}

// "jeden Montag", "jeden 2. Montag im Monat"; as far as the weekday is known.
Text weekdayWords(TextView key) {
    Text words = u"jeden ";
    const char16_t which = key[7];
    if (which == u'9')
        words += u"letzten ";
    else if (which != u'+')
        (words += which) += u". ";
    const int32 weekday = weekdayOf(key.substr(5, 2));
    if (weekday == 0) return words;
    words += rtmMain::system().locale.weekdayName(weekday - 1);
    return which == u'+' ? words : words + u" im Monat";
}

// What is said of a month, as far as it is known.
Text monthWords(TextView before, TextView month, TextView after = {}) {
    const Text name = monthName(month);
    return Text(before) + name + (name.empty() ? Text() : Text(after));
}

}  // namespace

Text wordsOf(TextView key) {
    if (key.size() != kKeyLength) return {};
    const auto month = key.substr(4, 2);
    switch (kindOf(key)) {
        case ttTagesAbstand:  // the last three digits only, as programs have always printed it
            return u"alle " + plainNumber(key.substr(5)) + u" Tage";
        case ttMonatsAbstand:
            return u"alle " + plainNumber(key.substr(5)) + u" Monate";
        case ttTaeglich:
            return u"jeden Tag";
        case ttMonatlich:
            return u"jeden Monat am " + plainNumber(key.substr(6)) + u".";
        case ttWoechentlich:
        case ttMonatlichWoche:
        case ttJaehrlichGanzeWoche:
            return weekdayWords(key);
        case ttJaehrlich:
            return monthWords(u"jedes Jahr am " + plainNumber(key.substr(6)) + u". ", month);
        case ttJaehrlichGanzerMonat:
            return monthWords(u"jedes Jahr an jedem Tag des Monats ", month);
        case ttGanzesJahr:
            return u"jeden Tag des Jahres " + Text(key.substr(0, 4));
        case ttGanzerMonat:
            return monthWords(u"jeder Tag im ", month, u" des Jahres " + Text(key.substr(0, 4)));
        default:
            return {};
    }
}

}  // namespace tsRtm::appointments
