#pragma once
// What the searches in one index remember of the keys they met, so that a probe of a record seldom needs a
// look at it.
//
// A hint may be stale: others change records, and nobody tells. Whoever lets hints lead him proves the place
// found on the records themselves, and searches again without them where the proof fails.
#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <cstring>
#include <memory>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The first bytes of a sort key. Two of them that differ order as their keys do.
class KeyPrefix {
 public:
    static constexpr std::size_t kBytes = 16;

    KeyPrefix() = default;  // of an empty key
    explicit KeyPrefix(BytesView sortKey) noexcept {
        std::memcpy(word_.data(), sortKey.data(), std::min(sortKey.size(), kBytes));
        if constexpr (std::endian::native == std::endian::little)
            for (auto& word : word_) word = __builtin_bswap64(word);
    }

    std::strong_ordering operator<=>(const KeyPrefix& other) const noexcept = default;
    bool operator==(const KeyPrefix& other) const noexcept = default;
    bool empty() const noexcept { return word_[0] == 0; }
    // The key has no more bytes than these: sort keys hold no byte 00.
    bool whole() const noexcept { return (word_[1] & 0xFF) == 0; }

 private:
    std::array<uint64, kBytes / sizeof(uint64)> word_{};
};

// Prefixes by record number, 16 bytes for each record near one that was met. Not thread-safe.
class KeyHints {
 public:
    // Empty where nothing is known.
    KeyPrefix of(int32 record) const noexcept {
        const auto at = static_cast<std::size_t>(record);
        const std::size_t block = at / kBlock;
        return block < blocks_.size() && blocks_[block] ? blocks_[block][at % kBlock] : KeyPrefix();
    }
    // The record must be there: its number is where the room comes from.
    void remember(int32 record, const KeyPrefix& prefix) {
        const auto at = static_cast<std::size_t>(record);
        const std::size_t block = at / kBlock;
        if (block >= blocks_.size()) blocks_.resize(block + 1);
        if (!blocks_[block]) blocks_[block] = std::make_unique<KeyPrefix[]>(kBlock);
        blocks_[block][at % kBlock] = prefix;
    }

 private:
    static constexpr std::size_t kBlock = 256;  // a page

    std::vector<std::unique_ptr<KeyPrefix[]>> blocks_;
};

}  // namespace tsRtm
