#pragma once
// What commands write to standard output: JSON record by record, or a table with columns of fixed width.
#include <iosfwd>
#include <optional>

#include "cli/shared/Records.hpp"

namespace tsRtm::cli {

// {"name":[element,...]} written as the elements come, one a line. Ends itself.
class JsonList {
 public:
    explicit JsonList(const char* name);
    ~JsonList();
    JsonList(const JsonList&) = delete;
    JsonList& operator=(const JsonList&) = delete;
    void add(const std::string& element);

 private:
    bool first_ = true;
};

// Columns are as wide as their fields; a value is never cut.
class Table {
 public:
    struct Column {
        std::string title;
        std::size_t width;
        bool right = false;
    };
    explicit Table(std::vector<Column> columns);
    void row(const std::vector<std::string>& values);

 private:
    std::vector<Column> columns_;
};

// A text behind its title, which fills so many columns.
void titledLine(std::string_view title, std::size_t width, const std::string& text);

// Records as a table or, with `json`, as {"records":[...]}.
class RecordList {
 public:
    RecordList(Session& session, const FieldMap& map, std::vector<int32> fields, bool json);
    void add(const RecordReader& record);

 private:
    const FieldMap& map_;
    std::vector<int32> fields_;
    std::optional<JsonList> json_;
    std::optional<Table> table_;
};

// All fields of one record, a line each.
void printRecord(const RecordReader& record, const FieldMap& map, const std::vector<int32>& fields);

}  // namespace tsRtm::cli
