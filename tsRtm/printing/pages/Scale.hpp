#pragma once
// The units of paper: twips (1440 an inch), dots (1200 an inch), millimetres.
#include <algorithm>

#include "tsRtm/platform/Drawing.hpp"

namespace tsRtm {

using platform::kTwipsPerMM, platform::mmToTwips;

inline constexpr float64 kDotsPerMM = 47.24409448818898;

// a * b / c, to the nearest number, halves away from zero; 0 for c 0 and what int32 cannot hold.
constexpr int32 mulDiv(int32 a, int32 b, int32 c) noexcept {
    if (c == 0) return 0;
    const int64 product = int64{a} * b;
    const int64 half = (c < 0 ? -int64{c} : int64{c}) / 2;
    const int64 result = (product + ((product < 0) ? -half : half)) / c;
    return result == static_cast<int32>(result) ? static_cast<int32>(result) : 0;
}

constexpr int32 dotsToTwips(int32 dots) noexcept { return mulDiv(dots, 6, 5); }
constexpr int32 twipsToDots(int32 twips) noexcept { return mulDiv(twips, 5, 6); }
inline int32 mmToDots(float64 mm) noexcept { return roundToInt32(mm * kDotsPerMM); }

// By how much places are divided so that those of a page this large stay within 16 bits.
constexpr int32 pageFactor(int32 width, int32 height) noexcept {
    int32 factor = 1;
    for (int32 size = std::max(width, height); size > 32767; size /= 2) factor *= 2;
    return factor;
}

}  // namespace tsRtm
