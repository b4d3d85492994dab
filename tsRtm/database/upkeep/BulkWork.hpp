#pragma once
// What works that make whole files anew have in common: nobody else has the database open meanwhile, and all
// files change together (FileExchange).
#include <functional>

#include "tsRtm/database/upkeep/FileExchange.hpp"
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

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

inline constexpr int32 kStopped = 70;  // the failure of a work that the user ended

// Where a failure is the caller's to hear, not an outcome.
inline constexpr TextView kRaisedSource = u"DB PackMemoKette";

// One work: `make` fills the new files, and nothing is exchanged where it makes none; `committed` comes when
// they have their places and the database is still closed. Failures are outcomes, but for those of
// kRaisedSource.
struct BulkWork {
    std::function<void(FileExchange&)> make;
    std::function<void()> committed = {};
};
BulkOutcome exchangeFiles(OpenDatabase& database, const BulkFace& face, const BulkWork& work);

// Each record in turn; reports each hundredth, and raises where the user wants it to end.
void eachRecord(OpenDatabase& database, const BulkFace& face,
                const std::function<void(int32 record, BytesView bytes)>& visit);

// Records or rows one behind the other into a new file, in large blocks.
class RunOfRecords {
 public:
    explicit RunOfRecords(platform::File& file) : bytes_(file, false) {}
    void add(BytesView record);
    void flush();
    // Over what is there.
    void put(uint64 offset, BytesView bytes);

 private:
    BlockFile bytes_;
    Bytes block_;
};

inline constexpr TextView kDataFile = u"Data.tsd";

}  // namespace tsRtm
