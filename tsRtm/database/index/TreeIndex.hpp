#pragma once
// The index of a big database: a counted B-tree of 512-byte nodes. The count in each entry gives positions
// without a scan. A tree made by a bulk load may end in nodes of few keys, or none, on its right edge: every
// walk bears them.
#include <array>

#include "tsRtm/database/index/IndexForm.hpp"
#include "tsRtm/database/index/NodeFile.hpp"

namespace tsRtm {

// Knows store and keys by reference.
class TreeIndex final : public IndexForm {
 public:
    TreeIndex(platform::File& file, RecordStore& store, const IndexKeys& keys, bool readOnly)
        : file_(file), store_(store), keys_(keys), readOnly_(readOnly) {}

    tree::Header header() { return file_.header(readOnly_); }

    Found locate(const SearchKey& key) override;
    int32 positionOf(int32 record) override;
    int32 recordAt(int32 position) override;
    int32 enter(int32 record, const SearchKey& key) override;
    int32 move(int32 record, const SearchKey& from, const SearchKey& to) override;
    // Of the root: its keys and what lies below. 0 for an empty tree; -1 for a root that cannot be read.
    int32 total() override;
    void forget() override { depth_ = 0; }
    IndexFindings inspect(int32 index) override;

 private:
    // One level of a walk from the root.
    struct Step {
        int32 address = 0;
        int32 position = 0;  // the entry taken, or the place in the last node
        int32 base = 0;      // records before this subtree
        int32 total = 0;     // records of this subtree; 0 where the walk did not need to know
        tree::Node node;
        // Records before the entry at `position` and its subtree.
        int32 before() const noexcept;
    };
    struct Search {
        const SearchKey& key;
        int32 number;  // of the record searched for, 0 for any
        KeyPrefix prefix;
    };
    // What the check of a subtree carries along.
    struct Inspection {
        IndexFindings& out;
        int32 index;
        SearchKey lastKey;
        int32 lastRecord = 0;
    };

    // One level down; the key searched for, if any, only for the message.
    Step& push(int32 address, int32 base, const SearchKey* key);
    Step& last() noexcept { return path_[static_cast<std::size_t>(depth_ - 1)]; }
    Step& step(int32 level) noexcept { return path_[static_cast<std::size_t>(level)]; }
    [[noreturn]] void raiseCorrupt(int32 address);
    BytesView recordOf(const Step& step, int32 position);
    // Walks down to a key; with a number to that record's entry, else to the place of the first such key.
    // True on the record's entry itself, which may lie in an inner node.
    bool descend(const SearchKey& key, int32 number);
    // Probes ask the hints first: on a share each look at a record is a way to the server and back, and in
    // memory a hint is nearer than the record.
    enum class Trust { hints, records };
    bool walk(const Search& search, Trust trust);
    // The search against an entry: by what is known of its key, or by the record itself.
    std::strong_ordering probe(const Search& search, const Step& step, int32 position, Trust trust);
    std::strong_ordering compare(const Search& search, const Step& step, int32 position);
    // Whether the place that a walk ended on lies between a lesser and a greater key.
    bool proven(const Search& search);
    Found foundHere(const SearchKey& key);
    int32 positionHere();
    int32 seek(int32 position);

    bool takeOut(int32 record, const SearchKey& key);
    void toLeafEntry(int32 hitLevel);
    void removeUpwards(int32 hitLevel, tree::Header& header);
    // Rights a node of too few keys with a neighbour; gives the parent's entry that must go, 0 when all is
    // done.
    int32 balance(int32 level, tree::Header& header);
    int32 mergeWith(int32 level, int32 sibling, const tree::Node& other, tree::Header& header);
    void rotateWith(int32 level, int32 sibling, tree::Node& other);
    int32 inspectNode(int32 address, int32 level, Inspection& inspection);

    NodeFile file_;
    RecordStore& store_;
    const IndexKeys& keys_;
    bool readOnly_;
    std::array<Step, tree::kMostLevels> path_;
    int32 depth_ = 0;
    KeyHints hints_;
    Bytes room_;
};

}  // namespace tsRtm
