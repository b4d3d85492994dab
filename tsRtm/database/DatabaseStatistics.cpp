#include "tsRtm/database/DatabaseStatistics.hpp"

#include "tsRtm/database/DatabaseCare.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/index/NodeFile.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {
namespace {

using memoFormat::kBlock;

uint64 sizeOf(const Text& path) {
    const auto status = rtmMain::system().files.status(path);
    return status ? status->size : 0;
}

// --- Trees

class TreeWalk {
 public:
    TreeWalk(NodeFile& nodes, IndexStatistics& into) : nodes_(nodes), into_(into) {}
    void run() {
        const auto header = nodes_.header();
        most_ = static_cast<int64>(into_.bytes / tree::kBlockBytes);
        below(header.wurzel, 1);
        tree::Node node;
        for (int32 free = header.freiListe; into_.freeNodes < most_ && nodes_.read(free, node);
             free = node.entry(1).kind)
            ++into_.freeNodes;
    }

 private:
    // A damaged tree is the check's business: it only may not lead on for ever.
    void below(int32 address, int32 level) {
        tree::Node node;
        if (level > tree::kMostLevels || into_.nodes >= most_ || !nodes_.read(address, node) || !node.sound())
            return;
        ++into_.nodes;
        into_.keys += node.anzahl;
        into_.levels = std::max(into_.levels, level);
        if (node.entry(1).kind == 0) return;
        for (int32 i = 1; i <= node.anzahl + 1; ++i) below(node.entry(i).kind, level + 1);
    }

    NodeFile& nodes_;
    IndexStatistics& into_;
    int64 most_ = 0;
};

// Nodes of so many keys; the key behind each goes up.
uint64 sizeOfNewTree(int64 keys) {
    constexpr int64 kRun = tree::kBulkKeys + 1;
    uint64 blocks = 1;
    for (; keys > 0; keys /= kRun) blocks += static_cast<uint64>(keys / kRun) + 1;
    return blocks * tree::kBlockBytes;
}

IndexStatistics indexOf(OpenDatabase& d, int32 number) {
    IndexStatistics out;
    out.file = d.indexes.fileName(number);
    const Text path = d.folder.path(out.file);
    out.bytes = sizeOf(path);
    if (!d.indexes.big()) {
        out.keys = static_cast<int64>(out.bytes / 2);
        out.afterSort = static_cast<uint64>(d.records()) * 2;
        return out;
    }
    out.afterSort = sizeOfNewTree(d.records());
    const auto file = rtmMain::system().files.open(path, {});
    if (!file || out.bytes == 0) return out;
    NodeFile nodes(**file);
    TreeWalk(nodes, out).run();
    return out;
}

// --- Stores

// What is had of one store, by its parts from 1 on: blocks or rows.
class Owned {
 public:
    explicit Owned(uint64 parts) : had_(parts + 1, false) {}
    // False for a part that was met before, or is not there.
    bool take(uint64 part) {
        if (part < 1 || part >= had_.size() || had_[part]) return false;
        had_[part] = true;
        return true;
    }
    bool has(uint64 part) const { return had_[part]; }
    uint64 parts() const noexcept { return had_.size() - 1; }

 private:
    std::vector<bool> had_;
};

class MemoCount {
 public:
    MemoCount(const DatabaseFolder& folder, MemoStores& stores, int32 field)
        : stores_(stores), field_(field), file_(stores.open(field)), owned_(file_.blocks()) {
        out_.file = stores.fileName(field);
        out_.bytes = sizeOf(folder.path(out_.file));
    }
    void add(BytesView bytes, bool deleted) {
        const int32 first = stores_.pointerIn(bytes, field_);
        const uint64 blocks = first > 0 ? extentOf(first) : 0;
        uint64 mine = 0;
        for (uint64 i = 0; i < blocks; ++i) mine += owned_.take(static_cast<uint64>(first) + i) ? kBlock : 0;
        if (mine == 0) return;
        ++out_.entries;
        out_.used += mine;
        if (deleted) out_.deleted += mine;
    }
    StoreStatistics result() {
        uint64 lostEnd = 0;
        for (uint64 block = 1; block <= owned_.parts(); ++block) {
            // Zeros within an entry that nobody has are its text.
            if (owned_.has(block) || block < lostEnd) continue;
            if (const uint64 blocks = extentOf(static_cast<int32>(block)); blocks > 0)
                lostEnd = block + blocks;
            else
                out_.free += kBlock;
        }
        out_.used = std::min(out_.used, out_.bytes);
        return out_;
    }

 private:
    uint64 extentOf(int32 first) {
        switch (file_.kindAt(first)) {
            case MemoEntry::Kind::entry:
                return file_.blocksAt(first);
            case MemoEntry::Kind::raw:
                return memoFormat::blocksOf(file_.read(first).payload.size() + 1);
            default:
                return 0;
        }
    }
    MemoStores& stores_;
    int32 field_;
    MemoFile& file_;
    Owned owned_;
    StoreStatistics out_;
};

class MemoCounts {
 public:
    MemoCounts(const DatabaseFolder& folder, MemoStores& stores, int32 fields) {
        for (int32 field = 1; field <= fields; ++field)
            if (stores.has(field) && FilesTopic::Exist(folder.path(stores.fileName(field))))
                counts_.emplace_back(folder, stores, field);
    }
    void add(BytesView bytes, bool deleted) {
        for (auto& count : counts_) count.add(bytes, deleted);
    }
    void finish(std::vector<StoreStatistics>& into) {
        for (auto& count : counts_) into.push_back(count.result());
    }

 private:
    std::vector<MemoCount> counts_;
};

class ChainCount {
 public:
    ChainCount(OpenDatabase& d, ChainStore& chain)
        : chain_(chain), owned_(static_cast<uint64>(chain.file().refresh())) {
        out_.file = chain.fileName();
        out_.bytes = chain.file().size();
        out_.used = owned_.take(1) ? chain.format().rowBytes() : 0;
        if (auto* const stores = OpenDatabase::rowMemos(chain))
            memos_ = std::make_unique<MemoCounts>(d.folder, *stores, chain.rows().fields());
    }
    void add(int32 record, bool deleted) {
        const ChainContent content = chain_.read(record);
        const std::size_t length = chain_.format().rowBytes();
        for (std::size_t i = 0; i < content.rows.size(); ++i) {
            if (!owned_.take(static_cast<uint64>(content.rows[i]))) continue;
            ++out_.entries;
            out_.used += length;
            if (deleted) out_.deleted += length;
            if (memos_) memos_->add(BytesView(content.bytes).substr(i * length, length), deleted);
        }
    }
    void finish(DatabaseStatistics& into) {
        Bytes room;
        for (int32 row = chain_.file().head().frei; owned_.take(static_cast<uint64>(std::max(row, 0)));
             row = chain_.format().link(chain_.file().row(row, room)))
            out_.free += chain_.format().rowBytes();
        out_.used = std::min(out_.used, out_.bytes);
        into.chains.push_back(out_);
        if (memos_) memos_->finish(into.memos);
    }

 private:
    ChainStore& chain_;
    Owned owned_;
    StoreStatistics out_;
    std::unique_ptr<MemoCounts> memos_;
};

}  // namespace

float64 IndexStatistics::fill() const noexcept {
    if (levels == 0 || nodes == 0) return 1;
    return static_cast<float64>(keys) / static_cast<float64>(nodes * tree::kMostKeys);
}

uint64 DatabaseStatistics::gain() const noexcept {
    uint64 out = static_cast<uint64>(deleted) * recordBytes;
    for (const auto& index : indexes) out += index.bytes - std::min(index.bytes, index.afterSort);
    for (const auto* stores : {&memos, &chains})
        for (const auto& store : *stores) out += store.gain();
    return out;
}

DatabaseStatistics DatabaseCare::statistics(const Progress& progress) {
    DatabaseStatistics out;
    auto& d = engine_.d;
    if (!d.store) return out;
    try {
        d.refreshCount();
        out.bytes = d.store.bytes().knownSize();
        out.records = d.records();
        out.recordBytes = d.layout.bytes();
        MemoCounts memos(d.folder, d.memos, d.layout.fields());
        std::vector<std::unique_ptr<ChainCount>> chains;
        for (const int32 field : d.chains.fields())
            if (auto* const chain = d.chains.find(field);
                chain && chain->format().usable() && chain->openToRead())
                chains.push_back(std::make_unique<ChainCount>(d, *chain));
        Bytes bytes;
        for (int32 n = 1; n <= out.records; ++n) {
            d.store.read(n, bytes);
            const bool deleted = RecordLayout::isDeleted(bytes);
            out.deleted += deleted;
            memos.add(bytes, deleted);
            for (auto& chain : chains) chain->add(n, deleted);
            if (progress && n % 64 == 0) progress(static_cast<uint64>(n), static_cast<uint64>(out.records));
        }
        memos.finish(out.memos);
        for (auto& chain : chains) chain->finish(out);
        for (int32 i = 1; d.indexes.has(i); ++i) out.indexes.push_back(indexOf(d, i));
    } catch (const Failure& failure) {
        engine_.fail(failure);
    }
    return out;
}

}  // namespace tsRtm
