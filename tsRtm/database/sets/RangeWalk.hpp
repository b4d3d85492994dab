#pragma once
// The records of a range, as an index has them at one moment.
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/sets/KeyRange.hpp"

namespace tsRtm {

struct RangeWalk {
    std::vector<int32> records;
    int32 first = 1;  // position of the first one
    // How often the indexes had changed: as long as they have not since, all records belong to the range.
    std::optional<uint64> changes;
};

// All records at the places of the range; where it has gaps those in them, too. Raises 28 where the index
// does not tell one.
RangeWalk walkRange(DatabaseEngine& engine, int32 index, const KeyRange& range);
// The records of the range alone.
std::vector<int32> numbersIn(DatabaseEngine& engine, int32 index, const KeyRange& range);

}  // namespace tsRtm
