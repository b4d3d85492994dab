#pragma once
// A file system under a process that is killed between two writes.
//
//     for (int64 n = 1;; ++n) {
//         MemoryFiles disk = ...;
//         CrashingFiles files(disk);
//         files.dieAt(n);
//         try { work(files); } catch (const ProcessDied&) {}
//         if (!files.died()) break;                  // n is beyond the last write: all points have been
//         tried MemoryFiles still holds what a killed process leaves: open it as the next process would, and
//         check.
//     }
#include <vector>

#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::test {

// Thrown where the process ends. Not a std::exception, so that no handler for failures takes it for one.
struct ProcessDied {};

// Hands all on to another file system, which outlives it, and counts what changes the disk: writeAt of at
// least a byte, resize, remove, rename, exchange, copyAccess, recycle, makeFolder and the opening that makes
// or empties a file. Offers no window.
//
// At its death all open files are closed, which ends their locks. What still runs then is the cleaning up of
// a process that is gone: every further call does nothing and gives deviceError, and does not throw, since it
// may come from a destructor.
class CrashingFiles final : public platform::FileSystem {
 public:
    enum class LastWrite { none, firstHalf };  // of the bytes of the writeAt at which the process dies
    enum class Manner { throws, silently };    // silently: for work that writes in a destructor

    explicit CrashingFiles(platform::FileSystem& inner) : inner_(inner) {}

    // Dies at the n-th change from now on, 1-based, before it is done; the count starts anew. 0: never.
    void dieAt(int64 n, LastWrite last = LastWrite::none, Manner manner = Manner::throws);
    bool died() const { return died_; }
    int64 changes() const { return changes_; }

    platform::Result<std::unique_ptr<platform::File>> open(TextView name,
                                                           platform::OpenRequest request) override;
    platform::Result<platform::FileStatus> status(TextView name) override;
    [[nodiscard]] platform::SystemError remove(TextView name) override;
    [[nodiscard]] platform::SystemError rename(TextView from, TextView to, bool replace) override;
    [[nodiscard]] platform::SystemError exchange(TextView from, TextView to) override;
    [[nodiscard]] platform::SystemError copyAccess(TextView from, TextView to) override;
    [[nodiscard]] platform::SystemError makeFolder(TextView name) override;
    platform::Result<std::vector<platform::FolderEntry>> list(TextView folder) override;
    platform::DriveKind driveKind(TextView name) override { return inner_.driveKind(name); }
    [[nodiscard]] platform::SystemError recycle(TextView name) override;

 private:
    class Opening;

    // Counts one change; false once the process is dead.
    bool alive();
    bool dueNow() const { return !died_ && at_ > 0 && changes_ + 1 == at_; }
    void die();
    bool changesDisk(TextView name, platform::Disposition disposition);

    platform::FileSystem& inner_;
    std::vector<Opening*> openings_;
    int64 changes_ = 0;
    int64 at_ = 0;
    LastWrite last_ = LastWrite::none;
    Manner manner_ = Manner::throws;
    bool died_ = false;
};

}  // namespace tsRtm::test
