#include "tsRtm/platform/posix/PosixOpening.hpp"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "tsRtm/platform/posix/PosixErrors.hpp"
#include "tsRtm/platform/posix/PosixLocks.hpp"

namespace tsRtm::platform::posix {
namespace {

// Not blocking, so that a pipe without a partner cannot hang us; the flag means nothing to a regular file.
constexpr int kFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
constexpr mode_t kNewFile = 0666;
// As often as this another file may get into the place while one is opened. A file system whose numbers of
// files are not to be relied on ends there, too.
constexpr int kTries = 100;

Handle openDescriptor(const std::string& path, int flags) noexcept {
    int descriptor = -1;
    do descriptor = ::open(path.c_str(), flags | kFlags, kNewFile);
    while (descriptor < 0 && errno == EINTR);
    return Handle(descriptor);
}

bool mayNotWrite(int error) noexcept { return error == EACCES || error == EPERM || error == EROFS; }

Result<Handle> openForRequest(const std::string& path, OpenRequest request) {
    const bool change =
        request.access == Access::readWrite || request.disposition == Disposition::createEmpty;
    const int create = request.disposition == Disposition::openExisting ? 0 : O_CREAT;
    if (change || request.sharing == Sharing::none) {
        // An exclusive lock needs the right to write, so an exclusive reader asks for it, too, and does
        // without if need be.
        auto handle = openDescriptor(path, O_RDWR | create);
        if (handle) return handle;
        if (change || !mayNotWrite(errno)) return lastError();
    }
    auto handle = openDescriptor(path, O_RDONLY | create);
    if (!handle) return lastError();
    return handle;
}

// A file system without locks opens unprotected.
SystemError takeShare(int descriptor, Sharing sharing) noexcept {
    const auto error = setShare(descriptor, sharing);
    return error == SystemError::notSupported ? SystemError::none : error;
}

}  // namespace

bool stillInPlace(int descriptor, const std::string& path) noexcept {
    struct stat opened {};
    struct stat present {};
    return ::fstat(descriptor, &opened) == 0 && ::stat(path.c_str(), &present) == 0 &&
           opened.st_dev == present.st_dev && opened.st_ino == present.st_ino;
}

bool readOnlyMode(unsigned mode) noexcept { return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0; }

Result<Handle> openShared(const std::string& path, OpenRequest request) {
    const bool change =
        request.access == Access::readWrite || request.disposition == Disposition::createEmpty;
    for (int tries = 0;; ++tries) {
        // Asked before the opening: to open a device or a pipe may do something.
        struct stat before {};
        const bool exists = ::stat(path.c_str(), &before) == 0;
        if (exists && (!S_ISREG(before.st_mode) || (change && readOnlyMode(before.st_mode))))
            return SystemError::accessDenied;

        auto opened = openForRequest(path, request);
        if (!opened) return opened.error();
        const int descriptor = opened->get();
        struct stat status {};
        if (::fstat(descriptor, &status) != 0) return lastError();
        if (!S_ISREG(status.st_mode)) return SystemError::accessDenied;
        if (const auto error = takeShare(descriptor, request.sharing); failed(error)) return error;
        if (tries < kTries && !stillInPlace(descriptor, path)) continue;
        // Emptied only now: an opening that is refused leaves the content alone.
        const bool empty = request.disposition == Disposition::createEmpty && status.st_size != 0;
        if (empty && ::ftruncate(descriptor, 0) != 0) return lastError();
        return opened;
    }
}

Result<Handle> holdForRemoval(const std::string& path) {
    for (int tries = 0;; ++tries) {
        struct stat status {};
        if (::lstat(path.c_str(), &status) != 0) return lastError();
        if (!S_ISREG(status.st_mode)) return Handle();
        auto handle = openDescriptor(path, O_RDWR);
        if (!handle) handle = openDescriptor(path, O_RDONLY);
        if (!handle) return Handle();
        if (const auto error = takeShare(handle.get(), Sharing::none); failed(error)) return error;
        if (tries < kTries && !stillInPlace(handle.get(), path)) continue;
        return handle;
    }
}

}  // namespace tsRtm::platform::posix
