#pragma once
// Locks of one opening of a file: open-file-description locks of the kernel.
//
// They belong to the opening and not to the process (two openings in one process exclude each other, and
// closing one leaves the locks of the other alone), may lie beyond the end of the file, and die with the
// opening. A child of fork() that keeps the descriptor keeps the locks alive.
#include "tsRtm/platform/File.hpp"

namespace tsRtm::platform::posix {

// Bytes from here on are the ground's own.
inline constexpr uint64 kReservedFrom = uint64{1} << 62;
// One byte for the share mode: every opening holds it shared, an exclusive one exclusively.
inline constexpr ByteRange kShareByte{kReservedFrom, 1};

enum class LockKind { shared, exclusive };

// Each gives SystemError::lockViolation where another opening is in the way, and notSupported where the file
// system has no such locks.
[[nodiscard]] SystemError setLock(int descriptor, ByteRange range, LockKind kind) noexcept;
[[nodiscard]] SystemError clearLock(int descriptor, ByteRange range) noexcept;
// Whether another opening holds a lock on a byte of the range, of whatever kind; needs no right to write.
Result<bool> lockedByOthers(int descriptor, ByteRange range) noexcept;

}  // namespace tsRtm::platform::posix
