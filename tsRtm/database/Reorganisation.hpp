#pragma once
// Work on a whole database under the reorganisation lock.
#include "tsRtm/database/DatabaseParts.hpp"

namespace tsRtm {

// The reorganisation lock: Lock.tsd held open for writing and Count.tsd opened against all others. While it
// lasts nobody else can open the database; it is not to be had while anybody has it open. Depth counts, so
// that one operation may call another. In single use it is always there. The locks that this object holds on
// records outlive it.
bool takeExclusive(DatabaseParts& parts);
void giveExclusive(DatabaseParts& parts);

// Rebuilds one index, or all for -1, from the records: sorted in memory, written beside the old file and put
// in its place. False on a read-only database (Fehler 5), without the reorganisation lock, and for a number
// that is none.
bool sortIndexes(DatabaseParts& parts, int32 number);

// The same for an index whose opening found it wrong, with a notice to the user.
bool healIndex(DatabaseParts& parts, int32 number);

// Rebuilds all indexes where an update died between an index and its record, as its mark in Count.tsd tells.
// Nothing happens while somebody is at work. False where the mark is there and could not be dealt with.
bool healAfterCrash(DatabaseParts& parts);

}  // namespace tsRtm
