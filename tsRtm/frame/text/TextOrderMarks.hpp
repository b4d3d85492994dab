#pragma once
// The levels of the text order behind the base letters.
//
// Each level is a row of marks: a weight and its place, counted in base weights. Of two rows the one whose
// first differing mark stands earlier is the greater, at the same place the one with the greater weight; a
// row that ends is below one that goes on.
#include <compare>
#include <cstddef>

#include "tsRtm/frame/text/TextOrder.hpp"
#include "tsRtm/frame/text/TextOrderWeights.hpp"

namespace tsRtm::textorder {

struct Mark {
    std::size_t place = 0;
    uint8 weight = 0;  // 0: there is no further one
    bool operator==(const Mark&) const = default;
};

// Walks the marks of one level.
class MarkWalker {
 public:
    MarkWalker(const std::array<uint8, 256>& level, Pieces pieces) noexcept
        : level_(level), pieces_(pieces) {}

    Mark next() noexcept {
        for (; piece_ < pieces_.size(); ++piece_, at_ = 0, ++place_) {
            const BytesView piece = pieces_[piece_];
            while (at_ < piece.size()) {
                const auto code = static_cast<uint8>(piece[at_++]);
                const std::size_t place = place_;
                place_ += (tables.base[code] != 0) + (tables.second[code] != 0);
                if (level_[code] != 0) return {place, level_[code]};
            }
        }
        return {};
    }

 private:
    const std::array<uint8, 256>& level_;
    Pieces pieces_;
    std::size_t piece_ = 0, at_ = 0;
    std::size_t place_ = 0;
};

// Compares the levels of two texts whose base weights agree. `levels` has the bits of kMarked for those that
// may have a mark in one of them.
std::strong_ordering compareMarks(Pieces a, Pieces b, unsigned levels = kMarked) noexcept;
// Appends the levels to a sort key that ends in the base weights. Levels at the end that are empty leave no
// byte.
void appendMarks(Bytes& key, Pieces text, unsigned levels = kMarked);

}  // namespace tsRtm::textorder
