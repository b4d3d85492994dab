#pragma once
// Every index held against the records.
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// Walks one index from end to end: the order of its keys, its counts, and that it names each record once.
// What it finds, in the words of the log; empty for a sound one. The caller holds the database lock.
std::vector<Text> checkIndex(OpenDatabase& database, int32 number);

// The same for a reader, who holds no lock: beside writers he looks again. Raises 70 as UpdateWatch tells.
std::vector<Text> checkBeside(OpenDatabase& database, int32 number);

// Builds these indexes anew in one update, and settles what one that died left. The caller holds the database
// lock, and has found all other indexes sound. Raises what the files raise; the marks then stay.
void repairIndexes(OpenDatabase& database, const std::vector<int32>& numbers);

// At an opening whose last user did not leave cleanly: checks all indexes and builds those anew that are
// wrong. The caller holds the database lock. Raises what the files raise.
void settleIndexes(OpenDatabase& database);

}  // namespace tsRtm
