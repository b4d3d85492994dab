#include "tsRtm/frame/text/Format.hpp"

#include <algorithm>

#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/NumberText.hpp"

namespace tsRtm {
namespace {

// Takes one literal off the format: an escaped character, a quoted text, or any single character.
TextView takeLiteral(TextView& format) {
    std::size_t skip = 0, length = 1;
    if (format.front() == u'\\' && format.size() > 1) {
        skip = 1;
    } else if (format.front() == u'"') {
        skip = 1;
        length = std::min(format.find(u'"', 1), format.size()) - 1;
    }
    const TextView literal = format.substr(skip, length);
    const bool quoted = format.front() == u'"';
    format.remove_prefix(std::min(skip + length + (quoted ? 1 : 0), format.size()));
    return literal;
}

struct NumberPattern {
    Text inFront, behind;
    std::size_t wholeDigits = 0;     // that always show
    std::size_t fractionDigits = 0;  // that always show
    int32 decimals = 0;              // that may show
    bool thousands = false;
};

NumberPattern parseNumberPattern(TextView format) {
    NumberPattern pattern;
    bool digitSeen = false, markSeen = false;
    while (!format.empty()) {
        const char16_t c = format.front();
        if (c == u'0' || c == u'#') {
            digitSeen = true;
            if (markSeen) ++pattern.decimals;
            if (c == u'0' && markSeen) pattern.fractionDigits = static_cast<std::size_t>(pattern.decimals);
            if (c == u'0' && !markSeen) ++pattern.wholeDigits;
        } else if (c == u'.' && !markSeen) {
            markSeen = true;
        } else if (c == u',' && digitSeen && !markSeen) {
            pattern.thousands = true;
        } else {
            (digitSeen || markSeen ? pattern.behind : pattern.inFront).append(takeLiteral(format));
            continue;
        }
        format.remove_prefix(1);
    }
    return pattern;
}

Text padded(int32 number, std::size_t width) {
    Text digits = toText(number);
    return digits.size() < width ? Text(width - digits.size(), u'0') + digits : digits;
}

Text generalDate(const Date::Parts& at) {
    const auto& locale = rtmMain::state().locale;
    return shortDate(at, locale.dateForm, locale.sepDate) + u" " +
           longTime(at, locale.timeForm == 0, locale.sepTime);
}

}  // namespace

Text shortDate(const Date::Parts& at, int32 form, TextView mark) {
    const Text day = padded(at.day, 2), month = padded(at.month, 2), year = padded(at.year, 4);
    const Text between(form < 0 || form > 2 ? TextView(u"-") : mark);
    switch (form) {
        case 1:
            return day + between + month + between + year;
        case 2:
            return year + between + month + between + day;
        default:
            return month + between + day + between + year;
    }
}

Text shortTime(const Date::Parts& at, TextView mark) {
    return padded(at.hour, 2).append(mark) + padded(at.minute, 2);
}

Text longTime(const Date::Parts& at, bool twelveHours, TextView mark) {
    const Text behind = Text(mark) + padded(at.minute, 2).append(mark) + padded(at.second, 2);
    if (!twelveHours) return padded(at.hour, 2) + behind;
    return toText(at.hour % 12 == 0 ? 12 : at.hour % 12) + behind + (at.hour < 12 ? u" AM" : u" PM");
}

Text Format(float64 value, TextView format) {
    if (equalIgnoringCase(format, u"Standard")) return formatNumber(value, 2, true);
    const NumberPattern pattern = parseNumberPattern(format);
    const auto& locale = rtmMain::state().locale;
    DecimalForm form = decimalForm(value, pattern.decimals);
    while (form.fraction.size() > pattern.fractionDigits && form.fraction.back() == '0')
        form.fraction.pop_back();
    if (form.whole == "0") form.whole.clear();
    if (form.whole.size() < pattern.wholeDigits)
        form.whole.insert(0, pattern.wholeDigits - form.whole.size(), '0');

    Text out = form.negative ? u"-" : u"";
    out += pattern.inFront;
    for (std::size_t i = 0; i < form.whole.size(); ++i) {
        if (pattern.thousands && i != 0 && (form.whole.size() - i) % 3 == 0) out += locale.sep1000;
        out.push_back(static_cast<char16_t>(form.whole[i]));
    }
    if (!form.fraction.empty()) out += locale.sepDec + Text(form.fraction.begin(), form.fraction.end());
    return out + pattern.behind;
}

Text Format(Date moment, TextView format) {
    const auto& locale = rtmMain::state().locale;
    const Date::Parts parts = moment.parts();
    if (equalIgnoringCase(format, u"Short Date")) return shortDate(parts, locale.dateForm, locale.sepDate);
    if (equalIgnoringCase(format, u"Short Time")) return shortTime(parts, locale.sepTime);
    if (equalIgnoringCase(format, u"General Date")) return generalDate(parts);
    Text out;
    while (!format.empty()) {
        const char16_t letter = lower(format.front());
        const TextView behind = format.substr(1);
        std::size_t run = 1;
        while (run <= behind.size() && lower(behind[run - 1]) == letter) ++run;
        switch (letter) {
            case u'd':
                out += padded(parts.day, run);
                break;
            case u'm':
                out += padded(parts.month, run);
                break;
            case u'y':
                out += run > 2 ? padded(parts.year, 4) : padded(parts.year % 100, 2);
                break;
            case u'h':
                out += padded(parts.hour, run);
                break;
            case u'n':
                out += padded(parts.minute, run);
                break;
            case u's':
                out += padded(parts.second, run);
                break;
            case u':':
                out += locale.sepTime;
                run = 1;
                break;
            case u'/':
                out += locale.sepDate;
                run = 1;
                break;
            default:
                out += takeLiteral(format);
                run = 0;
        }
        format.remove_prefix(run);
    }
    return out;
}

}  // namespace tsRtm
