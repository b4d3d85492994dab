#pragma once
// A whole record as text, and which of its bytes are blanks: found in one pass, so that the text of a field
// is had without a look at its columns.
#include <bit>
#include <vector>

#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

// For records in code page 1252. A value; keeps its room from record to record.
class RecordText {
 public:
    void look(BytesView record);
    // The text of a field that shows in place, without the blanks that fill its columns. Holds until the next
    // look.
    TextView field(const FieldLayout& field) const noexcept;

 private:
    static constexpr std::size_t kBits = 64;

    bool lookInSteps(BytesView record) noexcept;

    Text text_;
    std::vector<uint64> words_;  // a bit for each byte that is no blank, the first one lowest
};

inline TextView RecordText::field(const FieldLayout& field) const noexcept {
    const char16_t* const text = text_.data() + field.offset;
    const uint64* const words = words_.data() + field.offset / kBits;
    const std::size_t shift = field.offset % kBits;
    // Without a branch: where a text ends is never foreseen.
    const uint64 bits = (words[0] >> shift | (words[1] << 1) << (kBits - 1 - shift)) & field.bits;
    if (field.left) return {text, static_cast<std::size_t>(std::bit_width(bits))};
    if (bits == 0) return {};
    const auto blanks = static_cast<std::size_t>(std::countr_zero(bits));
    return {text + blanks, field.bytes - blanks};
}

}  // namespace tsRtm
