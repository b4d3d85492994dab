#pragma once
// The brackets around a change of the indexes: what a reader waits on, and what tells the next one who holds
// the database lock that an update died.
#include "tsRtm/database/files/ChangeCount.hpp"
#include "tsRtm/database/files/CountFile.hpp"
#include "tsRtm/database/files/ShareGuard.hpp"

namespace tsRtm {

// Between begin and end the indexes and the records may disagree. All under the database lock (or in single
// use). Knows the files by reference. Failures raise as raiseFileFailure tells.
class UpdateMarks {
 public:
    UpdateMarks(CountFile& count, ChangeCount& changes, ShareGuard& guard)
        : count_(count), changes_(changes), guard_(guard) {}
    ~UpdateMarks() { giveUp(); }
    UpdateMarks(const UpdateMarks&) = delete;
    UpdateMarks& operator=(const UpdateMarks&) = delete;

    // Whether this program is in the middle of an update of the database, by whichever object and under
    // whatever name of the folder.
    static bool underWayHere(const CountFile& count);
    // Either of the marks is set.
    static bool areSet(CountFile& count, ChangeCount& changes) {
        return count.marked() || (changes && !ChangeCount::isQuiet(changes.value()));
    }

    // An earlier update was not ended: the indexes must be built anew. One of the two marks is enough, since
    // a death comes between them, too, and older programs write over that in Count.tsd.
    bool leftBehind();
    bool underWay() const noexcept { return underWay_; }

    void begin();
    // Bytes of a record that are about to be written in more than one page: who heals completes them.
    void keep(int32 record, uint32 offset, BytesView bytes, BytesView before);
    // What the update that was left behind may not have finished to write.
    ChangeCount::Kept kept();
    // Indexes and records agree again; `records` is their count, for Count.tsd.
    void end(int32 records);
    // A record was written that moves in no index.
    void touched();
    // The change is not ended here: its marks stay for who comes next.
    void giveUp() noexcept;

 private:
    // Raises 70 where the lock was lost on the way.
    void written();

    CountFile& count_;
    ChangeCount& changes_;
    ShareGuard& guard_;
    bool underWay_ = false;
};

}  // namespace tsRtm
