#include "tsRtm/platform/posix/PosixLocks.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "tsRtm/platform/posix/PosixErrors.hpp"

#ifndef F_OFD_SETLK
#error \
    "this ground needs open-file-description locks (POSIX.1-2024): process-owned locks die when any descriptor closes"
#endif
static_assert(sizeof(off_t) == 8, "locks and sizes need 64-bit offsets: build with _FILE_OFFSET_BITS=64");

namespace tsRtm::platform::posix {
namespace {

struct flock request(ByteRange range, short type) noexcept {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = static_cast<off_t>(range.offset);
    lock.l_len = static_cast<off_t>(range.length);
    return lock;  // l_pid must be 0 in these calls
}

SystemError apply(int descriptor, int command, struct flock& lock) noexcept {
    int result = 0;
    do result = ::fcntl(descriptor, command, &lock);
    while (result == -1 && errno == EINTR);
    if (result == 0) return SystemError::none;
    // Some systems say "no permission" for a lock in the way; a kernel without these locks says "bad
    // argument".
    if (errno == EACCES) return SystemError::lockViolation;
    if (errno == EINVAL) return SystemError::notSupported;
    return lastError();
}

// For a descriptor that may not write: keeps later exclusive openings out and is refused when others are
// there, but cannot keep later shared openings out.
SystemError shareReadOnlyExclusively(int descriptor) noexcept {
    if (const auto error = setLock(descriptor, lockRanges::kShareMode, LockKind::shared); failed(error))
        return error;
    const auto others = lockedByOthers(descriptor, lockRanges::kShareMode);
    if (!others) return others.error();
    return *others ? SystemError::lockViolation : SystemError::none;
}

}  // namespace

SystemError setLock(int descriptor, ByteRange range, LockKind kind) noexcept {
    auto lock = request(range, kind == LockKind::shared ? F_RDLCK : F_WRLCK);
    return apply(descriptor, F_OFD_SETLK, lock);
}

SystemError clearLock(int descriptor, ByteRange range) noexcept {
    auto lock = request(range, F_UNLCK);
    return apply(descriptor, F_OFD_SETLK, lock);
}

Result<bool> lockedByOthers(int descriptor, ByteRange range) noexcept {
    auto lock = request(range, F_WRLCK);
    if (const auto error = apply(descriptor, F_OFD_GETLK, lock); failed(error)) return error;
    return lock.l_type != F_UNLCK;
}

Result<uint64> endOfOthersLocks(int descriptor, ByteRange range) noexcept {
    uint64 end = 0;
    const uint64 limit = range.offset + range.length;
    while (range.offset < limit) {
        auto lock = request({range.offset, limit - range.offset}, F_WRLCK);
        if (const auto error = apply(descriptor, F_OFD_GETLK, lock); failed(error)) return error;
        if (lock.l_type == F_UNLCK) break;
        // Any of the locks in the way may be the one told: there may be others behind it, those before it do
        // not matter. Length 0 reaches to the end of all offsets.
        const auto start = static_cast<uint64>(lock.l_start), length = static_cast<uint64>(lock.l_len);
        end = length == 0 ? limit : std::clamp(start + length, range.offset + 1, limit);
        range.offset = end;
    }
    return end;
}

SystemError setShare(int descriptor, Sharing sharing) noexcept {
    const auto kind = sharing == Sharing::all ? LockKind::shared : LockKind::exclusive;
    auto error = setLock(descriptor, lockRanges::kShareMode, kind);
    if (error == SystemError::invalidHandle) error = shareReadOnlyExclusively(descriptor);
    return error == SystemError::lockViolation ? SystemError::sharingViolation : error;
}

}  // namespace tsRtm::platform::posix
