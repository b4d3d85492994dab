#pragma once
// Nodes and header of one tree index file.
#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/database/index/NodeFormat.hpp"

namespace tsRtm {

// Not thread-safe. Failures of the file raise as raiseFileFailure tells.
class NodeFile {
 public:
    NodeFile() = default;
    explicit NodeFile(platform::File& file) : bytes_(file) {}

    explicit operator bool() const noexcept { return static_cast<bool>(bytes_); }
    const Text& name() const noexcept { return bytes_.file().name(); }

    // The header as it stands in the file now; of an empty file a new one, written unless `readOnly`.
    tree::Header header(bool readOnly);
    void header(const tree::Header& header);

    // False for an address where no node can lie.
    bool read(int32 address, tree::Node& into);
    void write(int32 address, const tree::Node& node);
    // Only the record count of a subtree: what an insert or a deletion changes on the way down.
    void writeCount(int32 address, int32 entry, int32 count);
    // Room for a node: from the free list, else a block of zeros at the end of the file. `header` is changed,
    // not written.
    int32 allocate(tree::Header& header);
    void release(int32 address, tree::Header& header);

 private:
    bool isNode(int32 address);

    BlockFile bytes_;
};

}  // namespace tsRtm
