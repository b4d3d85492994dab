#pragma once
// Whole indexes made anew with nobody else at work: new files that take the place of the old ones.
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// Builds one index, or all for -1, from the records: sorted in memory, written beside the old file, flushed,
// and put in its place in one step. readOnly; badIndex; locked without the reorganisation lock, which is
// given up in between by nobody; what the files refuse, and then the old files stand.
DatabaseError sortIndexes(OpenDatabase& database, int32 number, const WorkProgress& progress);

}  // namespace tsRtm
