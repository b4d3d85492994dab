#pragma once
// What keeps the users of a share from working on what a client's cache remembers. On local files it does
// nothing and costs nothing.
#include <functional>
#include <optional>

#include "tsRtm/database/files/ChangeCount.hpp"
#include "tsRtm/database/files/CountFile.hpp"
#include "tsRtm/database/files/DatabaseFolder.hpp"

namespace tsRtm {

// Every write is done under the database lock and raises the number in Stand.tsd, which is always asked of
// the server. Who wins the lock at another number than before has his client forget what it keeps of all
// files; who gives it back has brought to the server what he wrote. A reader who finds the number at which
// his client last forgot has read what the server has.
//
// Locks are the one thing that all clients of a share see alike: by a shared one each writer shows the last
// number he wrote, so that whoever wins the lock finds out that what he reads is older, and refuses to write.
// Knows its parts by reference. Not thread-safe.
class ShareGuard {
 public:
    ShareGuard(const DatabaseFolder& folder, CountFile& count, ChangeCount& changes)
        : folder_(folder), count_(count), changes_(changes) {}

    // All open files but Count.tsd and Stand.tsd. Set by who owns them.
    std::function<void(const std::function<void(platform::File&)>&)> eachFile;

    bool needed() const { return count_ && folder_.shared && count_.file().remote(); }
    // A file was opened, which this client may know from before. Raises what the file does.
    void opened(platform::File& file);

    // The gate before the database lock: who wants the lock again has to pass it behind those who wait. False
    // while somebody else stands in it.
    [[nodiscard]] bool gate();
    void leaveGate() noexcept;
    // The database lock was won: from here on nothing comes from a cache. False where what is read stays
    // older than what others have written, or the server no longer knows our locks.
    [[nodiscard]] bool entered();
    // Tells the user why entered() refused; to be called when the lock is given back.
    void tellRefusal();
    // The lock was not won: tells the user where the server is gone.
    void tellLost();
    // Before the lock is given back.
    void leaving() noexcept;
    // The marks of an update are set: they are on the server before what they announce.
    void announced();
    // Before marks and number tell others: what was written is on the server. False as holds().
    [[nodiscard]] bool written();
    // Whether the server still has our lock. Where not, somebody else may have written as well: then the mark
    // is set, and nothing more may be written.
    [[nodiscard]] bool holds();
    // They tell.
    void told();
    // Files got new names or others got theirs: keeps the lock until no client takes one for the other.
    void renamed();

    // For a reader: the server's number. At another one than before the client has forgotten its caches,
    // unless an update is under way.
    uint64 newest();
    // The number at which it did so last, without a question; to be held against newest() afterwards.
    std::optional<uint64> passed() const noexcept { return passed_; }
    // Before a read that nobody repeats.
    void lookAnew() {
        if (needed() && !inside_) newest();
    }
    // The client forgets, whatever the number is.
    void forget();
    // All that was learnt of the files is void.
    void closed() noexcept;

 private:
    // False where a reader without the right to write cannot make the client forget.
    bool refresh(platform::RefreshAs standing);
    // Under the lock: the newest number, known to the common way of reading, too.
    bool catchesUp();
    bool refused(TextView why);
    void flushMarks();
    // Numbers shown count from 1.
    static uint64 shownAs(uint64 changes) noexcept { return changes + 1; }

    const DatabaseFolder& folder_;
    CountFile& count_;
    ChangeCount& changes_;
    bool inside_ = false;  // between entered and leaving
    uint64 entry_ = 0;     // the number when the lock was won
    uint64 written_ = 0;   // the last one we wrote
    std::optional<uint64> passed_;
    std::optional<uint64> known_;  // passed under the lock
    TextView why_;                 // of the last refusal
};

}  // namespace tsRtm
