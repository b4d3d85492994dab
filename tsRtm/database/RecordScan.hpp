#pragma once
// All records of a database as they lie, block by block: for exports, sums and whatever needs no order.
#include <memory>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class clsTSDB;
struct DatabaseEngine;

// Goes through the records by number, several times as fast as MoveNext does, and moves nothing of the
// database's cursor. Others may work meanwhile: each record shows as it was at some moment since the step
// before the block it came in was read (about 64 KB), none shows half a write, and records that were added
// before the scan came to the end are seen. Deleted records come, too.
//
//     RecordScan scan(*db);
//     while (scan.next())
//         if (!scan.deleted()) cents += centsOf(scan.value(8));
//     if (db->Error() != 0) ...
//
// What a file refuses is recorded in the database as MoveNext does it. Not thread-safe.
class RecordScan {
 public:
    // The database outlives the scan. Records `first` to `last`, which 0 leaves open.
    explicit RecordScan(clsTSDB& database, int32 first = 1, int32 last = 0);
    ~RecordScan();
    RecordScan(const RecordScan&) = delete;
    RecordScan& operator=(const RecordScan&) = delete;

    // To the next record, at the start the first one; false behind the last, or where an error was recorded.
    // What the questions below gave holds until here. They may be asked only where it was true.
    bool next() {
        ++number_;
        row_ += length_;
        textKnown_ = false;
        return row_ < end_ || readBlock();
    }
    int32 number() const noexcept { return number_; }
    bool deleted() const noexcept { return *row_ == '*'; }
    // The record as it stands in the file, and the columns of a field (1..), blanks and all: code page 1252
    // or 850, or UTF-16 in a Unicode database. A field that there is not has no columns.
    BytesView record() const noexcept { return {row_, length_}; }
    BytesView columns(int32 field) const noexcept {
        const auto i = static_cast<std::size_t>(field);
        return i < columns_.size() ? BytesView{row_ + columns_[i].offset, columns_[i].bytes} : BytesView();
    }
    // The text of a field (1..) as GetField gives it; a memo's, blob's or chain's is what names its place.
    // Records 9 for a bad field number.
    TextView value(int32 field);

 private:
    struct Columns {
        std::size_t offset, bytes;
    };
    struct Texts;

    bool readBlock();
    void learnLayout();

    clsTSDB& database_;
    DatabaseEngine& engine_;
    int32 number_;
    int32 last_;
    std::size_t length_ = 0;
    const char* row_ = nullptr;
    const char* end_ = nullptr;
    std::vector<Columns> columns_;  // from 1
    Bytes block_;
    std::unique_ptr<Texts> texts_;
    bool textKnown_ = false;
};

}  // namespace tsRtm
