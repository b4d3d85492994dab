#pragma once
// A moment as a day serial.
#include <compare>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// Whole part: days since 1899-12-30; fraction: the time of day. A value type without a time zone.
class Date {
 public:
    constexpr Date() = default;
    constexpr explicit Date(float64 serial) : serial_(serial) {}
    // A moment of the Gregorian calendar (ISO 8601 year, month 1..12, day 1..31).
    static Date of(int32 year, int32 month, int32 day, int32 hour = 0, int32 minute = 0, int32 second = 0);

    constexpr float64 serial() const noexcept { return serial_; }
    // Days since 1899-12-30, towards minus infinity.
    int32 day() const noexcept;

    struct Parts {
        int32 year, month, day, hour, minute, second;
    };
    // Rounded to whole seconds.
    Parts parts() const noexcept;

    constexpr auto operator<=>(const Date&) const = default;

 private:
    float64 serial_ = 0;
};

}  // namespace tsRtm
