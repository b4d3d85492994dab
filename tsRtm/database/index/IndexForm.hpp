#pragma once
// One index of a database, whichever form its file has: the flat array of a normal database or the counted
// tree of a big one. Positions (ranks) and record numbers count from 1.
#include <vector>

#include "tsRtm/database/index/IndexKeys.hpp"
#include "tsRtm/database/records/RecordStore.hpp"

namespace tsRtm {

// What a search found.
struct Found {
    int32 position = 1;  // of the first entry at or behind the key; total + 1 behind the last
    int32 record = 0;    // the entry there, 0 behind the last
    int32 total = 0;     // entries of the index at this moment
    bool exact = false;  // its key is the searched one, to the byte
};

// What the consistency check finds in an index file, told in the words of the log.
struct IndexFindings {
    std::vector<int32> records;  // in the order of the index, as far as it can be read
    std::vector<Text> lines;     // one for each fault
};

// Looks at the file as it is at this moment: a reader without the database lock asks through
// UpdateWatch::steady. Failures of the file raise as raiseFileFailure tells; damage of the structure raises 9
// or 28 with the source "clsTSDB Locate" or gives 0. Not thread-safe.
class IndexForm {
 public:
    virtual ~IndexForm() = default;

    // How often the indexes have changed so far: what was learnt at another number is forgotten.
    void at(uint64 changes) {
        if (changes != changes_) forget();
        changes_ = changes;
    }
    // Nothing but its own changes lies between these two numbers: what it learnt at the one holds at the
    // other.
    void holds(uint64 from, uint64 to) noexcept {
        if (changes_ == from) changes_ = to;
    }

    // Position of the first entry whose key is not below the searched one.
    virtual Found locate(const SearchKey& key) = 0;
    // Position of one record with the key it has in the file; 0 where the index does not hold it there.
    virtual int32 positionOf(int32 record) = 0;
    // The record at a position, 0 where the index does not tell.
    virtual int32 recordAt(int32 position) = 0;
    // Entries of the index; -1 where they cannot be told.
    virtual int32 total() = 0;

    // Under the database lock, behind at(): a record is about to be entered or moved away from this key,
    // which stays where it is. Asked for the first time it lets come near what a search needs last, the
    // second time the records that prove the place; so the ways into several indexes go side by side. Only
    // for speed.
    virtual void aim(int32 record, const SearchKey& key) = 0;
    // Under the database lock. Enters a record that the index does not have at the place of its key, or moves
    // the one it has. Gives the new position. `move` raises 28 where the old entry is not in its place.
    virtual int32 enter(int32 record, const SearchKey& key) = 0;
    virtual int32 move(int32 record, const SearchKey& from, const SearchKey& to) = 0;
    // Forgets what it remembers of the file.
    virtual void forget() = 0;

    // Walks the whole file.
    virtual IndexFindings inspect(int32 index) = 0;

 private:
    uint64 changes_ = 0;
};

}  // namespace tsRtm
