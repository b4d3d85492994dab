#pragma once
// Whether an update of the indexes is under way: what a reader, who takes no lock, looks at before and after
// its walk.
#include "tsRtm/database/CountFile.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

// Watches the mark in Count.tsd where that costs no system call. Not thread-safe.
class UpdateWatch {
 public:
    // `shared`: others may be at work at all; `ownLock`: this object holds the database lock, so that they
    // are not.
    UpdateWatch(CountFile& count, const bool& shared, const bool& ownLock)
        : count_(count), shared_(shared), ownLock_(ownLock) {}

    // No update is under way, as far as can be told.
    bool quiet();
    // Whether looking again can change anything.
    bool worthRepeating() const noexcept { return shared_ && !ownLock_ && count_ && count_.watchable(); }
    // Waits before the next attempt; false when patience is at its end.
    bool pause(int32 attempt);

 private:
    CountFile& count_;
    const bool& shared_;
    const bool& ownLock_;
    bool leftBehind_ = false;  // the mark of an update that died
};

// Repeats the walk of a reader until no update of somebody else can have touched it: none was under way
// before and after it, and `same` finds what the walk saw as it was. At the end of its patience it takes the
// walk as it is.
template <class Walk, class Same>
auto steady(UpdateWatch& watch, Walk walk, Same same) {
    for (int32 attempt = 0;; ++attempt) {
        const bool final = !watch.worthRepeating() || (attempt > 0 && !watch.pause(attempt));
        const bool quiet = watch.quiet();
        try {
            const auto result = walk();
            if (final || (quiet && same() && watch.quiet())) return result;
        } catch (const Failure&) {
            if (final) throw;
        }
    }
}

}  // namespace tsRtm
