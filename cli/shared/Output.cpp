#include "cli/shared/Output.hpp"

#include <algorithm>
#include <iostream>

#include "cli/shared/Terminal.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::size_t kNumberWidth = 7;

std::string padded(const std::string& text, std::size_t width, bool right) {
    const std::size_t has = displayWidth(text);
    const std::string blanks(width > has ? width - has : 0, ' ');
    return right ? blanks + text : text + blanks;
}

std::vector<Table::Column> columns(const clsControl& control, const FieldMap& map,
                                   const std::vector<int32>& fields) {
    std::vector<Table::Column> out{{"Nr", kNumberWidth, true}, {" ", 1}};
    for (const int32 i : fields) {
        const TSIO& field = control.field(i);
        out.push_back(
            {map.label(i), static_cast<std::size_t>(std::max(field.Laenge(), 1)), !field.IsAlpha()});
    }
    return out;
}

}  // namespace

JsonList::JsonList(const char* name) { std::cout << "{\"" << name << "\":["; }
JsonList::~JsonList() { std::cout << "]}\n"; }

void JsonList::add(const std::string& element) {
    std::cout << (first_ ? "" : ",\n") << element;
    first_ = false;
}

void titledLine(std::string_view title, std::size_t width, const std::string& text) {
    std::cout << title << std::string(width - title.size(), ' ') << text << '\n';
}

Table::Table(std::vector<Column> columns) : columns_(std::move(columns)) {
    std::vector<std::string> titles;
    for (auto& column : columns_) {
        column.width = std::max(column.width, displayWidth(column.title));
        titles.push_back(column.title);
    }
    row(titles);
}

void Table::row(const std::vector<std::string>& values) {
    std::string line;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (i > 0) line += "  ";
        line += padded(values[i], columns_[i].width, columns_[i].right);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    std::cout << line << '\n';
}

RecordList::RecordList(Session& session, const FieldMap& map, std::vector<int32> fields, bool json)
    : map_(map), fields_(std::move(fields)) {
    if (json)
        json_.emplace("records");
    else
        table_.emplace(columns(session.control(), map_, fields_));
}

void RecordList::add(const RecordReader& record) {
    if (json_) {
        json_->add(jsonText(recordJson(record, map_, fields_)));
        return;
    }
    std::vector<std::string> values{std::to_string(record.number()), record.deleted() ? "*" : ""};
    for (const int32 field : fields_) values.push_back(printable(record.field(field)));
    table_->row(values);
}

void printRecord(const RecordReader& record, const FieldMap& map, const std::vector<int32>& fields) {
    std::cout << "record " << record.number() << (record.deleted() ? ", deleted" : "") << '\n';
    std::size_t width = 0;
    for (const int32 field : fields) width = std::max(width, displayWidth(map.label(field)));
    for (const int32 field : fields)
        std::cout << "  " << padded(map.label(field), width, false) << "  " << printable(record.field(field))
                  << '\n';
}

}  // namespace tsRtm::cli
