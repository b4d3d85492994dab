#include "tsRtm/database/records/RecordText.hpp"

#include "tsRtm/frame/text/CodePages.hpp"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tsRtm {

#if defined(__SSE2__)

namespace {

// Sixteen bytes in one step.
class Steps {
 public:
    Steps(const char* from, char16_t* to) : from_(from), to_(to) {}

    // Writes their text; gives a bit for each byte that is no blank.
    uint64 take(std::size_t at) noexcept {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from_ + at));
        auto* const to = reinterpret_cast<__m128i*>(to_ + at);
        _mm_storeu_si128(to, _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
        _mm_storeu_si128(to + 1, _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
        const __m128i high = _mm_and_si128(bytes, _mm_set1_epi8(static_cast<char>(0xE0)));
        special_ = _mm_or_si128(special_, _mm_cmpeq_epi8(high, _mm_set1_epi8(static_cast<char>(0x80))));
        return static_cast<uint16>(~_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(' '))));
    }
    // There was a byte from 80 to 9F, which is another character in Unicode.
    bool special() const noexcept { return _mm_movemask_epi8(special_) != 0; }

 private:
    const char* from_;
    char16_t* to_;
    __m128i special_ = _mm_setzero_si128();
};

}  // namespace

bool RecordText::lookInSteps(BytesView record) noexcept {
    constexpr std::size_t step = 16;
    const std::size_t size = record.size();
    if (size < step) return false;
    Steps steps(record.data(), text_.data());
    std::size_t at = 0;
    uint64* word = words_.data();
    for (; at + kBits <= size; at += kBits)
        *word++ = steps.take(at) | steps.take(at + step) << step | steps.take(at + 2 * step) << 2 * step |
                  steps.take(at + 3 * step) << 3 * step;
    *word = 0;
    std::size_t shift = 0;
    for (; at + step <= size; at += step, shift += step) *word |= steps.take(at) << shift;
    // The last step covers bytes that were seen already.
    if (at < size) *word |= steps.take(size - step) >> (at + step - size) << shift;
    return !steps.special();
}

#else

bool RecordText::lookInSteps(BytesView) noexcept { return false; }

#endif

void RecordText::look(BytesView record) {
    if (text_.size() != record.size()) {
        text_.resize(record.size());
        // A word more than the record needs: field() reads two side by side.
        words_.assign(record.size() / kBits + 2, 0);
    }
    if (lookInSteps(record)) return;
    fromAnsi(record, text_);
    words_.assign(words_.size(), 0);
    for (std::size_t at = 0; at < record.size(); ++at)
        words_[at / kBits] |= uint64{record[at] != ' '} << (at % kBits);
}

}  // namespace tsRtm
