#pragma once
// Who writes says so in Count.tsd, and takes it back when he leaves: an opening that finds the sign and
// nobody at work knows that the last one did not leave cleanly (all programs killed, the machine gone down).
#include <functional>

#include "tsRtm/database/files/DatabaseLocks.hpp"

namespace tsRtm {

// The sign stands in the file; beside it each writer shows, by a lock that dies with him, that he lives.
// Knows its parts by reference.
class WorkSign {
 public:
    WorkSign(const DatabaseFolder& folder, CountFile& count, DatabaseLocks& locks)
        : folder_(folder), count_(count), locks_(locks) {}

    // At an opening, under the database lock: the sign is there, and nobody lives who set it.
    bool leftUncleanly();
    // What was left could not be looked at: the sign stays for the next opening.
    void unsettled() noexcept { unsettled_ = true; }
    // What was left has been looked at. Who mended it is at work, and takes the sign back when he leaves.
    void settled() {
        if (!entered_) count_.signOff();
    }
    // Before the first change, and before the database lock is held for long, since who leaves meanwhile
    // cannot take the sign back: sets the sign, on the device before anything that is changed. Again after an
    // older program wrote over it. What the lock or the file refuses.
    [[nodiscard]] DatabaseError enter();
    // Whether nobody of those who write is at work beside this opening.
    bool alone() const { return !othersLive(); }
    // Closes the work: `flush` brings what was written to the device; the last one who leaves takes the sign
    // back, behind `last`.
    void leave(const std::function<void()>& flush, const std::function<void()>& last) noexcept;

 private:
    bool othersLive() const;

    const DatabaseFolder& folder_;
    CountFile& count_;
    DatabaseLocks& locks_;
    bool entered_ = false;
    bool unsettled_ = false;
};

}  // namespace tsRtm
