#pragma once
// The frozen weights behind the text order, as tables for the comparing loops.
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::textorder {

// Each array has one entry for each byte of code page 1252. Weights are ranks: the measured weights numbered
// from the smallest, so that one byte holds them; 0 is no weight.
struct Tables {
    std::array<uint8, 256> base;    // first base weight, from kFirstRank on
    std::array<uint8, 256> second;  // the second one of an expanding character
    std::array<uint8, 256> accent;  // levels that speak when all base weights agree
    std::array<uint8, 256> form;    //   superscripts
    std::array<uint8, 256>
        special;  //   hyphen, apostrophe, dashes, control characters: they have no base weight
    // What one look tells: the low byte is the base weight of a character that has exactly one (else 0), the
    // bits of kMarked tell which levels behind the base have a weight.
    std::array<uint16, 256> quick;
};

inline constexpr unsigned kAccented = 0x100;
inline constexpr unsigned kFormed = 0x200;
inline constexpr unsigned kSpecial = 0x400;
inline constexpr unsigned kMarked = kAccented | kFormed | kSpecial;
inline constexpr uint8 kLevelEnd = 1;   // in a sort key; below every weight
inline constexpr uint8 kFirstRank = 2;  // the smallest weight
inline constexpr uint8 kForeign = 255;  // base weight of what lies outside the code page

extern const Tables tables;

}  // namespace tsRtm::textorder
