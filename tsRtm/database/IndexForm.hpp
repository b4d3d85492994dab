#pragma once
// One index of a database, whichever form its file has: the flat array of a normal database or the counted
// tree of a big one. Positions (ranks) and record numbers count from 1.
#include <vector>

#include "tsRtm/database/IndexKeys.hpp"
#include "tsRtm/database/RecordStore.hpp"

namespace tsRtm {

// What a search found.
struct Found {
    int32 position = 1;  // of the first entry at or behind the key; count + 1 behind the last
    int32 record = 0;    // the entry there, 0 behind the last
    bool exact = false;  // its key is the searched one, to the byte
};

// What the consistency check finds in an index file, told in the words of the log.
struct IndexFindings {
    std::vector<int32> records;  // in the order of the index, as far as it can be read
    std::vector<Text> lines;     // one for each fault
};

// Failures of the file raise as raiseFileFailure tells; damage of the structure raises 9 or 28 with the
// source "clsTSDB Locate" or gives 0. Not thread-safe.
class IndexForm {
 public:
    virtual ~IndexForm() = default;

    // Position of the first entry whose key is not below the searched one. A reader without the database lock
    // gets the answer of a moment in which no update was under way, as far as that can be watched.
    virtual Found locate(const SearchKey& key) = 0;
    // Position of one record with the key it has in the file; 0 where the index does not hold it there.
    virtual int32 positionOf(int32 record) = 0;
    // The record at a position, 0 where the index does not tell.
    virtual int32 recordAt(int32 position) = 0;

    // Under the database lock. Enters a record at the place of its new key, and takes out the entry it had:
    // `from` is its old key, nothing for a new record. Gives the new position. Raises 28 where the old entry
    // is not in its place.
    virtual int32 move(int32 record, const SearchKey* from, const SearchKey& to) = 0;
    // Takes the entry of a record with the key given out; false where it is not there.
    virtual bool erase(int32 record, const SearchKey& key) = 0;
    // A record that has no key yet, behind all others. Only the flat form has such entries.
    virtual void append(int32 record) = 0;
    // Entries that the file holds, -1 where it does not tell.
    virtual int32 total() = 0;
    // Forgets what it remembers of the file.
    virtual void forget() = 0;

    // Walks the whole file.
    virtual IndexFindings inspect(int32 index) = 0;
};

}  // namespace tsRtm
