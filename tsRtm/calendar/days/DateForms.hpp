#pragma once
// The short forms of a date, without allocation: record and index code converts dates by the million.
#include <algorithm>
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::dates {

// At most eight characters of a date. Positions are 1-based; what lies outside is empty.
class DateDigits {
 public:
    static constexpr std::size_t kCapacity = 8;

    TextView view() const noexcept { return {digits_.data(), size_}; }
    std::size_t size() const noexcept { return size_; }
    TextView from(std::size_t first) const noexcept { return between(first, kCapacity); }
    TextView between(std::size_t first, std::size_t last) const noexcept {
        if (first > size_) return {};
        return view().substr(first - 1, last - first + 1);
    }
    DateDigits& operator+=(TextView piece) noexcept {
        const auto count = std::min(piece.size(), kCapacity - size_);
        std::copy_n(piece.begin(), count, digits_.begin() + static_cast<std::ptrdiff_t>(size_));
        size_ += count;
        return *this;
    }

 private:
    std::array<char16_t, kCapacity> digits_{};
    std::size_t size_ = 0;
};

// The number that a piece of a date begins with, 0 for none, within int32.
int32 number(TextView piece) noexcept;
// The last two decimal digits of value + 100.
DateDigits twoDigits(int64 value) noexcept;

// Local text or digits to local digits (DateTo6).
DateDigits localDigits(TextView date);
// Local text or digits to TTMMJJJJ or TTMMJJ (NormDatum).
DateDigits normalDigits(TextView date);
// TTMMJJJJ or TTMMJJ to local digits (LokalDatum).
DateDigits toLocal(const DateDigits& normal) noexcept;
// Local text or digits to JJJJMMTT (DateSort).
DateDigits sortDigits(TextView date);

// Local digits of a date whose parts may be out of range (DtoC).
DateDigits compose(int64 day, int64 month, int64 year) noexcept;
int32 daysInMonth(int64 month, int64 year) noexcept;

}  // namespace tsRtm::dates
