#pragma once
// A file system under processes that are killed between two writes, alone or while others work on.
//
//     for (int64 n = 1;; ++n) {
//         MemoryFiles disk = ...;
//         CrashingFiles files(disk);
//         files.dieAt(n);
//         try { work(files); } catch (const ProcessDied&) {}
//         if (!files.died()) break;  // n is beyond the last write: all points have been tried
//         ...                        // the disk holds what a killed process leaves: open and check
//     }
//
// Several users, of whom one dies; each has objects of his own on the same CrashingFiles:
//
//     files.as(kVictim);
//     files.dieAt(n);
//     try { victim.work(); } catch (const ProcessDied&) {}
//     files.as(kOther);
//     other.work();
#include <map>
#include <vector>

#include "tests/support/GuardedFiles.hpp"
#include "tests/support/MemoryFiles.hpp"

namespace tsRtm::test {

// Thrown where the process ends. Not a std::exception, so that no handler for failures takes it for one.
struct ProcessDied {};

// Hands all on to a disk in memory, which outlives it, and counts for each user what changes the disk:
// writeAt and FileWindow::store of at least a byte, resize, remove, rename, exchange, copyAccess, recycle,
// makeFolder and the opening that makes or empties a file. Calls on an open file count for who opened it,
// calls by name for who works now.
//
// At the death of a user all his open files are closed, which ends their locks. What still runs for him then
// is the cleaning up of a process that is gone: every further call does nothing and gives deviceError, his
// windows show the disk and change nothing, and none of it throws, since it may come from a destructor. The
// others go on.
class CrashingFiles final : public GuardedFiles {
 public:
    enum class LastWrite { none, firstHalf };  // of the bytes of the write in which the process is stopped
    enum class Manner { throws, silently };    // silently: for work that writes in a destructor

    explicit CrashingFiles(MemoryFiles& disk) : GuardedFiles(disk) {}

    // Who works from now on; user 0 at first. All that follows is told of him.
    void as(int32 number) { now_ = &user(number); }

    // Dies at the n-th change from now on, 1-based, before it is done; the count starts anew. 0: never.
    void dieAt(int64 n, LastWrite last = LastWrite::none, Manner manner = Manner::throws);
    bool died() const { return now_->died; }
    // Whether the work ends in that death.
    template <class Work>
    bool diesAt(int64 n, Work work) {
        return diesAt(n, LastWrite::none, Manner::throws, work);
    }
    template <class Work>
    bool diesAt(int64 n, LastWrite last, Manner manner, Work work) {
        dieAt(n, last, manner);
        try {
            work();
        } catch (const ProcessDied&) {
        }
        return died();
    }
    int64 changes() const { return now_->changes; }

    // Kills a user from without, whoever works.
    void kill(int32 number) { user(number).end(); }

    // Lets others work in each change of this user, before it is done or when its first half is; afterwards
    // he works on. Not called within itself; nullptr ends it.
    void interrupt(std::function<void()> others, LastWrite part = LastWrite::none);

 private:
    class Opening;

    struct User final : Gate {
        explicit User(CrashingFiles& all) : files(all) {}
        platform::SystemError pass(Step step, const Half& half) override;
        bool damagesWindows() const override { return false; }
        void end();

        CrashingFiles& files;
        std::vector<Opening*> openings;
        int64 changes = 0;
        int64 diesAt = 0;
        LastWrite last = LastWrite::none;
        Manner manner = Manner::throws;
        std::function<void()> others;
        LastWrite part = LastWrite::none;
        bool died = false;
    };

    User& user(int32 number) { return users_.try_emplace(number, *this).first->second; }
    Gate& gate() override { return *now_; }
    std::unique_ptr<platform::File> guarded(std::unique_ptr<platform::File> opened) override;

    std::map<int32, User> users_;
    User* now_ = &user(0);
};

}  // namespace tsRtm::test
