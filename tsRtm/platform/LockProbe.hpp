#pragma once
// Whether locks work where a file lies.
#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::platform {

namespace lockProbe {

// Whether a second opening of the file is kept from the range that the first one holds, and sees it as
// locked.
inline SystemError provenBy(FileSystem& files, File& file) {
    auto second = files.open(file.name(), {Access::readWrite, Sharing::all, Disposition::openExisting});
    if (!second) return second.error();
    File& other = **second;
    const auto refused = other.tryLock(lockRanges::kProbe);
    if (!failed(refused)) static_cast<void>(other.unlock(lockRanges::kProbe));
    if (refused != SystemError::lockViolation) return SystemError::notSupported;
    const auto seen = other.isLocked(lockRanges::kProbe);
    return seen && *seen ? SystemError::none : SystemError::notSupported;
}

}  // namespace lockProbe

// Proves with a second opening of the same file that a lock excludes and shows. For a writable, shared
// opening, before the file is trusted to several users. Leaves no lock behind.
//
// none: locks work. notSupported: they do not (a network folder mounted without locks, a file system that
// grants all). Any other error is that of the second opening, or accessDenied for an opening that may not
// write.
inline SystemError probeLocks(FileSystem& files, File& file) {
    const auto taken = file.tryLock(lockRanges::kProbe);
    // Somebody else is probing at this moment, and we were refused: that is the proof.
    if (taken == SystemError::lockViolation) return SystemError::none;
    if (taken == SystemError::accessDenied) return taken;
    if (failed(taken)) return SystemError::notSupported;
    const auto verdict = lockProbe::provenBy(files, file);
    const bool givenBack = !failed(file.unlock(lockRanges::kProbe));
    return givenBack || failed(verdict) ? verdict : SystemError::notSupported;
}

}  // namespace tsRtm::platform
