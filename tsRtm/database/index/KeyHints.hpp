#pragma once
// What the searches in one tree remember of the keys they met, node by node, so that a probe of a key seldom
// needs a look at its record.
//
// A hint may be stale: others change records, and nobody tells. Whoever lets hints lead him proves the place
// found on the records themselves, and searches again without them where the proof fails.
#include <array>
#include <cstring>
#include <memory>
#include <vector>

#include "tsRtm/database/index/KeyWord.hpp"
#include "tsRtm/database/index/NodeFormat.hpp"

namespace tsRtm {

// The words of one node's keys side by side, from behind the bytes that all its keys share on.
struct alignas(64) NodeHints {
    int32 address = 0;  // 0: nothing is known
    uint32 era = 0;     // when the records below were last held against the node
    uint8 keys = 0;
    uint8 shared = 0;
    bool used = false;  // since the words were last dropped
    std::array<char, KeyStart::kMostShared> start;
    std::array<KeyWord, tree::kMostKeys> words;  // 0: not known
    std::array<KeyWord, tree::kMostKeys> next;   // those behind the words
    std::array<int32, tree::kMostKeys> records;

    // Brings them in line with the node's keys: what stays keeps its word.
    void follow(const tree::Node& node, int32 count) noexcept;
    // A key comes to the node, which has room for it.
    void enter(int32 position, int32 record, const KeyStart& key) noexcept;
    // A key leaves it.
    void remove(int32 position) noexcept;
    // For a search that shares `certain` bytes with all keys of the node. Drops the words where they begin
    // elsewhere.
    void focus(const KeyStart& search, std::size_t certain) noexcept;
    bool sharesStart(const KeyStart& key) const noexcept {
        return std::memcmp(start.data(), key.bytes.data(), shared) == 0;
    }
};

// 896 bytes for each node near one that was met, up to 29 MB: then the first ones go. Not thread-safe.
class KeyHints {
 public:
    // Good until the next call.
    NodeHints& of(int32 address);
    void drop(int32 address) { of(address).address = 0; }
    // A node takes over keys of another one.
    void copy(int32 from, int32 to);
    // Lets the memory come near that a search in this node will look at.
    void approach(int32 address) const noexcept;

 private:
    static constexpr std::size_t kBlock = 64;
    static constexpr std::size_t kMostBlocks = 512;

    static std::size_t numberOf(int32 address) noexcept {
        return static_cast<std::size_t>(tree::offsetOf(address) / tree::kBlockBytes);
    }

    std::vector<std::unique_ptr<NodeHints[]>> blocks_;
    std::vector<std::size_t> made_;  // numbers of the blocks there are, in a ring
    std::size_t oldest_ = 0;         // place in the ring, once it is full
};

}  // namespace tsRtm
