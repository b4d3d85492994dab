#include "tsRtm/platform/posix/PosixServed.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string>

#include "tsRtm/platform/posix/PosixErrors.hpp"
#include "tsRtm/platform/posix/PosixLocks.hpp"
#include "tsRtm/platform/posix/PosixRandom.hpp"

namespace tsRtm::platform::posix {
namespace {

// Reads past the page cache are made in whole blocks, into memory that lies on one.
constexpr std::size_t kBlock = 4096;

// Brings size and times into the kernel, which drops its pages of a file whose time of change it did not
// know.
void askForStatus(int descriptor) noexcept {
    struct statx status {};
    static_cast<void>(::statx(descriptor, "", AT_EMPTY_PATH | AT_STATX_FORCE_SYNC,
                              STATX_SIZE | STATX_MTIME | STATX_CTIME, &status));
}

// A change of attributes is answered with the file's present ones, while a question about them may be
// answered from a cache. The time of access is the one that nobody relies on; only the owner may change it
// alone, whoever may write may set both.
SystemError touch(int descriptor) noexcept {
    const struct timespec accessOnly[2] = {{0, UTIME_NOW}, {0, UTIME_OMIT}};
    if (::futimens(descriptor, accessOnly) == 0) return SystemError::none;
    if (errno != EPERM && errno != EACCES) return lastError();
    return ::futimens(descriptor, nullptr) == 0 ? SystemError::none : lastError();
}

}  // namespace

bool PosixServed::remote() const noexcept {
    if (!server_) server_ = servedBy(descriptor_);
    return *server_ != ServedBy::thisMachine;
}

int PosixServed::beside() {
    if (beside_) return beside_.get();
    // By the descriptor and not by the name, which may lead to another file by now.
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor_);
    for (const int past : {O_DIRECT, 0}) {
        beside_ = Handle(::open(path.c_str(), O_RDONLY | past | O_CLOEXEC | O_NOCTTY));
        besideReadsPast_ = past != 0;
        if (beside_) break;
    }
    return beside_.get();
}

// Room for a first byte that is there already changes nothing but the times. A program that serves files
// drops what it keeps of one that changes, and tells the new time of change; the kernel then drops its pages,
// also those that somebody is reading at this moment, which POSIX_FADV_DONTNEED passes over.
bool PosixServed::passByChange() {
    if (*server_ != ServedBy::program || !writable_) return false;
    int result = 0;
    do result = ::fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, 0, 1);
    while (result != 0 && errno == EINTR);
    if (result != 0) return false;
    askForStatus(descriptor_);
    return true;
}

SystemError PosixServed::passByTouch(RefreshAs standing) {
    if (const auto error = touch(descriptor_); failed(error)) {
        const bool noRight = error == SystemError::accessDenied || error == SystemError::writeProtected;
        return noRight ? SystemError::notSupported : error;
    }
    if (standing == RefreshAs::soleWriter && writable_) {
        const auto size = ::lseek(descriptor_, 0, SEEK_END);
        if (size < 0 || ::ftruncate(descriptor_, size) != 0) return lastError();
    }
    askForStatus(descriptor_);
    return SystemError::none;
}

SystemError PosixServed::refresh(RefreshAs standing) {
    if (!remote()) return SystemError::none;
    auto error = SystemError::none;
    if (!passByChange()) {
        error = passByTouch(standing);
        // Only what changes the file makes a program forget.
        const bool changed = writable_ && standing == RefreshAs::soleWriter;
        if (!failed(error) && *server_ == ServedBy::program && !changed) error = SystemError::notSupported;
    }
    const int dropped = ::posix_fadvise(descriptor_, 0, 0, POSIX_FADV_DONTNEED);
    return failed(error) ? error : fromErrno(dropped);
}

Result<std::size_t> PosixServed::read(uint64 offset, std::span<std::byte> into) {
    if (beside() < 0) return lastError();
    if (!besideReadsPast_) {
        const auto error = refresh(RefreshAs::reader);
        if (failed(error) && error != SystemError::notSupported) return error;
    }
    alignas(kBlock) std::array<std::byte, kBlock> block;
    std::size_t done = 0;
    while (done < into.size()) {
        const uint64 at = offset + done, start = at / kBlock * kBlock;
        const auto got = ::pread(beside(), block.data(), kBlock, static_cast<off_t>(start));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0 && errno == EINVAL && besideReadsPast_) {
            // The server's disk will not be read so.
            if (const int flags = ::fcntl(beside(), F_GETFL);
                flags < 0 || ::fcntl(beside(), F_SETFL, flags & ~O_DIRECT) != 0)
                return lastError();
            besideReadsPast_ = false;
            return read(offset, into);
        }
        if (got < 0) return lastError();
        const auto skip = static_cast<std::size_t>(at - start), there = static_cast<std::size_t>(got);
        if (there <= skip) break;
        const auto count = std::min(there - skip, into.size() - done);
        std::memcpy(into.data() + done, block.data() + skip, count);
        done += count;
        if (there < kBlock) break;
    }
    return done;
}

SystemError PosixServed::leaveTrace() {
    if (trace_ != 0 || !remote()) return SystemError::none;
    uint64 number = 0;
    if (const auto error = PosixRandom().fill(std::as_writable_bytes(std::span(&number, 1))); failed(error))
        return error;
    const uint64 trace = lockRanges::kTraces + number % lockRanges::kTraceCount;
    const auto error = setLock(descriptor_, {trace, 1}, LockKind::shared);
    if (!failed(error)) trace_ = trace;
    return error;
}

Result<bool> PosixServed::stands() {
    if (trace_ == 0) return true;
    if (lost_) return false;
    const int asker = beside();
    if (asker < 0) return lastError();
    const auto there = lockedByOthers(asker, {trace_, 1});
    if (there && !*there) lost_ = true;
    return there;
}

}  // namespace tsRtm::platform::posix
