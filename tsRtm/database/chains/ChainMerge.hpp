#pragma once
// The rows of one chain in memory, changed apart from the file, and their way into what others have made of
// the chain meanwhile.
#include <map>
#include <optional>

#include "tsRtm/database/chains/ChainWrite.hpp"

namespace tsRtm {

// One row: a whole one as ChainRows::encode makes it, its pointers blank.
struct ChainRow {
    enum class From { file, addedInFront, addedBehind };

    explicit ChainRow(Bytes content, From where = From::file)
        : bytes(std::move(content)), base(bytes), from(where) {}
    bool changed() const noexcept { return from != From::file || bytes != base || !texts.empty(); }

    Bytes bytes;
    Bytes base;  // as it was read
    From from;
    bool moved = false;  // its texts have other places now: no row of the file is known to be this one
    std::map<int32, Text> texts;  // by field: what waits to be written for its memo cells
    std::weak_ptr<void> object;   // that stands for it
};

using ChainRowList = std::vector<std::shared_ptr<ChainRow>>;

// A value in parts: the rows are shared with the objects that stand for them. Not thread-safe.
class ChainRowSet {
 public:
    explicit ChainRowSet(const ChainRows& rows) : rows_(rows) {}

    const ChainRows& rows() const noexcept { return rows_; }
    const ChainRowList& list() const noexcept { return list_; }
    // Somebody added, removed or changed a row.
    bool changed() const;
    // The rows of the file; what was changed here is forgotten. Rows that are as before stay the same ones.
    void load(const ChainContent& content);

    std::shared_ptr<ChainRow> add(bool inFront);
    // The cells of a row; those of memos and blobs are their texts.
    void assign(ChainRow& row, std::vector<Text> cells) const;
    void remove(int32 place);
    // The texts of the rows in the file were given other places.
    void textsMoved();
    void clear() { list_.clear(); }

    // What the chain is to be, laid over the rows that stand in the file (one behind the other), and with it
    // how the set looks then. With `only` what else was changed stays aside. Nothing where somebody else
    // changed or removed the same row.
    struct Merged {
        Bytes stored;
        ChainRowList base, list;
        std::vector<std::size_t> written;  // of `base`: those whose texts are in the file then
    };
    std::optional<Merged> merge(BytesView stored, const ChainRow* only) const;
    // Which of the rows of the file this one is: the same, or the only one that differs in the places of its
    // texts alone, since somebody has given it another. Nothing where it is none of them.
    std::optional<std::size_t> placeIn(BytesView stored, const ChainRow& row) const;
    // That is in the file now.
    void settle(Merged merged);

 private:
    ChainRowList alike(const std::vector<BytesView>& rows) const;
    std::vector<BytesView> split(BytesView rows) const;

    ChainRows rows_;
    ChainRowList base_;  // as they were read, in their order
    ChainRowList list_;  // as they are here
};

// Stores such a set. Raises 70 where somebody else touched the same row: nothing is written then.
class MergeChain final : public ChainWrite {
 public:
    // All outlive it.
    MergeChain(ChainStore& store, ChainRowSet& rows, const ChainRow* only = nullptr)
        : ChainWrite(store), rows_(rows), only_(only) {}

    // Once it is written.
    void settle() {
        if (merged_) rows_.settle(std::move(*merged_));
    }

 private:
    void change(BytesView stored, std::span<char> columns) override;
    void writeTexts();

    ChainRowSet& rows_;
    const ChainRow* only_;
    std::optional<ChainRowSet::Merged> merged_;
};

}  // namespace tsRtm
