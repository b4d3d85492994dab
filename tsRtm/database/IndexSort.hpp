#pragma once
// An index from nothing: the keys of all records sorted in memory, the index file written in their order.
#include "tsRtm/database/DatabaseParts.hpp"

namespace tsRtm {

// Deleted records stay in the index. `file` is empty. Reports progress in phase 1 (reading) and 2 (writing)
// every hundredth of the work. Raises as raiseFileFailure tells.
void writeSortedIndex(DatabaseParts& parts, int32 number, platform::File& file);

}  // namespace tsRtm
