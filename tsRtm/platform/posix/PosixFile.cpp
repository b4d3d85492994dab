#include "tsRtm/platform/posix/PosixFile.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "tsRtm/platform/posix/PosixErrors.hpp"
#include "tsRtm/platform/posix/PosixLocks.hpp"
#include "tsRtm/platform/posix/PosixOpening.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"

namespace tsRtm::platform::posix {
namespace {

using lockRanges::lockable;
using lockRanges::overlap;

constexpr uint64 kMaxOffset = (uint64{1} << 63) - 1;

bool addressable(uint64 offset, std::size_t bytes) noexcept {
    return offset <= kMaxOffset && bytes <= kMaxOffset - offset;
}

// On an open file "no permission" can only be a lock that the server of a network file enforces.
SystemError transferError() noexcept { return errno == EACCES ? SystemError::lockViolation : lastError(); }

}  // namespace

PosixFile::PosixFile(Handle handle, Text name, bool writable) noexcept
    : handle_(std::move(handle)),
      name_(std::move(name)),
      writable_(writable),
      served_(handle_.get(), writable) {}

Result<std::size_t> PosixFile::readAt(uint64 offset, std::span<std::byte> into) {
    if (!addressable(offset, into.size())) return SystemError::invalidParameter;
    std::size_t done = 0;
    while (done < into.size()) {
        const auto got =
            ::pread(handle_.get(), into.data() + done, into.size() - done, static_cast<off_t>(offset + done));
        if (got == 0) break;
        if (got > 0) {
            done += static_cast<std::size_t>(got);
        } else if (errno != EINTR) {
            return transferError();
        }
    }
    return done;
}

SystemError PosixFile::writeAt(uint64 offset, std::span<const std::byte> bytes) {
    if (!writable_) return SystemError::accessDenied;
    if (!addressable(offset, bytes.size())) return SystemError::fileTooLarge;
    dirty_ = true;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const auto put = ::pwrite(handle_.get(), bytes.data() + done, bytes.size() - done,
                                  static_cast<off_t>(offset + done));
        if (put == 0) return SystemError::writeFault;
        if (put > 0) {
            done += static_cast<std::size_t>(put);
        } else if (errno != EINTR) {
            return transferError();
        }
    }
    return SystemError::none;
}

Result<uint64> PosixFile::size() {
    // Asking for the times as fstat does would make the next write enter new ones. Nobody uses the offset.
    const auto end = ::lseek(handle_.get(), 0, SEEK_END);
    if (end < 0) return lastError();
    return static_cast<uint64>(end);
}

SystemError PosixFile::resize(uint64 size) {
    if (!writable_) return SystemError::accessDenied;
    if (size > kMaxOffset) return SystemError::fileTooLarge;
    dirty_ = true;
    int result = 0;
    do result = ::ftruncate(handle_.get(), static_cast<off_t>(size));
    while (result != 0 && errno == EINTR);
    return result == 0 ? SystemError::none : transferError();
}

SystemError PosixFile::flush() {
    // What goes through a window is not seen here; a remote file has none.
    if (!dirty_ && remote()) return SystemError::none;
    // Times are not worth a further write of the device.
    if (::fdatasync(handle_.get()) != 0) return lastError();
    dirty_ = false;
    return SystemError::none;
}

FileWindow* PosixFile::window() {
    if (!std::exchange(windowTried_, true)) window_ = PosixFileWindow::open(handle_.get(), writable_);
    return window_.get();
}

Result<std::size_t> PosixFile::readServed(uint64 offset, std::span<std::byte> into) {
    if (!remote()) return readAt(offset, into);
    if (!addressable(offset, into.size())) return SystemError::invalidParameter;
    return served_.read(offset, into);
}

SystemError PosixFile::share(Sharing mode) { return setShare(handle_.get(), mode); }

SystemError PosixFile::show(uint64 number) {
    if (number > lockRanges::kGreatestSign) return SystemError::invalidParameter;
    if (number == shown_) return SystemError::none;
    if (number != 0) {
        if (const auto error = served_.leaveTrace(); failed(error)) return error;
        const auto error = setLock(handle_.get(), {lockRanges::kSigns + number, 1}, LockKind::shared);
        if (failed(error)) return error;
    }
    const uint64 former = std::exchange(shown_, number);
    return former == 0 ? SystemError::none : clearLock(handle_.get(), {lockRanges::kSigns + former, 1});
}

Result<uint64> PosixFile::greatestShown(uint64 floor) {
    if (floor >= lockRanges::kGreatestSign) return uint64{0};
    const auto end =
        endOfOthersLocks(handle_.get(), {lockRanges::kSigns + floor + 1, lockRanges::kGreatestSign - floor});
    if (!end) return end.error();
    return *end == 0 ? uint64{0} : *end - 1 - lockRanges::kSigns;
}

Result<bool> PosixFile::inPlace() { return stillInPlace(handle_.get(), plainPath(name_)); }

SystemError PosixFile::tryLock(ByteRange range) {
    if (!lockable(range)) return SystemError::invalidParameter;
    if (!writable_) return SystemError::accessDenied;
    if (holds(range)) return SystemError::lockViolation;
    if (const auto error = served_.leaveTrace(); failed(error)) return error;
    held_.reserve(held_.size() + 1);  // so that nothing can fail once the lock is taken
    const auto error = setLock(handle_.get(), range, LockKind::exclusive);
    if (!failed(error)) held_.push_back(range);
    return error;
}

SystemError PosixFile::unlock(ByteRange range) {
    if (!lockable(range)) return SystemError::invalidParameter;
    if (!holds(range)) return SystemError::none;
    const auto error = clearLock(handle_.get(), range);
    if (!failed(error)) forget(range);
    return error;
}

Result<bool> PosixFile::isLocked(ByteRange range) {
    if (!lockable(range)) return SystemError::invalidParameter;
    return lockedByOthers(handle_.get(), range);
}

bool PosixFile::holds(ByteRange range) const noexcept {
    return std::any_of(held_.begin(), held_.end(), [range](ByteRange held) { return overlap(held, range); });
}

// What was held before and behind the range stays held.
void PosixFile::forget(ByteRange range) {
    const auto whole = std::find_if(held_.begin(), held_.end(), [range](ByteRange held) {
        return held.offset == range.offset && held.length == range.length;
    });
    if (whole != held_.end()) {
        held_.erase(whole);
        return;
    }
    std::vector<ByteRange> rest;
    for (const auto held : held_) {
        const uint64 heldEnd = held.offset + held.length;
        const uint64 end = range.offset + range.length;
        if (!overlap(held, range)) {
            rest.push_back(held);
            continue;
        }
        if (held.offset < range.offset) rest.push_back({held.offset, range.offset - held.offset});
        if (end < heldEnd) rest.push_back({end, heldEnd - end});
    }
    held_ = std::move(rest);
}

}  // namespace tsRtm::platform::posix
