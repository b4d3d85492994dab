#pragma once
// Locks of one opening of a file: open-file-description locks of the kernel.
//
// They belong to the opening and not to the process (two openings in one process exclude each other, and
// closing one leaves the locks of the other alone), may lie beyond the end of the file, and die with the
// opening. A child of fork() that keeps the descriptor keeps the locks alive.
#include "tsRtm/platform/File.hpp"

namespace tsRtm::platform::posix {

enum class LockKind { shared, exclusive };

// Each gives SystemError::lockViolation where another opening is in the way, and notSupported where the file
// system has no such locks.
[[nodiscard]] SystemError setLock(int descriptor, ByteRange range, LockKind kind) noexcept;
[[nodiscard]] SystemError clearLock(int descriptor, ByteRange range) noexcept;
// Whether another opening holds a lock on a byte of the range, of whatever kind; needs no right to write.
Result<bool> lockedByOthers(int descriptor, ByteRange range) noexcept;
// Behind the last byte of the range that another opening has locked; 0 where it has locked none.
Result<uint64> endOfOthersLocks(int descriptor, ByteRange range) noexcept;

// Takes, or changes in one step, the share mode of an opening; a refusal, sharingViolation, changes nothing.
[[nodiscard]] SystemError setShare(int descriptor, Sharing sharing) noexcept;

}  // namespace tsRtm::platform::posix
