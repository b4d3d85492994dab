#include <algorithm>
#include <array>

#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm {
namespace {

// What each byte of code page 850 from 80 on sorts as: letters as their ASCII base letters, all else as
// itself.
// clang-format off
constexpr uint8 kFoldHigh[128] = {
    'C', 'U',  'E',  'A', 'A', 'A', 'A', 'C', 'E', 'E', 'E', 'I', 'I', 'I', 'A', 'A',                          // 80
    'E', 0x92, 0x92, 'O', 'O', 'O', 'U', 'U', 'Y', 'O', 'U', 'O', 0x9C, 'O', 0x9E, 0x9F,                       // 90
    'A', 'I',  'O',  'U', 'N', 'N', 0xA6, 0xA7, 0xA8, 0xA9, 0xAA, 0xAB, 0xAC, 0xAD, 0xAE, 0xAF,                // A0
    0xB0, 0xB1, 0xB2, 0xB3, 0xB4, 'A', 'A', 'A', 0xB8, 0xB9, 0xBA, 0xBB, 0xBC, 0xBD, 0xBE, 0xBF,               // B0
    0xC0, 0xC1, 0xC2, 0xC3, 0xC4, 0xC5, 'A', 'A', 0xC8, 0xC9, 0xCA, 0xCB, 0xCC, 0xCD, 0xCE, 0xCF,              // C0
    'D', 'D',  'E',  'E', 'E', 'I', 'I', 'I', 'I', 0xD9, 0xDA, 0xDB, 0xDC, 0xDD, 'I', 0xDF,                    // D0
    'O', 'S',  'O',  'O', 'O', 'O', 0xE6, 0xE8, 0xE8, 'U', 'U', 'U', 'Y', 'Y', 0xEE, 0xEF,                     // E0
    0xF0, 0xF1, 0xF2, 0xF3, 0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xF9, 0xFA, 0xFB, 0xFC, 0xFD, 0xFE, 0xFF,            // F0
};
// clang-format on

constexpr uint8 fold(std::size_t code) {
    if (code >= 'a' && code <= 'z') return static_cast<uint8>(code - 'a' + 'A');
    return code < 0x80 ? static_cast<uint8>(code) : kFoldHigh[code - 0x80];
}

// The folded codes numbered from 1, which leaves 00 free in sort keys; possible since no code folds to a
// small letter.
consteval std::array<uint8, 256> makeWeights() {
    std::array<bool, 256> used{};
    for (std::size_t code = 0; code < 256; ++code) used[fold(code)] = true;
    std::array<uint8, 256> weightOf{};
    uint8 count = 0;
    for (std::size_t code = 0; code < 256; ++code)
        if (used[code]) weightOf[code] = ++count;
    std::array<uint8, 256> weights{};
    for (std::size_t code = 0; code < 256; ++code) weights[code] = weightOf[fold(code)];
    return weights;
}

constexpr std::array<uint8, 256> kWeights = makeWeights();

uint8 weight(char c) noexcept { return kWeights[static_cast<uint8>(c)]; }

}  // namespace

std::strong_ordering compareDos(BytesView a, BytesView b) noexcept {
    const std::size_t shorter = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < shorter; ++i)
        if (weight(a[i]) != weight(b[i])) return weight(a[i]) <=> weight(b[i]);
    return a.size() <=> b.size();
}

void appendSortKeyDos(Bytes& key, BytesView text) { appendSortKeyDos(key, Pieces(&text, 1)); }

void appendSortKeyDos(Bytes& key, Pieces pieces) {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (i != 0) key.push_back(static_cast<char>(weight(' ')));
        for (const char c : pieces[i]) key.push_back(static_cast<char>(weight(c)));
    }
}

std::strong_ordering DosSearchKey::compare(Pieces record) const noexcept {
    const char* key = key_.data();
    const char* const end = key + key_.size();
    // 0, below all weights, at the end of the search text.
    const auto due = [&] { return key == end ? uint8{0} : static_cast<uint8>(*key); };
    for (std::size_t i = 0; i < record.size(); ++i) {
        if (i != 0) {
            if (due() != weight(' ')) return due() <=> weight(' ');
            ++key;
        }
        for (const char c : record[i]) {
            if (due() != weight(c)) return due() <=> weight(c);
            ++key;
        }
    }
    return key == end ? std::strong_ordering::equal : std::strong_ordering::greater;
}

}  // namespace tsRtm
