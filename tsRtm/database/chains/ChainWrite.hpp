#pragma once
// A change of one record's chain, as a part of the record's write.
//
// New rows are written whole where nothing leads to them; then the one pointer that shows them: the field's
// first row in the record, or the next row of the last one. What only follows from it (the field's last row,
// the row before) comes behind, and the room of what went is given back last. Who dies in between leaves the
// old chain or the new one, and at most rows to which nothing leads.
#include "tsRtm/database/chains/ChainStore.hpp"
#include "tsRtm/database/records/SideWrite.hpp"

namespace tsRtm {

// Knows the store by reference; holds its lock from prepare to the end of the write.
class ChainWrite : public SideWrite {
 public:
    ~ChainWrite() override { store_.unlock(); }
    ChainWrite(const ChainWrite&) = delete;
    ChainWrite& operator=(const ChainWrite&) = delete;

    // Raises 61 where not all rows are to be had, 70 where the file or its lock is not.
    void prepare(BytesView stored, std::span<char> image) final;
    void flush() final;
    void finish() noexcept final;
    void undo() noexcept final;

 protected:
    explicit ChainWrite(ChainStore& store) : store_(store) {}
    // From the field's columns as they are in the file to those that they are to be.
    virtual void change(BytesView stored, std::span<char> columns) = 0;

    // The same for what may be nearly the old one: equal content writes nothing, and a chain that only grows
    // gets only its new rows.
    void exchange(const ChainContent& old, const Bytes& rows, std::span<char> columns);
    // A chain of these rows in the place of the old one.
    void replace(const ChainContent& old, Bytes rows, std::span<char> columns);
    // Rows behind the last one of a chain that has one; false where the pointer to them can't be written in
    // one piece.
    bool addBehind(int32 last, Bytes& rows, BytesView stay, std::span<char> columns);
    // A row before the first one.
    void addBefore(ChainEnds ends, Bytes row, BytesView stay, std::span<char> columns);

    ChainStore& store_;

 private:
    // Gives the rows numbers, links them, and writes them where nothing leads to them.
    void writeNew(Bytes& rows, int32 before, int32 behind);
    bool areOurs(BytesView rows);
    void end(bool written) noexcept;

    struct Pointer {
        int32 row = 0;  // 0 for none
        uint32 offset = 0;
        int32 to = 0;
    };
    RowSupply::Taken taken_;
    Pointer shown_;                 // the one that shows the new rows, as it was before
    Pointer behind_;                // what follows from the record's write
    std::vector<int32> surplus_;    // rows that go
    std::vector<RowBlock> blocks_;  // and blocks
};

// The whole chain; rows that are as they were stay.
class ReplaceChain final : public ChainWrite {
 public:
    // `rows` as ChainRows::encode makes them, one behind the other.
    ReplaceChain(ChainStore& store, Bytes rows) : ChainWrite(store), rows_(std::move(rows)) {}

 private:
    void change(BytesView stored, std::span<char> columns) override;

    Bytes rows_;
};

// One row at either end.
class AddChainRow final : public ChainWrite {
 public:
    enum class Place { tail, head };
    AddChainRow(ChainStore& store, Place place, Bytes row)
        : ChainWrite(store), place_(place), row_(std::move(row)) {}

 private:
    void change(BytesView stored, std::span<char> columns) override;

    Place place_;
    Bytes row_;
};

}  // namespace tsRtm
