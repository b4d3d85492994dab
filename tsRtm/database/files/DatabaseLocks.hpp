#pragma once
// The locks that one open database holds: the database lock and record locks, all byte ranges of Count.tsd.
#include <functional>
#include <vector>

#include "tsRtm/database/files/CountFile.hpp"
#include "tsRtm/database/files/DatabaseError.hpp"
#include "tsRtm/database/files/DatabaseFolder.hpp"
#include "tsRtm/database/files/ShareGuard.hpp"

namespace tsRtm {

// Order of all locks: record, then database, then chain store, then serial number. Locks die with the process
// or the opening of Count.tsd. Knows folder and count file by reference. Not thread-safe.
class DatabaseLocks {
 public:
    DatabaseLocks(const DatabaseFolder& folder, CountFile& count, ShareGuard& guard)
        : folder_(folder), count_(count), guard_(guard) {}

    // The database lock nests: each success is given back once, and the last one frees it. In single use
    // nobody else can be there: always a success, without a lock. Waits NetWait seconds, then asks, or gives
    // up in silence; `never` tries once. readOnly, locked.
    enum class Wait { asks, silently, never };
    [[nodiscard]] DatabaseError lockDatabase(Wait wait = Wait::asks);
    // Called where a lock is not to be had at once: the program's events run from here on. And asked while it
    // waits, whether it is wanted at all.
    std::function<void()> aboutToWait;
    std::function<bool()> givenUp;
    void unlockDatabase() noexcept;
    // Held, or single use and claimed by LockDB.
    bool databaseLocked() const noexcept { return folder_.shared ? depth_ > 0 : explicitly_; }
    // Nobody else can write now.
    bool alone() const noexcept { return !folder_.shared || depth_ > 0; }
    // Whether somebody else holds the database lock.
    bool databaseHeldByOther() const;
    // LockDB: one level of the database lock that stays until it is given back here.
    [[nodiscard]] DatabaseError lockExplicitly();
    void unlockExplicitly() noexcept;
    bool heldExplicitly() const noexcept { return explicitly_; }

    // Waits as lockWithWait tells; a record that this object holds is a success.
    [[nodiscard]] DatabaseError lockRecord(int32 record, int32 wait);
    // One try: for who holds the database lock and may not wait for a record.
    [[nodiscard]] DatabaseError tryRecord(int32 record);
    void unlockRecord(int32 record) noexcept;
    // Whether this object holds the record.
    bool owns(int32 record) const noexcept;
    // Whether somebody else holds it.
    bool recordHeldByOther(int32 record) const;
    // Takes all locks anew after Count.tsd was closed and opened, each tried once; false where one was lost.
    bool takeAgain();
    // Gives up all record locks; what bulk work does that gives records new numbers.
    void unlockRecords() noexcept;
    // Count.tsd was closed for good, and all locks ended with it.
    void forget() noexcept;

 private:
    bool won(Wait wait);

    const DatabaseFolder& folder_;
    CountFile& count_;
    ShareGuard& guard_;
    std::vector<int32> own_;
    int32 depth_ = 0;
    bool explicitly_ = false;
    bool waiting_ = false;
};

// The database lock for the length of a work.
class DatabaseHold {
 public:
    explicit DatabaseHold(DatabaseLocks& locks, DatabaseLocks::Wait wait = DatabaseLocks::Wait::asks)
        : locks_(locks), error_(locks.lockDatabase(wait)) {}
    ~DatabaseHold() {
        if (!failed(error_)) locks_.unlockDatabase();
    }
    DatabaseHold(const DatabaseHold&) = delete;
    DatabaseHold& operator=(const DatabaseHold&) = delete;

    DatabaseError error() const noexcept { return error_; }
    explicit operator bool() const noexcept { return !failed(error_); }

 private:
    DatabaseLocks& locks_;
    DatabaseError error_;
};

}  // namespace tsRtm
