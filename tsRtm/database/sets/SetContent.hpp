#pragma once
// What a set of records consists of: numbers at places, and their bytes.
#include <unordered_set>
#include <vector>

#include "tsRtm/database/chains/ChainMerge.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"

namespace tsRtm {

// Places count from 1. A number names a record of the database, or a row of a chain by its place. Not
// thread-safe.
class SetContent {
 public:
    virtual ~SetContent() = default;

    virtual int32 count() = 0;
    // 0 outside.
    virtual int32 numberAt(int32 place) = 0;
    virtual int32 placeOf(int32 number) = 0;
    virtual const RecordLayout& layout() const = 0;
    // False where it is not there any more.
    virtual bool read(int32 number, Bytes& into) = 0;
    // The same in place or in `room`, for who looks again beside writers; empty where it is not there.
    virtual BytesView view(int32 number, Bytes& room) = 0;
};

// All records of a database.
class AllRecords final : public SetContent {
 public:
    explicit AllRecords(DatabaseEngine& engine) : engine_(engine) {}

    int32 count() override;
    int32 numberAt(int32 place) override { return has(place) ? place : 0; }
    int32 placeOf(int32 number) override { return has(number) ? number : 0; }
    const RecordLayout& layout() const override { return engine_.d.layout; }
    bool read(int32 number, Bytes& into) override;
    BytesView view(int32 number, Bytes& room) override;

 private:
    bool has(int32 number) { return engine_.d.store && engine_.d.store.reaches(number); }
    DatabaseEngine& engine_;
};

// Some of them, each once, in the order in which they came.
class SelectedRecords final : public SetContent {
 public:
    explicit SelectedRecords(DatabaseEngine& engine) : engine_(engine) {}

    // False for one that it has.
    bool add(int32 number);
    bool remove(int32 number);
    bool has(int32 number) const { return known_.contains(number); }
    void clear();

    int32 count() override { return static_cast<int32>(numbers_.size()); }
    int32 numberAt(int32 place) override;
    int32 placeOf(int32 number) override;
    const RecordLayout& layout() const override { return engine_.d.layout; }
    bool read(int32 number, Bytes& into) override;
    BytesView view(int32 number, Bytes& room) override;

 private:
    DatabaseEngine& engine_;
    std::vector<int32> numbers_;
    std::unordered_set<int32> known_;
};

// The rows of one chain, or some of them.
class ChainPlaces final : public SetContent {
 public:
    explicit ChainPlaces(std::shared_ptr<ChainRowSet> rows) : rows_(std::move(rows)) {}
    ChainPlaces(std::shared_ptr<ChainRowSet> rows, std::vector<std::shared_ptr<ChainRow>> some)
        : rows_(std::move(rows)), some_(std::move(some)) {}

    int32 count() override;
    int32 numberAt(int32 place) override;
    int32 placeOf(int32 number) override;
    const RecordLayout& layout() const override { return rows_->rows().layout(); }
    bool read(int32 number, Bytes& into) override;
    BytesView view(int32 number, Bytes& room) override;

 private:
    std::shared_ptr<ChainRowSet> rows_;
    std::optional<std::vector<std::shared_ptr<ChainRow>>> some_;
};

}  // namespace tsRtm
