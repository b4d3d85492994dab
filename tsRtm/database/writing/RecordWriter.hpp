#pragma once
// The write path: indexes first, the record last, so that whoever dies in it leaves the record in its old
// form and a mark by which the next one who writes builds the indexes anew.
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "tsRtm/database/records/RecordBuffer.hpp"
#include "tsRtm/database/records/SideWrite.hpp"
#include "tsRtm/database/writing/OpenDatabase.hpp"

namespace tsRtm {

// What is to be written.
struct WriteOrder {
    RecordBuffer& content;
    RecordBuffer::Extent extent = RecordBuffer::Extent::whole;
    // The database lock is held from the reading of the stored record to the last write.
    bool locked = false;
    // A new record is locked before anybody can see it, and stays so.
    bool lockNew = false;
    // What goes to side files with it, under the database lock: their columns are theirs.
    std::span<SideWrite* const> sides = {};
    // The index whose position is asked for, 0 for none.
    int32 watched = 0;
};

// What came of it. An error means that records and indexes are as they were.
struct WriteOutcome {
    DatabaseError error = DatabaseError::none;
    int32 record = 0;
    int32 position = 0;  // in the watched index where that changed, else 0

    explicit operator bool() const noexcept { return !failed(error); }
};

// One write at a time: a second one, by a handler that runs inside the first, ends with `locked`. Failures of
// files and indexes are outcomes; the one that leaves it is 80040001 hexadecimal, a walk to a leaf that finds
// no end. Knows the database by reference. Not thread-safe.
class RecordWriter {
 public:
    explicit RecordWriter(OpenDatabase& database) : d_(database) {
        d_.locks.aboutToWait = [this] { keepContent(); };
    }
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    // To be called when the indexes are defined.
    void prepare();
    bool busy() const noexcept { return busy_; }
    // Keeps the writer for bulk work: until it is given back writes end with `locked`.
    void occupy(bool occupied) noexcept {
        busy_ = occupied;
        countKnown_ = false;
    }

    // A record that is there. Without the database lock where no key changes and the record lies in one page
    // of the system, so that it goes out in one write; then the keys are not written over.
    WriteOutcome change(int32 record, const WriteOrder& order);
    // A new record behind the last: full (7) at the limit, locked (70) where somebody holds its number.
    WriteOutcome add(const WriteOrder& order);
    // The whole record, no index: 1..count + 1.
    WriteOutcome place(int32 record, RecordBuffer& content);
    // Some columns of a record that is there, no index.
    WriteOutcome patch(int32 record, uint32 offset, BytesView bytes);

    // Told of each index in which the record moved, in the middle of the write: reading is free then.
    std::function<void(int32 primaryField)> indexChanged;

 private:
    template <class Work>
    WriteOutcome alone(RecordBuffer* content, Work work);
    // Before events run, whose handlers may stand on another record: what is written was settled before.
    void keepContent();
    template <class Work>
    WriteOutcome underLock(Work work);
    // Prepares side writes, and undoes or finishes them.
    class Sides;
    // Nothing where it has to be done under the lock, or done again.
    std::optional<WriteOutcome> changeWithoutLock(int32 record, const WriteOrder& order);
    WriteOutcome changeUnderLock(int32 record, const WriteOrder& order);
    WriteOutcome addUnderLock(const WriteOrder& order);
    // The record in place, or moved in all indexes whose keys differ.
    void store(int32 record, const WriteOrder& order, Sides& sides, WriteOutcome& out);
    void move(int32 record, const WriteOrder& order, WriteOutcome& out);
    // The brackets around a change of the indexes in changed_; the first gives the number of changes before.
    uint64 beginUpdate();
    void endUpdate(uint64 number, int32 records);
    void aim(int32 record, const std::vector<SearchKey>& keys);
    void put(int32 record);
    // The same from the second look at the record on.
    void putNow(int32 record);
    void keepOthersColumns(int32 record);
    // Where writes are durable: what is about to be written over.
    void note(int32 record, uint32 offset, BytesView now, BytesView before, bool isNew);
    void moved(int32 index, int32 position, const WriteOrder& order, WriteOutcome& out);
    // Brings indexes and records together again after a failed write.
    void heal() noexcept;
    bool touchesKeys(std::size_t first, std::size_t last) const;

    OpenDatabase& d_;
    bool busy_ = false;
    bool countKnown_ = false;           // where nobody else adds records: since a write that did not fail
    RecordBuffer* content_ = nullptr;   // of the write under way
    std::optional<RecordBuffer> kept_;  // a copy of it
    std::vector<bool> keyBytes_;        // of a record
    Bytes stored_, image_, now_;
    std::vector<int32> changed_;        // index numbers
    std::vector<SearchKey> from_, to_;  // a key for each of them
};

}  // namespace tsRtm
