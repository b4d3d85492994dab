#include "tsRtm/database/files/DatabaseLocks.hpp"

#include <algorithm>

#include "tsRtm/database/files/LockWait.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {
namespace {

constexpr auto kDatabaseByte = countFormat::byteAt(countFormat::kDatabaseLock);

bool heldByOther(platform::File& file, platform::ByteRange range) {
    const auto held = file.isLocked(range);
    return held.ok() && *held;
}

}  // namespace

DatabaseError DatabaseLocks::lockDatabase(Wait wait) {
    if (!folder_.shared) return DatabaseError::none;
    if (!folder_.filesWritable) return DatabaseError::readOnly;
    // A handler that runs inside our own wait cannot have what we are waiting for.
    if (!count_ || waiting_) return DatabaseError::locked;
    if (depth_ == 0 && !won(wait)) {
        if (wait == Wait::asks) guard_.tellLost();
        return DatabaseError::locked;
    }
    ++depth_;
    if (depth_ > 1 || guard_.entered()) return DatabaseError::none;
    depth_ = 0;
    static_cast<void>(count_.file().unlock(kDatabaseByte));
    if (wait == Wait::asks) guard_.tellRefusal();
    return DatabaseError::locked;
}

bool DatabaseLocks::won(Wait wait) {
    auto& file = count_.file();
    if (wait == Wait::never) return !platform::failed(file.tryLock(kDatabaseByte));
    struct Waiting {
        bool& flag;
        ShareGuard& guard;
        explicit Waiting(bool& f, ShareGuard& g) : flag(f), guard(g) { flag = true; }
        ~Waiting() {
            flag = false;
            guard.leaveGate();
        }
    } waiting(waiting_, guard_);
    const LockRequest request{countFormat::kDatabaseLock, wait == Wait::asks ? 1 : -1, true};
    LockHooks hooks{{}, aboutToWait, givenUp};
    if (guard_.needed()) hooks.gate = [this] { return guard_.gate(); };
    return lockWithWait(folder_.messages(), file, request, hooks) == 0;
}

void DatabaseLocks::unlockDatabase() noexcept {
    if (depth_ == 1 && count_) guard_.leaving();
    if (depth_ == 0 || --depth_ > 0) return;
    if (count_) static_cast<void>(count_.file().unlock(kDatabaseByte));
}

bool DatabaseLocks::databaseHeldByOther() const {
    return count_ && heldByOther(count_.file(), kDatabaseByte);
}

DatabaseError DatabaseLocks::lockExplicitly() {
    if (explicitly_) return DatabaseError::none;
    if (const auto error = lockDatabase(); failed(error)) return error;
    explicitly_ = true;
    return DatabaseError::none;
}

void DatabaseLocks::unlockExplicitly() noexcept {
    if (std::exchange(explicitly_, false)) unlockDatabase();
}

DatabaseError DatabaseLocks::lockRecord(int32 record, int32 wait) {
    // Waiting for oneself would have no end.
    if (owns(record)) return DatabaseError::none;
    if (!count_) return DatabaseError::locked;
    own_.reserve(own_.size() + 1);
    const LockRequest request{countFormat::recordLock(record), wait, true};
    // A handler in the wait may win it for this object; that one is not to be had twice.
    const auto pointless = [&] { return owns(record) || (givenUp && givenUp()); };
    if (lockWithWait(folder_.messages(), count_.file(), request, {{}, aboutToWait, pointless}) != 0)
        return DatabaseError::locked;
    own_.push_back(record);
    return DatabaseError::none;
}

DatabaseError DatabaseLocks::tryRecord(int32 record) {
    if (owns(record)) return DatabaseError::none;
    own_.reserve(own_.size() + 1);
    const auto range = countFormat::byteAt(countFormat::recordLock(record));
    if (!count_ || platform::failed(count_.file().tryLock(range))) return DatabaseError::locked;
    own_.push_back(record);
    return DatabaseError::none;
}

void DatabaseLocks::unlockRecord(int32 record) noexcept {
    const auto at = std::find(own_.begin(), own_.end(), record);
    if (at == own_.end()) return;
    if (count_) static_cast<void>(count_.file().unlock(countFormat::byteAt(countFormat::recordLock(record))));
    *at = own_.back();
    own_.pop_back();
}

bool DatabaseLocks::owns(int32 record) const noexcept {
    return std::find(own_.begin(), own_.end(), record) != own_.end();
}

bool DatabaseLocks::recordHeldByOther(int32 record) const {
    return heldByOther(count_.file(), countFormat::byteAt(countFormat::recordLock(record)));
}

bool DatabaseLocks::takeAgain() {
    bool all = depth_ == 0 || !platform::failed(count_.file().tryLock(kDatabaseByte));
    if (!all) {
        depth_ = 0;
        explicitly_ = false;
    }
    const std::vector<int32> before = std::move(own_);
    own_.clear();
    for (const int32 record : before) all = !failed(tryRecord(record)) && all;
    if (!all) rtmMain::DebugLog(u"Sperren von " + folder_.name + u" gingen an andere verloren");
    return all;
}

void DatabaseLocks::unlockRecords() noexcept {
    while (!own_.empty()) unlockRecord(own_.back());
}

void DatabaseLocks::forget() noexcept {
    own_.clear();
    depth_ = 0;
    explicitly_ = false;
}

}  // namespace tsRtm
