#pragma once
// Writes a whole tree index from record numbers in their order, each node once.
#include <array>

#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/database/index/NodeFormat.hpp"

namespace tsRtm {

// Leaves are filled to 30 keys, so that inserts find room; the next key goes up one level, which fills alike.
// A node gets its address when it is complete, in steps of 512 from 513. At the end the unfinished nodes of
// the right edge are closed as they are, the last leaf perhaps without a key. Needs memory for one block of
// 64 KiB, whatever the size.
//
// Raises 28 when the tree grows too deep, and as raiseFileFailure tells. Used once.
class TreeWriter {
 public:
    // Into an empty file; `index` for the message.
    TreeWriter(platform::File& file, int32 index);
    // Over the tree that stands in the file, for so many records. The file grows first, by nodes of 30 keys
    // or, where the disk has no room for these, of 40; 61 where it has none either, and then nothing is
    // changed.
    TreeWriter(platform::File& file, int32 index, std::size_t records);

    void add(int32 record);
    // Closes the tree and writes its header.
    void finish();

 private:
    int32 write(const tree::Node& node);
    void flush();
    bool grow(std::size_t records, int32 keys);
    // Chains what the old tree leaves behind the new one; the address of the first such node, 0 for none.
    int32 freeTheRest();
    tree::Node& level(int32 number);

    BlockFile bytes_;
    int32 index_;
    int32 keys_ = tree::kBulkKeys;
    std::array<tree::Node, tree::kMostLevels> levels_;  // from the leaf upwards
    int32 height_ = 1;
    Bytes block_;
    uint64 written_ = 0;
    uint64 end_ = 0;  // of the file before
    int64 records_ = 0;
};

}  // namespace tsRtm
