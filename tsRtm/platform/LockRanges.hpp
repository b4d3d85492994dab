#pragma once
// Who locks which bytes of a file: one table, so that no two meanings share a byte.
//
//   from            what
//   0               data, and the locks that the file formats define, also behind the end of the file
//   2^61            one byte, tried by probeLocks()
//   2^61 + 1        one byte, the gate before the database lock on a share
//   2^62            one byte, the share mode: held shared by every opening, exclusively by an exclusive one
//   2^62 + 2^60     traces: an opening that locks holds one byte of its own, by which it finds out whether
//                   the server still knows it
//   2^62 + 2^61     signs: byte kSigns + n is held shared by an opening that shows the number n
//
// No data ever lies from 2^61 on, and from 2^62 on the bytes are the ground's own: tryLock, unlock and
// isLocked refuse them.
#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform {

// Bytes offset .. offset + length - 1, 0-based; may lie beyond the end of the file.
struct ByteRange {
    uint64 offset = 0;
    uint64 length = 1;
};

namespace lockRanges {

inline constexpr ByteRange kProbe{uint64{1} << 61, 1};
inline constexpr ByteRange kGate{(uint64{1} << 61) + 1, 1};
inline constexpr uint64 kReservedFrom = uint64{1} << 62;
inline constexpr ByteRange kShareMode{kReservedFrom, 1};
inline constexpr uint64 kTraces = kReservedFrom + (uint64{1} << 60);
inline constexpr uint64 kTraceCount = uint64{1} << 60;
inline constexpr uint64 kSigns = kReservedFrom + (uint64{1} << 61);
// Offsets end below 2^63.
inline constexpr uint64 kGreatestSign = (uint64{1} << 61) - 1;

// Whether a range is one that callers may lock.
constexpr bool lockable(ByteRange range) noexcept {
    return range.length != 0 && range.offset < kReservedFrom && range.length <= kReservedFrom - range.offset;
}

constexpr bool overlap(ByteRange a, ByteRange b) noexcept {
    return a.offset < b.offset + b.length && b.offset < a.offset + a.length;
}

}  // namespace lockRanges

}  // namespace tsRtm::platform
