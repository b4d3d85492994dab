#include "tsRtm/database/DatabaseLocks.hpp"

#include <algorithm>

#include "tsRtm/database/LockWait.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {

int32 DatabaseLocks::lockDatabase() {
    if (!count_) return 70;
    const int32 error = lockWithWait(messages_, count_.file(), {countFormat::kDatabaseLock, 1, true});
    if (error == 0) databaseLocked = true;
    return error;
}

void DatabaseLocks::unlockDatabase() noexcept {
    if (count_) static_cast<void>(count_.file().unlock(countFormat::byteAt(countFormat::kDatabaseLock)));
    databaseLocked = false;
}

int32 DatabaseLocks::lockRecord(int32 record, int32 wait) {
    // Waiting for oneself would have no end.
    if (owns(record)) return 0;
    if (!count_) return 70;
    const int32 error = lockWithWait(messages_, count_.file(), {countFormat::recordLock(record), wait, true});
    if (error == 0) own_.push_back(record);
    return error;
}

void DatabaseLocks::unlockRecord(int32 record) noexcept {
    if (count_) static_cast<void>(count_.file().unlock(countFormat::byteAt(countFormat::recordLock(record))));
    const auto at = std::find(own_.begin(), own_.end(), record);
    if (at == own_.end()) return;
    *at = own_.back();
    own_.pop_back();
}

bool DatabaseLocks::owns(int32 record) const noexcept {
    return std::find(own_.begin(), own_.end(), record) != own_.end();
}

bool DatabaseLocks::heldByOther(int32 record) const {
    const auto held = count_.file().isLocked(countFormat::byteAt(countFormat::recordLock(record)));
    return held.ok() && *held;
}

void DatabaseLocks::forget() noexcept {
    own_.clear();
    databaseLocked = false;
    explicitly = false;
}

void DatabaseLocks::takeAgain() {
    const std::vector<int32> before = std::move(own_);
    own_.clear();
    const bool database = databaseLocked;
    if (database && lockDatabase() != 0) {
        databaseLocked = false;
        rtmMain::DebugLog(u"Datenbanksperre nach der Reorganisation verloren");
    }
    for (const int32 record : before)
        if (lockRecord(record, -1) != 0)
            rtmMain::DebugLog(u"Sperre von Satz " + toText(record) + u" nach der Reorganisation verloren");
}

}  // namespace tsRtm
