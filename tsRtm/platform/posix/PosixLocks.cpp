#include "tsRtm/platform/posix/PosixLocks.hpp"

#include <fcntl.h>
#include <unistd.h>

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

}  // namespace tsRtm::platform::posix
