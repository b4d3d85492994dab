#pragma once
// Which bytes of a record are blanks, found in one pass, so that the text in a field's columns is found
// without a look at them.
#include <algorithm>
#include <bit>
#include <cstring>
#include <vector>

#include "tsRtm/types/Text.hpp"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tsRtm {

// A value; keeps its room from record to record. Offsets count bytes from 0.
class BlankMask {
 public:
    void look(BytesView record) {
        words_.resize((record.size() + kBits - 1) / kBits);
        for (std::size_t word = 0; word < words_.size(); ++word) {
            const BytesView rest = record.substr(word * kBits);
            if (rest.size() >= kBits) {
                words_[word] = others(rest.data());
                continue;
            }
            char bytes[kBits];
            std::memset(bytes, ' ', kBits);
            std::memcpy(bytes, rest.data(), rest.size());
            words_[word] = others(bytes);
        }
    }
    // One past the last byte in from .. to - 1 that is no blank; `from` where all are.
    std::size_t end(std::size_t from, std::size_t to) const noexcept {
        while (to > from) {
            const std::size_t word = (to - 1) / kBits;
            const uint64 bits = words_[word] << (kBits - 1 - (to - 1) % kBits);
            if (bits != 0) return std::max(from, to - static_cast<std::size_t>(std::countl_zero(bits)));
            to = word * kBits;
        }
        return from;
    }
    // The first such byte; `to` where all are blanks.
    std::size_t begin(std::size_t from, std::size_t to) const noexcept {
        while (from < to) {
            const uint64 bits = words_[from / kBits] >> (from % kBits);
            if (bits != 0) return std::min(to, from + static_cast<std::size_t>(std::countr_zero(bits)));
            from = (from / kBits + 1) * kBits;
        }
        return to;
    }

 private:
    static constexpr std::size_t kBits = 64;

    // A bit for each of 64 bytes that is no blank, the first one lowest.
    static uint64 others(const char* bytes) noexcept {
#if defined(__SSE2__)
        const __m128i blanks = _mm_set1_epi8(' ');
        uint64 out = 0;
        for (int part = 0; part < 4; ++part) {
            const auto* const from = reinterpret_cast<const __m128i*>(bytes + 16 * part);
            const int equal = _mm_movemask_epi8(_mm_cmpeq_epi8(_mm_loadu_si128(from), blanks));
            out |= static_cast<uint64>(static_cast<uint16>(~equal)) << (16 * part);
        }
        return out;
#else
        uint64 out = 0;
        for (std::size_t i = 0; i < kBits; ++i) out |= uint64{bytes[i] != ' '} << i;
        return out;
#endif
    }

    std::vector<uint64> words_;
};

}  // namespace tsRtm
