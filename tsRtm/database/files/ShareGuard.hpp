#pragma once
// What keeps the users of a share from working on what a client's cache remembers. On local files it does
// nothing and costs nothing.
#include <functional>

#include "tsRtm/database/files/ChangeCount.hpp"
#include "tsRtm/database/files/CountFile.hpp"
#include "tsRtm/database/files/DatabaseFolder.hpp"

namespace tsRtm {

// Locks are the one thing that all clients of a share see alike. Every write is done under the database lock
// and raises the number in Stand.tsd; who gives the lock back has brought what he wrote to the server, and
// shows that number by a shared lock. So whoever wins the lock knows whether what he reads is the newest, and
// a reader whether anything was written at all. Knows its parts by reference.
class ShareGuard {
 public:
    ShareGuard(const DatabaseFolder& folder, CountFile& count, ChangeCount& changes)
        : folder_(folder), count_(count), changes_(changes) {}

    // All open files but Count.tsd and Stand.tsd. Set by who owns them.
    std::function<void(const std::function<void(platform::File&)>&)> eachFile;

    bool needed() const { return count_ && folder_.shared && count_.file().remote(); }
    // The gate before the database lock: who wants the lock again has to pass it behind those who wait. False
    // while somebody else stands in it.
    [[nodiscard]] bool gate();
    void leaveGate() noexcept;
    // The database lock was won: from here on nothing comes from a cache. False where what is read stays
    // older than what others have written, and the user was told.
    [[nodiscard]] bool entered();
    // A file that is opened while the lock is held.
    void opened(platform::File& file) const {
        if (needed()) static_cast<void>(file.refresh(platform::RefreshAs::soleWriter));
    }
    // Before the lock is given back: what was written is on the server, and others can tell.
    void leaving() noexcept;
    // What was written so far is on the server before what comes now: the mark before the indexes, indexes
    // and records before the mark goes.
    void flushMarks();
    void flushFiles();

    // For a reader who may not lock: the greatest number that others show; at another one than before the
    // caches are passed.
    uint64 newest();

 private:
    void refreshMarks(platform::RefreshAs standing);
    void refreshFiles(platform::RefreshAs standing);
    // Numbers shown count from 1.
    static uint64 shownAs(uint64 changes) noexcept { return changes + 1; }

    const DatabaseFolder& folder_;
    CountFile& count_;
    ChangeCount& changes_;
    uint64 entry_ = 0;  // the number when the lock was won
    uint64 known_ = 0;  // at this number no cache was behind, plus one; 0 never
    uint64 seen_ = 0;   // by the reader
};

}  // namespace tsRtm
