#pragma once
// The ten digits of the alphabet that numbers, codes and dates are written in.

namespace tsRtm {

constexpr bool isDigit(char16_t c) noexcept { return c >= u'0' && c <= u'9'; }

}  // namespace tsRtm
