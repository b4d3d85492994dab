#pragma once
// Files that a program lost its life over, between the deletion of the old one and the renaming of the new
// one.
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// A missing Control.tsd beside a Control.tmp that is whole: that takes the name.
void recoverControl(const DatabaseFolder& folder);

// What a reorganisation by an older program left that died between the records and their stores: records may
// lead into these files, so they stay, and nothing is given free beside them. In the words of the log.
std::vector<Text> unfinishedWork(const DatabaseFolder& folder);

enum class DataFile { there, recovered, lost };
// A missing Data.tsd. `recovered`: Data.tmp held as many whole records as Count.tsd tells and has taken the
// name; the indexes are to be built anew. `lost`: there were records or filled side files, and nothing may be
// made in their place; the user was told which file is missing. Else it is there, or was never made.
DataFile recoverData(OpenDatabase& database);

}  // namespace tsRtm
