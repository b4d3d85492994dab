#include "tsRtm/appointments/keys/TerminTimes.hpp"

#include <optional>

#include "tsRtm/calendar/days/DateForms.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::appointments {
namespace {

constexpr int32 kMinutesPerDay = 24 * 60;

// With "." for every mark that stands between hours and minutes.
Text pointed(TextView time, bool colons) {
    Text text = replaceAll(time, u",", u".");
    const TextView mark = rtmMain::state().locale.sepTime;
    if (!mark.empty()) text = replaceAll(text, mark, u".");
    return colons ? replaceAll(text, u":", u".") : text;
}

// Minutes since midnight of a time of a day, and of nothing else.
std::optional<int32> timeOfDay(TextView time) {
    const Text text = pointed(trim(time), true);
    const TextView view = text;
    const auto mark = view.find(u'.');
    if (mark == TextView::npos) return {};
    const auto hours = view.substr(0, mark), minutes = view.substr(mark + 1);
    if (hours.size() > 2 || minutes.size() != 2 || !IstZiffern(hours) || !IstZiffern(minutes)) return {};
    const int32 h = dates::number(hours), m = dates::number(minutes);
    if (h > 23 || m > 59) return {};
    return h * 60 + m;
}

Text shortTime(int32 minutes) {
    const int32 within = (minutes + kMinutesPerDay) % kMinutesPerDay;
    Text text(dates::twoDigits(within / 60).view());
    text += rtmMain::state().locale.sepTime;
    return text += dates::twoDigits(within % 60).view();
}

}  // namespace

int32 minutesOf(TextView time) {
    const Text text = pointed(time, false);
    const TextView view = text;
    const auto mark = view.find(u'.');
    if (mark == TextView::npos) return 0;
    const auto behind = view.substr(mark + 1);
    const auto digits = behind.substr(0, behind.find_first_not_of(u"0123456789"));
    const float64 hours = roundToInt32(Val(view.substr(0, mark)));
    return roundToInt32(hours * 60 + dates::number(digits));
}

Text timeBetween(TextView from, TextView to) {
    const auto begin = timeOfDay(from), end = timeOfDay(to);
    return begin && end ? shortTime(*end - *begin) : Text();
}

Text timeAfter(TextView from, TextView duration) {
    const auto begin = timeOfDay(from), length = timeOfDay(duration);
    return begin && length ? shortTime(*begin + *length) : Text();
}

}  // namespace tsRtm::appointments
