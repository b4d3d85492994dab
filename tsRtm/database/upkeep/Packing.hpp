#pragma once
// Fewer records, or none.
#include "tsRtm/database/upkeep/BulkWork.hpp"

namespace tsRtm {

// Takes the records out that are marked as deleted, and gives the others new numbers in their order; the
// indexes keep theirs. Where none is left the memos, chains and indexes go, too. Nothing is written where
// none is deleted.
BulkOutcome packRecords(OpenDatabase& database, const BulkFace& face);
// Takes everything out.
BulkOutcome emptyDatabase(OpenDatabase& database, const BulkFace& face);

// Gives whole records, as they stand in the file, one by one to `add`, and further files to the exchange;
// false where it all is to stay as it was.
using Replacement = std::function<bool(FileExchange& exchange, const std::function<void(BytesView)>& add)>;
// Puts other records in the place of all there are; the outcome of a refused one is 70.
BulkOutcome replaceRecords(OpenDatabase& database, const BulkFace& face, const Replacement& replacement);

}  // namespace tsRtm
