#pragma once
// The write path of the engine: indexes first, the record last, so that a crash leaves the record in its old
// form.
#include "tsRtm/database/DatabaseParts.hpp"

namespace tsRtm {

// The mark in Count.tsd, set before the first index changes and taken off when indexes and record agree
// again. One that an earlier update left is dealt with first: the indexes are rebuilt, or where others have
// the database open the mark stays on for the next opening. Under the database lock.
void beginIndexChange(DatabaseParts& parts);
void endIndexChange(DatabaseParts& parts, bool whole);

// One pass over all indexes of one record, from begin() to end(); keeps its room from record to record.
//
// Whatever ends the pass before finish() leaves the mark, and the indexes before the fault stay changed. Only
// what a new record has entered is taken out again, since nobody may meet a number without a record.
class UpdatePath {
 public:
    explicit UpdatePath(DatabaseParts& parts) : parts_(parts) {}

    // The record that stands in memory, to be written as number `record`.
    void begin(int32 record, bool isNew);
    void end() noexcept { active_ = false; }
    bool active() const noexcept { return active_; }

    bool changesIndexes() const noexcept { return !changed_.empty(); }
    // Under the database lock. Raises what index and file raise.
    void moveEntries();
    // The new position in the index that was asked for, 0 where that index did not change.
    int32 positionIn(int32 index) const noexcept { return index != 0 && index == watched_ ? position_ : 0; }
    void watchPosition(int32 index) noexcept { watched_ = index; }
    // The record is written.
    void finish() { endIndexChange(parts_, true); }
    // Something failed: takes out the entries of a new record of a tree database, unless an index failed
    // midway.
    void giveUp() noexcept;

 private:
    DatabaseParts& parts_;
    bool active_ = false;
    int32 record_ = 0;
    bool isNew_ = false;
    Bytes image_;
    Bytes stored_;
    SearchKey from_, to_;
    std::vector<int32> changed_;  // index numbers
    std::vector<int32> entered_;
    int32 watched_ = 0;
    int32 position_ = 0;
    bool moving_ = false;  // inside an index
};

}  // namespace tsRtm
