#pragma once
// Records on their way into the place of all that a database has: clsTSDB::Replace.
#include <functional>
#include <memory>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class FileExchange;
class RecordBuffer;
class RecordLayout;

// Nothing of it is seen before all of it is. Memos, blobs and chains start empty. What a file refuses raises.
class NewRecords {
 public:
    // Whole rows go to `add`. All of them outlive this object.
    NewRecords(const RecordLayout& layout, int32 most, FileExchange& exchange,
               const std::function<void(BytesView)>& add);
    ~NewRecords();
    NewRecords(const NewRecords&) = delete;
    NewRecords& operator=(const NewRecords&) = delete;

    // A field of the row to come, 1..; numbers as Fields takes them. Fields that are not set stay empty.
    void set(int32 field, TextView text);
    // Ends the row. False where the database holds no more.
    bool add();
    // Rows so far; the next one gets the number behind.
    int32 rows() const noexcept { return rows_; }
    // A further file of the database's folder, made anew and empty, that changes together with the records.
    platform::File& file(TextView name);

 private:
    const RecordLayout& layout_;
    FileExchange& exchange_;
    const std::function<void(BytesView)>& add_;
    std::unique_ptr<RecordBuffer> row_;
    int32 most_;
    int32 rows_ = 0;
};

}  // namespace tsRtm
