#pragma once
// An index from nothing: the keys of all records sorted in memory, the index file written in their order.
#include <functional>
#include <span>
#include <vector>

#include "tsRtm/database/index/IndexKeys.hpp"
#include "tsRtm/database/records/RecordStore.hpp"

namespace tsRtm {

// Told each hundredth of a work: phase (1 reading, 2 writing), done, of how many. May be empty.
using WorkProgress = std::function<void(int32 phase, int32 done, int32 sum)>;

// Keeps the room that it took for the next index.
class RecordSorter {
 public:
    // All records in the order of an index; deleted ones stay in it.
    std::vector<int32> inOrder(RecordStore& store, const IndexKeys& keys, const WorkProgress& progress);

 private:
    // A record and eight bytes of its sort key, which decide nearly every comparison.
    struct Entry {
        KeyWord word;
        int32 record;
    };
    using Run = std::span<Entry>;

    void collect(RecordStore& store, const IndexKeys& keys, const WorkProgress& progress);
    // The bytes of a record's key from here on, zeros behind its end.
    KeyWord wordOf(int32 record, std::size_t from) const noexcept;
    // Entries whose keys agree before `from`, whose words begin there, and which stand by record number.
    void sort(Run run, std::size_t from);
    void sortByDigits(Run run);

    Bytes keys_;                     // the sort keys, record by record
    std::vector<std::size_t> ends_;  // of each of them, from that of no record on
    std::vector<Entry> entries_;
    std::vector<Entry> spare_;
};

enum class IndexFileForm { flat, tree };

// Both raise as raiseFileFailure tells, 28 for a tree that grows too deep.
//
// Into an empty file, each block written once. `index` is its number, for the message.
void buildNewIndex(platform::File& file, IndexFileForm form, const std::vector<int32>& records, int32 index,
                   const WorkProgress& progress);
// Over what stands in the file, while others have it open: it grows to all that is needed before the first
// byte is written over, and is never cut short. Nodes of a tree that are left over go to its free list. The
// caller holds the database lock, and has the marks of an update set.
void rebuildIndex(platform::File& file, IndexFileForm form, const std::vector<int32>& records, int32 index);

}  // namespace tsRtm
