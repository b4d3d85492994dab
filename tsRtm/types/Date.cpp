#include "tsRtm/types/Date.hpp"

#include <chrono>
#include <cmath>

namespace tsRtm {
namespace {

constexpr std::chrono::sys_days kEpoch = std::chrono::year{1899} / 12 / 30;
constexpr float64 kSecondsPerDay = 86400;

}  // namespace

Date Date::of(int32 year, int32 month, int32 day, int32 hour, int32 minute, int32 second) {
    using namespace std::chrono;
    const sys_days days = std::chrono::year{year} / std::chrono::month{static_cast<unsigned>(month)} / 1;
    const auto since = (days - kEpoch).count() + day - 1;
    return Date(static_cast<float64>(since) + (hour * 3600 + minute * 60 + second) / kSecondsPerDay);
}

int32 Date::day() const noexcept { return static_cast<int32>(std::floor(serial_)); }

Date::Parts Date::parts() const noexcept {
    using namespace std::chrono;
    const auto seconds = static_cast<int64>(std::llround(serial_ * kSecondsPerDay));
    const auto dayCount = static_cast<int32>((seconds - ((seconds % 86400) + 86400) % 86400) / 86400);
    const auto rest = static_cast<int32>(seconds - int64{dayCount} * 86400);
    const year_month_day date{kEpoch + days{dayCount}};
    return {int{date.year()},
            static_cast<int32>(unsigned{date.month()}),
            static_cast<int32>(unsigned{date.day()}),
            rest / 3600,
            rest / 60 % 60,
            rest % 60};
}

}  // namespace tsRtm
