#pragma once
// The objects by which applications hold parts of an open database.
#include <memory>
#include <unordered_map>
#include <vector>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

class clsTSRecord;
class clsTSRecordSet;

// Passive: the objects enter themselves and leave at their end.
struct LiveObjects {
    std::vector<clsTSRecord*> records;
    // The one object that stands for a stored record, by number, and the one that won its lock.
    std::unordered_map<int32, clsTSRecord*> known;
    std::unordered_map<int32, clsTSRecord*> holders;
    std::vector<std::weak_ptr<clsTSRecordSet>> sets;
    std::weak_ptr<clsTSRecordSet> all;  // the one of all records
    uint32 generation = 0;              // another one when all have ended: numbers name other records
    int32 lastNew = 0;                  // number of the record object made last for a new record, below 1
};

}  // namespace tsRtm
