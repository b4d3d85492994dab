#pragma once
// The layout of a memo store, Memo-ooo.fff: the texts or bytes of one memo or blob field. ooo is the chain
// field whose rows own them, 000 for the database's own records; fff the field; both as the last three digits
// of 1000 + the number, from 100 on the number itself.
//
// The file is a run of blocks of 128 bytes without a header. Block p, from 1, begins at (p - 1) times 128; a
// record names an entry by its first block, 0 for none. At the start of an entry:
//
//   offset  size    content
//   0       1       mark: 26 an entry, 0 a free block; else raw text in the DOS code page, to the first 26
//                   but at most 65536 characters: the older form
//   1       1       0
//   2       1       form: low 7 bits 0 8-bit text or bytes, 1 UTF-8, 2 UTF-16; with 128: scrambled
//   3       1       key of the scrambling, 1..255, else 0
//   4       4       length of the payload in bytes, little-endian; 20202020 hexadecimal: empty
//   8       length  payload, then zeros to the end of the block
#include <cstring>
#include <span>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::memoFormat {

constexpr uint64 kBlock = 128;
constexpr std::size_t kHead = 8;
constexpr char kEntry = 26;
constexpr char kFree = 0;
constexpr int32 kEmptyLength = 0x20202020;
constexpr uint8 kScrambled = 128;
constexpr std::size_t kLongestRaw = 65536;

enum Form : uint8 { ansi = 0, utf8 = 1, utf16 = 2 };

// What an entry says of its payload.
struct Head {
    uint8 form = ansi;  // with kScrambled
    uint8 key = 0;
    int32 length = 0;
};

constexpr uint64 offsetOf(int32 block) noexcept { return static_cast<uint64>(block - 1) * kBlock; }
constexpr uint64 blocksOf(uint64 bytes) noexcept { return (bytes + kBlock - 1) / kBlock; }

// The entry with its padding.
inline Bytes encode(const Head& head, BytesView payload) {
    const auto length = static_cast<uint32>(payload.size());
    Bytes out{kEntry, '\0', static_cast<char>(head.form), static_cast<char>(head.key)};
    for (int32 shift = 0; shift < 32; shift += 8) out.push_back(static_cast<char>(length >> shift));
    out.append(payload);
    out.resize(blocksOf(out.size()) * kBlock, '\0');
    return out;
}

inline Head decode(std::span<const char, kHead> bytes) noexcept {
    Head head{static_cast<uint8>(bytes[2]), static_cast<uint8>(bytes[3]), 0};
    for (std::size_t i = 0; i < 4; ++i)
        head.length |= static_cast<int32>(static_cast<uint32>(static_cast<uint8>(bytes[4 + i])) << 8 * i);
    return head;
}

// The three digits of a field in the name of a file.
inline Text digitsOf(int32 field) {
    const Text digits = toText(field < 100 ? 1000 + field : field);
    return field < 100 ? digits.substr(1) : digits;
}

inline Text fileName(int32 owner, int32 field) { return u"Memo-" + digitsOf(owner) + u"." + digitsOf(field); }

}  // namespace tsRtm::memoFormat
