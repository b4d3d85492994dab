#pragma once
// All chains of a database held against their files, and what is mended.
#include "tsRtm/database/chains/ChainSet.hpp"

namespace tsRtm {

enum class ChainMending {
    none,
    // After an end that was not clean: nothing where the file is gone, since it may come back from a backup.
    // A chain ends before a row that is not there, row 1, or a row that
    // another chain has; the free lists are dropped.
    cut,
    // The same, but a row of two chains is copied for the second one, and a sound free list stays. Where the
    // file is gone and records name rows, an empty one is made.
    repair,
};

// Walks the chain of every record and the free lists. What is wrong, in the words of the log; empty where all
// is sound. Rows to which nothing leads are no fault, and neither is what a death may leave behind the one
// pointer that counts (the field's last row, the rows before): that is mended without a word. With mending,
// the caller holds the database lock; raises what the files raise.
std::vector<Text> checkChains(ChainSet& chains, ChainMending mending);

}  // namespace tsRtm
