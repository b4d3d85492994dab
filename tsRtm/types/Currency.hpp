#pragma once
// Fixed-point money and 64-bit file positions.
#include <compare>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// A signed 64-bit number with four decimals.
class currency {
 public:
    constexpr currency() = default;
    static constexpr currency fromScaled(int64 tenThousandths) {
        currency value;
        value.scaled_ = tenThousandths;
        return value;
    }
    static constexpr currency fromWhole(int64 whole) { return fromScaled(whole * 10000); }

    constexpr int64 scaled() const noexcept { return scaled_; }
    // Towards zero.
    constexpr int64 whole() const noexcept { return scaled_ / 10000; }

    constexpr auto operator<=>(const currency&) const = default;
    friend constexpr currency operator+(currency a, currency b) { return fromScaled(a.scaled_ + b.scaled_); }
    friend constexpr currency operator-(currency a, currency b) { return fromScaled(a.scaled_ - b.scaled_); }

 private:
    int64 scaled_ = 0;
};

}  // namespace tsRtm
