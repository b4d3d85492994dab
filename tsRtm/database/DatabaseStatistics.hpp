#pragma once
// What the files of a database hold, and what a reorganisation would gain.
#include <algorithm>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// All sizes in bytes.
struct IndexStatistics {
    Text file;
    uint64 bytes = 0;
    int32 levels = 0;  // 0: an array
    int64 nodes = 0;   // of a tree, without the free ones
    int64 freeNodes = 0;
    int64 keys = 0;
    uint64 afterSort = 0;  // its size then
    // Of the room that its nodes have for keys, 0 to 1; 1 for an array.
    float64 fill() const noexcept;
};

// A store of memos, or of the rows of a chain.
struct StoreStatistics {
    Text file;
    uint64 bytes = 0;
    int64 entries = 0;   // texts, or rows, that records have
    uint64 used = 0;     // by these
    uint64 deleted = 0;  // of that: by records marked as deleted
    uint64 free = 0;     // given back; rows of it are used again
    // To which nothing leads: what deaths and programs without locks left.
    uint64 lost() const noexcept { return bytes - std::min(bytes, used + free); }
    // By packing records and stores.
    uint64 gain() const noexcept { return bytes - std::min(bytes, used - deleted); }
};

struct DatabaseStatistics {
    uint64 bytes = 0;  // of Data.tsd
    int32 records = 0;
    int32 deleted = 0;
    uint64 recordBytes = 0;
    std::vector<IndexStatistics> indexes;
    std::vector<StoreStatistics> memos;
    std::vector<StoreStatistics> chains;
    // What packing, sorting and packing of the stores would give back.
    uint64 gain() const noexcept;
};

}  // namespace tsRtm
