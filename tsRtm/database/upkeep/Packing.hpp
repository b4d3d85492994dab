#pragma once
// Work that makes whole files anew: packing and emptying. Nobody else has the database open meanwhile, and
// all files change together (FileExchange).
#include <functional>

#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

class FileExchange;

// What a work needs of the face: told when everything stands ready, before the first file is closed
// (`prepared`), and whether the user wants it to end (`stopped`); from the commit on nobody can stop it.
struct BulkFace {
    WorkProgress progress;
    std::function<void()> prepared;
    std::function<bool()> stopped;
};

struct BulkOutcome {
    DatabaseError error = DatabaseError::none;
    bool changed = false;  // files were exchanged: all numbers and places are new
};

// Takes the records out that are marked as deleted, and gives the others new numbers in their order; the
// indexes keep theirs. Where none is left the memos, chains and indexes go, too. Nothing is written where
// none is deleted.
BulkOutcome packRecords(OpenDatabase& database, const BulkFace& face);
// Takes what nobody points to out of the memo stores; older entries come into the present form.
BulkOutcome packMemos(OpenDatabase& database, const BulkFace& face);
// Takes everything out.
BulkOutcome emptyDatabase(OpenDatabase& database, const BulkFace& face);

// Gives whole records, as they stand in the file, one by one to `add`, and further files to the exchange;
// false where it all is to stay as it was.
using Replacement = std::function<bool(FileExchange& exchange, const std::function<void(BytesView)>& add)>;
// Puts other records in the place of all there are; the outcome of a refused one is 70.
BulkOutcome replaceRecords(OpenDatabase& database, const BulkFace& face, const Replacement& replacement);

}  // namespace tsRtm
