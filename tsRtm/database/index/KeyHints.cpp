#include "tsRtm/database/index/KeyHints.hpp"

#include <utility>

#include "tsRtm/database/files/FetchAhead.hpp"

namespace tsRtm {
namespace {

// The words begin anew where a search knows so many more bytes that all keys share.
constexpr std::size_t kWorthwhile = 8;

}  // namespace

void NodeHints::follow(const tree::Node& node, int32 count) noexcept {
    const auto now = static_cast<std::size_t>(count);
    std::size_t i = 0;
    while (i < now && i < keys && records[i] == node.entries[i].satz) ++i;
    if (i == now && i == keys) return;
    const NodeHints old = *this;
    const auto end = old.records.begin() + keys;
    auto due = old.records.begin() + static_cast<std::ptrdiff_t>(i);
    for (; i < now; ++i) {
        records[i] = node.entries[i].satz;
        const auto found = std::find(due, end, records[i]);
        words[i] = 0;
        if (found == end) continue;
        words[i] = old.words[static_cast<std::size_t>(found - old.records.begin())];
        next[i] = old.next[static_cast<std::size_t>(found - old.records.begin())];
        due = found + 1;
    }
    keys = static_cast<uint8>(count);
}

void NodeHints::enter(int32 position, int32 record, const KeyStart& key) noexcept {
    const auto at = static_cast<std::size_t>(position - 1);
    if (keys == tree::kMostKeys || at > keys) return;
    const auto open = [&](auto& row) {
        std::copy_backward(row.begin() + at, row.begin() + keys, row.begin() + keys + 1);
        return row.begin() + at;
    };
    const bool known = sharesStart(key);
    *open(words) = known ? key.word(shared) : 0;
    *open(next) = key.word(shared + sizeof(KeyWord));
    *open(records) = record;
    ++keys;
}

void NodeHints::remove(int32 position) noexcept {
    const auto at = static_cast<std::size_t>(position);
    if (at > keys) return;
    const auto close = [&](auto& row) {
        std::copy(row.begin() + at, row.begin() + keys, row.begin() + at - 1);
    };
    close(words);
    close(next);
    close(records);
    --keys;
}

void NodeHints::focus(const KeyStart& search, std::size_t certain) noexcept {
    if (used && certain < shared + kWorthwhile && sharesStart(search)) return;
    // A byte less, so that no word is 0.
    shared = static_cast<uint8>(std::min(certain - (certain > 0 ? 1 : 0), KeyStart::kMostShared));
    std::copy_n(search.bytes.begin(), shared, start.begin());
    words.fill(0);
    used = false;
}

NodeHints& KeyHints::of(int32 address) {
    const std::size_t block = numberOf(address) / kBlock;
    if (block >= blocks_.size()) blocks_.resize(block + 1);
    if (!blocks_[block]) {
        if (made_.size() < kMostBlocks) {
            made_.push_back(block);
        } else {
            blocks_[std::exchange(made_[oldest_], block)] = nullptr;
            oldest_ = (oldest_ + 1) % kMostBlocks;
        }
        // Behind the heads nothing is read before it is written, and to empty it takes longer than a search.
        blocks_[block] = std::make_unique_for_overwrite<NodeHints[]>(kBlock);
    }
    NodeHints& out = blocks_[block][numberOf(address) % kBlock];
    if (out.address != address) {
        out.address = address;
        out.era = 0;
        out.keys = 0;
        out.used = false;
    }
    return out;
}

void KeyHints::copy(int32 from, int32 to) {
    const NodeHints source = of(from);
    NodeHints& target = of(to);
    target = source;
    target.address = to;
}

void KeyHints::approach(int32 address) const noexcept {
    const std::size_t block = numberOf(address) / kBlock;
    if (block >= blocks_.size() || !blocks_[block]) return;
    fetchAhead(&blocks_[block][numberOf(address) % kBlock], offsetof(NodeHints, next));
}

}  // namespace tsRtm
