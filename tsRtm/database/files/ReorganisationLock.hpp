#pragma once
// The lock of a work on the whole database: Lock.tsd held open for writing, Count.tsd against all other
// openings.
#include "tsRtm/database/files/DatabaseLocks.hpp"

namespace tsRtm {

// While it lasts nobody else can open the database, and it is not to be had while anybody has it open. Nests.
// In single use nobody else can be there, but whoever opens the database looks at Lock.tsd before Count.tsd,
// to finish or take away what a death left. The other locks of this opening stand through it: Count.tsd
// changes its share mode in place. Only where a ground has to close and open it again can a lock be lost on
// the way; that ends the work with `locked`. Knows its parts by reference.
class ReorganisationLock {
 public:
    ReorganisationLock(const DatabaseFolder& folder, CountFile& count, int32& countNumber,
                       DatabaseLocks& locks)
        : folder_(folder), count_(count), countNumber_(countNumber), locks_(locks) {}

    [[nodiscard]] DatabaseError take();
    // False where a lock of this opening was lost by it.
    bool give() noexcept;
    void forget() noexcept;

 private:
    platform::SystemError share(platform::Sharing mode);
    // For a ground without a change in place.
    bool reopen(platform::Sharing mode);

    const DatabaseFolder& folder_;
    CountFile& count_;
    int32& countNumber_;
    DatabaseLocks& locks_;
    int32 lockNumber_ = 0;
    int32 depth_ = 0;
};

// The lock for the length of a work.
class ReorganisationHold {
 public:
    explicit ReorganisationHold(ReorganisationLock& lock) : lock_(lock), error_(lock.take()) {}
    ~ReorganisationHold() {
        if (!failed(error_)) lock_.give();
    }
    ReorganisationHold(const ReorganisationHold&) = delete;
    ReorganisationHold& operator=(const ReorganisationHold&) = delete;

    DatabaseError error() const noexcept { return error_; }
    explicit operator bool() const noexcept { return !failed(error_); }

 private:
    ReorganisationLock& lock_;
    DatabaseError error_;
};

}  // namespace tsRtm
