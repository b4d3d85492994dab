#pragma once
// An index from nothing: the keys of all records sorted in memory, the index file written in their order.
#include <functional>
#include <vector>

#include "tsRtm/database/index/IndexKeys.hpp"
#include "tsRtm/database/records/RecordStore.hpp"

namespace tsRtm {

// Told each hundredth of a work: phase (1 reading, 2 writing), done, of how many. May be empty.
using WorkProgress = std::function<void(int32 phase, int32 done, int32 sum)>;

// All records in the order of an index; deleted ones stay in it.
std::vector<int32> recordsInOrder(RecordStore& store, const IndexKeys& keys, const WorkProgress& progress);

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
