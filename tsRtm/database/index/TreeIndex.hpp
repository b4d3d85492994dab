#pragma once
// The index of a big database: a counted B-tree of 512-byte nodes. The count in each entry gives positions
// without a scan. A tree made by a bulk load may end in nodes of few keys, or none, on its right edge: every
// walk bears them.
#include <array>
#include <optional>

#include "tsRtm/database/index/IndexForm.hpp"
#include "tsRtm/database/index/KeyHints.hpp"
#include "tsRtm/database/index/NodeFile.hpp"

namespace tsRtm {

// Knows store and keys by reference.
class TreeIndex final : public IndexForm {
 public:
    TreeIndex(platform::File& file, RecordStore& store, const IndexKeys& keys)
        : file_(file), store_(store), keys_(keys) {}

    tree::Header header() { return file_.header(); }
    // A new file; under the database lock.
    bool isNew() { return file_.isNew(); }
    void initialise() { file_.initialise(); }

    Found locate(const SearchKey& key) override;
    int32 positionOf(int32 record) override;
    int32 recordAt(int32 position) override;
    void aim(int32 record, const SearchKey& key) override;
    int32 enter(int32 record, const SearchKey& key) override;
    int32 move(int32 record, const SearchKey& from, const SearchKey& to) override;
    // Of the root: its keys and what lies below. 0 for an empty tree; -1 for a root that cannot be read.
    int32 total() override;
    void forget() override {
        standNowhere();
        ++era_;
    }
    IndexFindings inspect(int32 index) override;

 private:
    // One level of a walk from the root.
    struct Step {
        int32 address = 0;
        int32 keys = 0;                    // of the node, when it was met
        int32 position = 0;                // the entry taken, or the place in the last node
        int32 base = 0;                    // records before this subtree; only for seek()
        int32 total = 0;                   // records of this subtree; 0 where the walk did not need to know
        const tree::Node* node = nullptr;  // where it lies, or `own`
        tree::Node own;                    // what an update changes before it is written
        int32 record() const noexcept { return node->entry(position).satz; }
        int32 before() const noexcept { return node->before(position); }
        int32 child() const noexcept { return node->entry(position).kind; }
        int32 count() const noexcept { return node->entry(position).zaehler; }
        tree::Node& copy() noexcept {
            if (node != &own) own = *node;
            node = &own;
            return own;
        }
    };
    struct Search {
        const SearchKey& key;
        int32 number;  // of the record searched for, 0 for any
        KeyStart start;
    };
    // Bytes that the search shares with the nearest keys on both sides of a subtree, and so with all its keys
    // at least the fewer ones.
    struct Shared {
        std::size_t before = 0;
        std::size_t behind = 0;
    };
    // How far a walk has come.
    struct Way {
        int32 next = 0;  // the node below, 0 or less at the end
        Shared shared;
        bool hit = false;  // it ended on the record's own entry
    };
    struct Aim {
        Search search;
        Way way;
    };
    // What the check of a subtree carries along.
    struct Inspection {
        IndexFindings& out;
        int32 index;
        SearchKey lastKey;
        int32 lastRecord = 0;
    };

    // One level down; the key searched for, if any, only for the message.
    Step& push(int32 address, const SearchKey* key);
    Step& last() noexcept { return path_[static_cast<std::size_t>(depth_ - 1)]; }
    Step& step(int32 level) noexcept { return path_[static_cast<std::size_t>(level)]; }
    // The nodes of the path again, where the file's window may have moved.
    bool reaches(int32 address);
    [[noreturn]] void raiseCorrupt(int32 address);
    BytesView recordOf(const Step& step, int32 record);
    Search searchFor(const SearchKey& key, int32 number) const;
    // Walks down to a record's entry with this key, from where the aim at it has come to. True on the entry
    // itself, which may lie in an inner node; else the place for it.
    bool descend(const Search& search);
    bool isAimedAt(int32 record, const SearchKey& key) const noexcept {
        return aim_ && aim_->search.number == record && &aim_->search.key == &key;
    }
    void standNowhere() noexcept {
        depth_ = 0;
        aim_.reset();
    }
    // Probes ask the hints first: on a share each look at a record is a way to the server and back, and in
    // memory a hint is nearer than the record.
    enum class Trust { hints, records };
    bool walk(const Search& search, Trust trust);
    bool walkOn(const Search& search, Way& way, Trust trust);
    void goDown(const Search& search, Way& way, Trust trust);
    // The place of the search in one node; true on the record's own entry.
    bool placeByHints(const Search& search, Step& here, Shared& shared);
    bool placeByRecords(const Search& search, Step& here);
    // The hints of a node, in line with it.
    NodeHints& hintsOf(const Search& search, const Step& here, const Shared& shared);
    // Looks at a key that no hint knows; 0 where its start is not that of the node's.
    KeyWord learn(NodeHints& hints, const Step& here, int32 record);
    std::strong_ordering compare(const Search& search, const Step& step, int32 record);
    // The entries on both sides of the place where a walk ended.
    struct Neighbours {
        const Step* before = nullptr;
        const Step* behind = nullptr;
    };
    Neighbours neighbours();
    void approach(const Neighbours& around);
    // The proof of that place: the key before it is less, the one behind it not.
    bool liesBehind(const Search& search, const Step* before);
    IndexKeys::Match match(const Search& search, const Step* behind);
    // Records before the place.
    int32 countBefore();
    // Place, total and record, without a look at the record.
    Found foundBefore(const Step* behind);
    int32 positionHere();
    int32 seek(int32 position);
    // Who reads in order comes to the entries behind one of the last node next.
    void approachBehind(int32 entry) noexcept;

    int32 insert(const Search& search);
    bool takeOut(const Search& search);
    // From a leaf that keeps enough keys.
    void takeFromLeaf();
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
    std::array<Step, tree::kMostLevels> path_;
    int32 depth_ = 0;
    int32 leafLevel_ = 0;  // where the last walk ended
    std::optional<Aim> aim_;
    KeyHints hints_;
    uint32 era_ = 1;  // of what is remembered of nodes
    Bytes room_;
};

}  // namespace tsRtm
