#pragma once
// Writes a whole tree index from record numbers in their order, each node once.
#include <array>

#include "tsRtm/database/BlockFile.hpp"
#include "tsRtm/database/NodeFormat.hpp"

namespace tsRtm {

// Leaves are filled to 30 keys, so that inserts find room; the next key goes up one level, which fills alike.
// A node gets its address when it is complete, in steps of 512 from 513. At the end the unfinished nodes of
// the right edge are closed as they are, the last leaf perhaps without a key. Needs memory for one block of
// 64 KiB, whatever the size.
//
// Raises 28 when the tree grows too deep, and as raiseFileFailure tells. Used once.
class TreeWriter {
 public:
    // An empty file; `index` for the message.
    TreeWriter(platform::File& file, int32 index);

    void add(int32 record);
    // Closes the tree and writes its header.
    void finish();

 private:
    int32 write(const tree::Node& node);
    void flush();
    tree::Node& level(int32 number);

    BlockFile bytes_;
    int32 index_;
    std::array<tree::Node, tree::kMostLevels> levels_;  // from the leaf upwards
    int32 height_ = 1;
    Bytes block_;
    uint64 written_ = 0;
    int64 records_ = 0;
};

}  // namespace tsRtm
