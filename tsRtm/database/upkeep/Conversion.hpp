#pragma once
// A whole database from one character form into another.
#include "tsRtm/database/upkeep/BulkWork.hpp"
#include "tsRtm/database/upkeep/Recoding.hpp"

namespace tsRtm {

enum class Conversion {
    fromDos,    // what is in the DOS code page goes to 1252, all else stays
    toAnsi,     // all to code page 1252
    toUnicode,  // all to UTF-16
};

// What code page 1252 would lose.
struct ConversionLoss {
    int64 characters = 0;
    int32 record = 0;  // the first one, 0 where it is a title of the structure
    int32 field = 0;   // of the record
};

// Records, rows of chains (free ones too), the structure files and all indexes in one exchange; texts of
// memos stay, for each entry tells its form itself. Where characters would be lost `accepts` is asked once
// before anything is made, and without its consent all stays (`refused`). Nothing is done where all is in
// that form already. `locked` beside what an older program's reorganisation left. The open database then
// stands on the new form, its cursor and buffers do not.
struct ConversionOutcome : BulkOutcome {
    bool refused = false;
};
ConversionOutcome convertDatabase(OpenDatabase& database, const BulkFace& face, Conversion conversion,
                                  const std::function<bool(const ConversionLoss&)>& accepts);

}  // namespace tsRtm
