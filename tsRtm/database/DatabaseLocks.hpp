#pragma once
// The locks that one open database holds: the database lock and record locks, all byte ranges of Count.tsd.
#include <vector>

#include "tsRtm/database/CountFile.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"

namespace tsRtm {

// Order of all locks: record, then database, then serial number. Locks die with the process or the file.
// Knows the count file by reference. Results are error numbers: 0, or 70 not locked.
class DatabaseLocks {
 public:
    DatabaseLocks(MessagesTopic& messages, CountFile& count) : messages_(messages), count_(count) {}

    int32 lockDatabase();
    void unlockDatabase() noexcept;
    int32 lockRecord(int32 record, int32 wait);
    void unlockRecord(int32 record) noexcept;
    // Whether this object holds the record.
    bool owns(int32 record) const noexcept;
    // Whether somebody else holds it.
    bool heldByOther(int32 record) const;
    // Takes all locks anew after Count.tsd was closed and opened; a record that somebody else got meanwhile
    // is lost.
    void takeAgain();
    // Count.tsd was closed for good, and all locks ended with it.
    void forget() noexcept;

    bool databaseLocked = false;  // the database lock is held, or was claimed in single use
    bool explicitly = false;      // held through LockDB: kept until given back there

 private:
    MessagesTopic& messages_;
    CountFile& count_;
    std::vector<int32> own_;
};

}  // namespace tsRtm
