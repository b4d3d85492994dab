// clsDatum: names, ISO forms and times of day.
#include <optional>

#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/calendar/days/DayNumbers.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

const rtmMain::LocaleBlock& locale() noexcept { return rtmMain::state().locale; }

struct TimeOfDay {
    int32 hour = 0, minute = 0, second = 0;
};

// "hh:mm" or "hh:mm:ss"; nothing for a text that tells no time of a day.
std::optional<TimeOfDay> readTime(TextView text, TextView separator) {
    if (separator.empty()) return {};
    int32 values[3] = {};
    std::size_t count = 0;
    for (auto rest = trim(text);;) {
        const auto end = rest.find(separator);
        const auto piece = trim(rest.substr(0, end));
        if (count == 3 || piece.size() > 2 || !IstZiffern(piece)) return {};
        values[count++] = dates::number(piece);
        if (end == TextView::npos) break;
        rest.remove_prefix(end + separator.size());
    }
    if (count < 2 || values[0] > 23 || values[1] > 59 || values[2] > 59) return {};
    return TimeOfDay{values[0], values[1], values[2]};
}

// ISO 8601: the colon in every locale.
Text isoTime(const TimeOfDay& time) {
    Text result(dates::twoDigits(time.hour).view());
    for (const auto part : {time.minute, time.second}) (result += u':') += dates::twoDigits(part).view();
    return result;
}

}  // namespace

Text clsDatum::DateTo8(TextView Date6) const {
    if (Date6.empty()) return {};
    const auto normal = dates::normalDigits(Date6);
    Text result(normal.between(1, 2));
    (result += locale().sepDate) += normal.between(3, 4);
    (result += locale().sepDate) += normal.from(5);
    return result;
}

Text clsDatum::DayName(TextView Datum) const {
    // Counted from the system's first weekday: the true name only where that is Monday.
    return rtmMain::system().locale.weekdayName((locale().firstDayOfWeek + DayOfWeek(Datum)) % 7);
}

Text clsDatum::MonthName(TextView Datum) const {
    const auto month = dates::number(dates::normalDigits(Datum).between(3, 4));
    const auto name = month >= 1 && month <= 12 ? rtmMain::system().locale.monthName(month) : Text();
    return name.empty() ? Text(u"Falscher Monat") : name;
}

Text clsDatum::WordDate(TextView Datum) const {
    const auto normal = dates::normalDigits(Datum);
    auto result = toText(dates::number(normal.between(1, 2))) + u". " + MonthName(Datum) + u" ";
    if (normal.size() == 6)
        result += dates::twoDigits(rtmMain::system().clock.now().parts().year / 100).view();
    return result += normal.from(5);
}

Text clsDatum::DateIso8601(TextView Datum) const {
    const auto day = JulianDay(Datum.empty() ? TextView(rtmMain::DA8()) : Datum);
    const auto sorted = dates::sortDigits(dates::gregorianDate(day).view());
    Text result(sorted.between(1, 4));
    (result += u'-') += sorted.between(5, 6);
    (result += u'-') += sorted.from(7);
    return result;
}

Text clsDatum::DateTimeIso8601(TextView Datum, TextView Zeit) const {
    auto date = DateIso8601(Datum);
    if (!Zeit.empty()) {
        const auto time = readTime(replaceAll(Zeit, u".", locale().sepTime), locale().sepTime);
        return time ? date + u"T" + isoTime(*time) : date;
    }
    if (!Datum.empty()) return date;
    const auto now = rtmMain::system().clock.now().parts();
    return date + u"T" + isoTime({now.hour, now.minute, now.second});
}

int32 clsDatum::ToMinutes(TextView Zeit) const {
    const auto text = replaceAll(replaceAll(Zeit, locale().sepTime, u"."), u",", u".");
    if (!IstNumerisch(text, u".", u"")) return 0;
    const auto dot = text.find(u'.');
    const auto hours = Val(TextView(text).substr(0, dot));
    const auto minutes = dot == Text::npos ? 0 : Val(TextView(text).substr(dot + 1));
    return roundToInt32(hours * 60 + minutes);
}

Text clsDatum::ToTime(int32 Minutes) const {
    // Two digits, whatever the hours: 6000 minutes show as "00:00".
    Text result(dates::twoDigits(Minutes / 60).view());
    (result += locale().sepTime) += dates::twoDigits(Minutes % 60).view();
    return result;
}

}  // namespace tsRtm
