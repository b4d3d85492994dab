#pragma once
// The tree index file: a header block of 512 bytes, then nodes of 512 bytes. All numbers little-endian.
//
//   header   offset  size  field      meaning
//            0       2     magic      "TS"
//            2       2     Version    int16, 1; accepted only below 2
//            4       4     Wurzel     int32, address of the root node, 0 = empty
//            8       4     FreiListe  int32, address of the first free node, 0 = none
//            12      4     reserved   0
//
//   node     offset        size  field    meaning
//            0             4     Anzahl   int32, keys in the node; -1 in a node on the free list
//            4 + 12(i-1)   4     Kind     of entry i: address of the subtree left of key i, 0 in a leaf
//            8 + 12(i-1)   4     Zaehler  of entry i: records in that subtree
//            12 + 12(i-1)  4     Satz     of entry i: record number of key i
//            496           16    reserved 0
//
// i runs from 1 to 41. A node with k keys uses entries 1..k+1; Satz of entry k+1 has no meaning, Kind and
// Zaehler of entry k+1 describe the rightmost subtree. Free nodes link through Kind of entry 1. An address is
// the byte offset plus one.
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::tree {

static_assert(std::endian::native == std::endian::little, "the node file is read and written in place");

inline constexpr uint32 kBlockBytes = 512;
inline constexpr int32 kMostKeys = 40;
inline constexpr int32 kFewestKeys = 20;
inline constexpr int32 kBulkKeys = 30;   // a bulk load leaves room for inserts
inline constexpr int32 kMostLevels = 8;  // a node stack of the current node and seven ancestors
inline constexpr int32 kFreeMark = -1;

struct Header {
    char magic[2] = {'T', 'S'};
    int16 version = 1;
    int32 wurzel = 0;
    int32 freiListe = 0;
    int32 reserved = 0;
};
static_assert(sizeof(Header) == 16 && offsetof(Header, version) == 2 && offsetof(Header, wurzel) == 4 &&
              offsetof(Header, freiListe) == 8);

// Sum and difference of two counts. Those of a damaged file may be anything: they wrap around instead of
// leading astray.
constexpr int32 plus(int32 a, int32 b) noexcept {
    return static_cast<int32>(static_cast<uint32>(a) + static_cast<uint32>(b));
}
constexpr int32 minus(int32 a, int32 b) noexcept {
    return static_cast<int32>(static_cast<uint32>(a) - static_cast<uint32>(b));
}

struct Entry {
    int32 kind = 0;
    int32 zaehler = 0;
    int32 satz = 0;
};
static_assert(sizeof(Entry) == 12);

struct Node {
    int32 anzahl = 0;
    Entry entries[kMostKeys + 1];
    char reserved[16] = {};

    // Entries count from 1, as everywhere in the tree.
    Entry& entry(int32 i) noexcept { return entries[i - 1]; }
    const Entry& entry(int32 i) const noexcept { return entries[i - 1]; }
    bool sound() const noexcept { return anzahl >= 0 && anzahl <= kMostKeys; }
    // Keys of a node that others may be writing: looked at once, -1 where that is no number of keys.
    int32 keys() const noexcept {
        const int32 keys = __atomic_load_n(&anzahl, __ATOMIC_RELAXED);
        return keys >= 0 && keys <= kMostKeys ? keys : -1;
    }
    // Records of the node and all below it, -1 where the counts are none.
    int32 total() const noexcept { return total(anzahl); }
    int32 total(int32 keys) const noexcept;
    // Records before the entry at a position and its subtree.
    int32 before(int32 position) const noexcept;
};
static_assert(sizeof(Node) == kBlockBytes && offsetof(Node, entries) == 4 && offsetof(Node, reserved) == 496);

// The counts of some entries: their sum, which wraps around, and all bits that are set in any of them.
struct Counts {
    uint32 sum = 0;
    uint32 bits = 0;
};

inline Counts countsOf(const Entry* entries, int32 count) noexcept {
    // Four entries in one step, all their numbers side by side: the counts are every third.
    constexpr std::size_t step = 4, numbers = step * sizeof(Entry) / sizeof(uint32);
    std::array<uint32, numbers> sums{}, bits{}, four;
    int32 i = 0;
    for (; i + static_cast<int32>(step) <= count; i += static_cast<int32>(step)) {
        std::memcpy(four.data(), entries + i, sizeof four);
        for (std::size_t n = 0; n < numbers; ++n) sums[n] += four[n];
        for (std::size_t n = 0; n < numbers; ++n) bits[n] |= four[n];
    }
    Counts out{sums[1] + sums[4] + sums[7] + sums[10], bits[1] | bits[4] | bits[7] | bits[10]};
    for (; i < count; ++i) {
        out.sum += static_cast<uint32>(entries[i].zaehler);
        out.bits |= static_cast<uint32>(entries[i].zaehler);
    }
    return out;
}

inline int32 Node::before(int32 position) const noexcept {
    const int32 count = position - 1;
    // Below the entries of a leaf there is nothing.
    if (entries[0].kind == 0) return count;
    return static_cast<int32>(static_cast<uint32>(count) + countsOf(entries, count).sum);
}

inline int32 Node::total(int32 keys) const noexcept {
    constexpr uint32 kPlausible = 1 << 25;  // so many times the entries do not wrap around
    const Counts counts = countsOf(entries, keys + 1);
    if (counts.bits < kPlausible) return static_cast<int32>(counts.sum) + keys;
    int64 sum = keys;
    for (int32 i = 0; i <= keys; ++i) sum += entries[i].zaehler;
    return sum < 0 || sum > 0x7FFFFFFF ? -1 : static_cast<int32>(sum);
}

inline constexpr int32 kFirstNode = kBlockBytes + 1;
// Byte offset of a node. The lowest bit of an address is its mark of being a position, not a block number.
constexpr uint64 offsetOf(int32 address) noexcept { return static_cast<uint64>(address & ~1); }
// A Version 2 file would count its blocks; kept beside its twin though no opening accepts such a file.
constexpr uint64 offsetOfBlock(int32 address) noexcept {
    return uint64{kBlockBytes} * static_cast<uint64>(address);
}

}  // namespace tsRtm::tree
