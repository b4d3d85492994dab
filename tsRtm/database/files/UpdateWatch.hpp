#pragma once
// Reading beside writers: whether an update of somebody else crossed what a reader, who takes no lock, has
// walked through.
#include <chrono>
#include <functional>
#include <optional>

#include "tsRtm/database/files/ChangeCount.hpp"
#include "tsRtm/database/files/DatabaseLocks.hpp"
#include "tsRtm/database/files/UpdateMarks.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

// Looks at the number of changes before and after a walk: two system calls a walk where the files have no
// window, none where they have. On a share it asks the server once, after the walk. Without Stand.tsd (nobody
// who keeps it ever wrote here) it looks at the mark in Count.tsd. Knows its parts by reference. Not
// thread-safe.
class UpdateWatch {
 public:
    UpdateWatch(CountFile& count, ChangeCount& changes, DatabaseLocks& locks, const DatabaseFolder& folder,
                ShareGuard& guard)
        : count_(count), changes_(changes), locks_(locks), folder_(folder), guard_(guard) {}

    // Heals what an update left that died, under the database lock. Set by who owns the indexes; false where
    // it could not.
    std::function<bool()> heal;
    // Opens Stand.tsd, which a reader that came first did not find. Called once somebody of ours is at work.
    std::function<void()> findChanges;
    // For a reader who may not heal: the update that left its marks is dead, and nobody is at work.
    bool meetsDeath() { return folder_.readOnly && diesOver(look()) && !locks_.databaseHeldByOther(); }

    // Runs `work(number)` until no update of somebody else can have touched it; `number` tells how often the
    // indexes have changed, so that what was learnt at the same number still holds. What the work raises
    // beside an update is its own. Waits while somebody is at work; in the end it reads under the database
    // lock. Raises 70 (kFileFailureSource) where that cannot be had, or where this program itself is in the
    // middle of an update by another object.
    template <class Work>
    auto steady(Work work) {
        if (!count_) return work(number());
        if (locks_.alone()) return settled(work);
        for (Patience patience;;) {
            const Look before = patience.attempts == 0 ? firstLook() : look();
            if (before.quiet) {
                try {
                    auto result = work(before.number);
                    if (same(before)) return result;
                } catch (const Failure&) {
                    if (same(before)) throw;
                }
            }
            if (!waits(patience)) break;
        }
        return underLock(work);
    }

    // Runs `work` once where nobody is at work; whether no update of others can have touched it.
    template <class Work>
    bool undisturbed(Work work) {
        const Look before = count_ ? firstLook() : Look{};
        if (!before.quiet) return false;
        work();
        return !count_ || same(before);
    }

    // The same with an answer for a reader who may not heal what a death left: `orphaned()` looks at the
    // records alone, until nobody has come to heal meanwhile.
    template <class Work, class Orphaned>
    auto steady(Work work, Orphaned orphaned) {
        for (;;) {
            metDeath_ = false;
            try {
                return steady(work);
            } catch (const Failure&) {
                if (!metDeath_) throw;
            }
            if (!meetsDeath()) continue;
            try {
                auto result = orphaned();
                if (meetsDeath()) return result;
            } catch (const Failure&) {
                if (meetsDeath()) throw;
            }
        }
    }

 private:
    template <class Work>
    auto underLock(Work work) {
        const DatabaseHold hold(locks_, DatabaseLocks::Wait::silently);
        if (!hold) raiseBusy();
        return settled(work);
    }
    // Nobody else can write; but an update that died may have left what could not be healed as yet.
    template <class Work>
    auto settled(Work work) {
        if (UpdateMarks::areSet(count_, changes_) && !UpdateMarks::underWayHere(count_)) healOrGiveUp();
        return work(number());
    }

    struct Look {
        uint64 number = 0;
        bool quiet = true;
    };
    struct Patience {
        int32 attempts = 0;
        std::chrono::nanoseconds start{};
    };

    Look look();
    Look firstLook();
    bool same(const Look& before);
    uint64 number() { return changes_ ? changes_.value() : ++unknown_; }
    // Until the next attempt; false when patience is at its end.
    bool waits(Patience& patience);
    bool diesOver(const Look& now) const noexcept { return !now.quiet && dead_ == now.number; }
    // The update that left this number is dead: records and indexes are read as they are.
    void diedAt(uint64 number);
    // Under the database lock: the update that left its mark is dead.
    void healOrGiveUp();
    [[noreturn]] void raiseBusy() const;

    CountFile& count_;
    ChangeCount& changes_;
    DatabaseLocks& locks_;
    const DatabaseFolder& folder_;
    ShareGuard& guard_;
    uint64 unknown_ = 0;          // a number that was never seen, where there is no count of changes
    std::optional<uint64> dead_;  // at this number an update died
    bool metDeath_ = false;       // and that was why a look was given up
};

}  // namespace tsRtm
