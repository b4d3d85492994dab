#pragma once
// Memo and chain stores made anew without the room that nobody points to.
#include "tsRtm/database/upkeep/BulkWork.hpp"

namespace tsRtm {

// A new Data.tsd with all new places, and a new file for each store: texts and rows in the order of the
// records, the rows of a chain side by side. Entries of older programs come into the present form; scrambled
// ones are taken over as they are. A chain that leads out of its file or to one of its rows again is raised,
// source kRaisedSource, before anything is changed. `locked` beside what an older program's reorganisation
// left, for records may lead into that.
BulkOutcome packSideFiles(OpenDatabase& database, const BulkFace& face);

}  // namespace tsRtm
