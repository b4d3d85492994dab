#pragma once
// Whole indexes made anew with nobody else at work: new files that take the place of the old ones.
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// Builds one index, or all for -1, from the records: sorted in memory, written beside the old file, flushed,
// and put in its place in one step. readOnly; badIndex; locked without the reorganisation lock, which is
// given up in between by nobody; what the files refuse, and then the old files stand.
DatabaseError sortIndexes(OpenDatabase& database, int32 number, const WorkProgress& progress);

// A further index, built before the control file names it. badField; badIndex where one with this primary
// field is there, or one whose file would have the same name; as above else.
DatabaseError createIndex(OpenDatabase& database, const IndexEntry& fields, const WorkProgress& progress);
// The control file first, then the index file goes. badIndex for no such index.
DatabaseError deleteIndex(OpenDatabase& database, int32 primaryField);

}  // namespace tsRtm
