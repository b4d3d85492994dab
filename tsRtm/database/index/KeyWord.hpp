#pragma once
// Sort keys by their words, which compare as numbers.
#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "tsRtm/types/Numbers.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Eight bytes of a sort key as a number: of two keys that agree before these bytes, those that differ in them
// order as the numbers do. Sort keys hold no byte 00, so a 0 is no part of a key.
using KeyWord = uint64;

// The word that these bytes begin with, zeros behind their end.
inline KeyWord keyWord(BytesView bytes) noexcept {
    KeyWord word = 0;
    std::memcpy(&word, bytes.data(), std::min(bytes.size(), sizeof word));
    if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
    return word;
}

// The first bytes of a sort key, zeros behind its end.
struct KeyStart {
    static constexpr std::size_t kMostShared = 48;

    std::array<char, kMostShared + 2 * sizeof(KeyWord)> bytes{};

    // `from` is at most kMostShared, or a word more.
    KeyWord word(std::size_t from) const noexcept { return keyWord({bytes.data() + from, sizeof(KeyWord)}); }
};

// Whether the key ends in this word.
constexpr bool endsIn(KeyWord word) noexcept { return (word & 0xFF) == 0; }
// Bytes that two words begin with alike, up to the end of the keys.
constexpr std::size_t alike(KeyWord a, KeyWord b) noexcept {
    if (a == 0) return 0;
    return static_cast<std::size_t>(std::min(std::countl_zero(a ^ b), 64 - std::countr_zero(a))) / 8;
}

}  // namespace tsRtm
