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

    bool isNew() { return bytes_.refreshSize() == 0; }
    // Writes the header of a tree without nodes into an empty file; under the database lock.
    void initialise();
    // The header as it stands in the file now; of an empty file that of a tree without nodes.
    tree::Header header();
    void header(const tree::Header& header);

    // Whether a node can lie there, by the file's length as last seen; and the same, asked anew.
    bool covers(int32 address) const noexcept {
        return address >= tree::kFirstNode &&
               tree::offsetOf(address) + tree::kBlockBytes <= bytes_.knownSize();
    }
    bool reaches(int32 address);
    // A covered node where it lies, or in `room`. Good until the next call that may grow the file. Others may
    // be writing it: check() behind a run of looks.
    const tree::Node& look(int32 address, tree::Node& room) const;
    // The same where it lies, nullptr where it is not to be had so, whatever the address.
    const tree::Node* inPlace(int32 address) const noexcept;
    // Lets the memory come near that a look will touch; costs nothing where there is no window.
    void approach(int32 address) const noexcept;
    void check() const { bytes_.check(); }

    // A copy. False for an address where no node can lie.
    bool read(int32 address, tree::Node& into);
    void write(int32 address, const tree::Node& node);
    // Only the record count of a subtree: what an insert or a deletion changes on the way down.
    void writeCount(int32 address, int32 entry, int32 count);
    // Room for a node: from the free list, else a block of zeros at the end of the file. `header` is changed,
    // not written.
    int32 allocate(tree::Header& header);
    void release(int32 address, tree::Header& header);

 private:
    BlockFile bytes_;
};

}  // namespace tsRtm
