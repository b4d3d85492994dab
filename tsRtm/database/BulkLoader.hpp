#pragma once
// Loading many records at once: alone on the database, rows appended in blocks, indexes built at the end.
#include <memory>

#include "tsRtm/database/clsTSDB.hpp"

namespace tsRtm {

struct DatabaseEngine;
enum class DatabaseError : int32;

// Adds records to a database in single use, behind those that are there.
//
//     BulkLoader loader(*db);
//     for (const auto& row : rows) {
//         loader.set(1, row.name);
//         loader.set(2, row.amount);
//         if (!loader.add()) break;
//     }
//     if (!loader.finish()) tell(db->Error());
//
// From the first row until finish the indexes do not know the new records; should the program die between,
// the next opening rebuilds them. Without finish the destructor takes the rows back that were added. A field
// too long is cut, as everywhere. Errors are recorded in the database: 5 read only, 7 full, 9 bad field
// number, 61 no room, 70 shared use.
class BulkLoader {
 public:
    // The database is open in single use and outlives the loader.
    explicit BulkLoader(clsTSDB& database);
    ~BulkLoader();
    BulkLoader(const BulkLoader&) = delete;
    BulkLoader& operator=(const BulkLoader&) = delete;

    // A field of the row to come, 1..; numbers as Fields takes them. Fields that are not set stay empty.
    void set(int32 field, TextView text);
    // The rows of a chain field; cells of memos and blobs are their texts.
    void setChain(int32 field, const TextTable& rows);
    void setUtf8(int32 field, std::string_view utf8);
    // Ends the row. False where it could not be added; what was added before stays.
    bool add();
    // Rows added so far.
    int32 rows() const noexcept { return rows_; }
    // Writes what is left and builds all indexes. False where that failed.
    bool finish();

 private:
    bool begin();
    void setMemo(int32 field, TextView text);
    template <class Work>
    void beside(Work work);
    bool fail(DatabaseError error) noexcept;
    bool flush();

    DatabaseEngine& engine_;
    int32 before_;  // records at the start
    int32 rows_ = 0;
    int32 serial_ = 0;  // last serial number given to a row
    Bytes blank_;
    Bytes row_;
    Bytes block_;
    bool usable_ = false;
    bool refused_ = false;  // a memo or chain of this row could not be stored
    bool finished_ = false;
};

}  // namespace tsRtm
