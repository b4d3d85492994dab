#include "tsRtm/database/files/ReorganisationLock.hpp"

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

using platform::Sharing;
using platform::SystemError;

DatabaseError ReorganisationLock::take() {
    if (depth_ > 0) {
        ++depth_;
        return DatabaseError::none;
    }
    // New files would take the places of another database that stands there now.
    if (!count_ || !count_.inPlace()) return DatabaseError::locked;
    folder_.files.OpenWrite(folder_.path(u"Lock.tsd"), lockNumber_);
    if (lockNumber_ == 0) return DatabaseError::locked;
    if (folder_.shared && platform::failed(share(Sharing::none))) {
        // Somebody else has the database open.
        folder_.close(lockNumber_);
        return DatabaseError::locked;
    }
    depth_ = 1;
    return DatabaseError::none;
}

bool ReorganisationLock::give() noexcept {
    if (depth_ == 0 || --depth_ > 0) return true;
    bool kept = false;
    try {
        kept = !folder_.shared || !platform::failed(share(Sharing::all));
    } catch (const Failure&) {  // the database is closed to others until this opening ends
    }
    folder_.close(lockNumber_);
    return kept;
}

void ReorganisationLock::forget() noexcept {
    depth_ = 0;
    folder_.close(lockNumber_);
}

SystemError ReorganisationLock::share(Sharing mode) {
    const auto error = count_.file().share(mode);
    if (error != SystemError::notSupported) return error;
    if (reopen(mode)) return locks_.takeAgain() ? SystemError::none : SystemError::lockViolation;
    if (mode == Sharing::none && reopen(Sharing::all)) static_cast<void>(locks_.takeAgain());
    return SystemError::sharingViolation;
}

bool ReorganisationLock::reopen(Sharing mode) {
    count_ = CountFile();
    folder_.close(countNumber_);
    countNumber_ = folder_.open(u"Count.tsd", mode == Sharing::all);
    if (countNumber_ == 0) return false;
    count_ = CountFile(folder_.files.file(countNumber_));
    return true;
}

}  // namespace tsRtm
