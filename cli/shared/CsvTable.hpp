#pragma once
// A CSV file whose first line names its columns, read row by row as text.
#include <optional>
#include <string>
#include <vector>

#include "cli/shared/CsvReader.hpp"

namespace tsRtm::cli {

// Throws a CliError where the file cannot be read or has no header line.
class CsvTable {
 public:
    CsvTable(const std::string& name, FileEncoding encoding, const std::string& separator);

    // A column by its name, without regard to case.
    std::optional<std::size_t> find(TextView column) const;
    // The same, or by its number from 1. Throws a CliError that names the columns there are.
    std::size_t need(const std::string& word) const;

    const std::vector<Text>& titles() const noexcept { return titles_; }

    // The next row; empty lines are passed over. False at the end.
    bool next();
    int64 line() const noexcept { return row_.line; }
    // Why the row is none; empty where it is one.
    const std::string& fault() const noexcept { return fault_; }
    // Empty where the row ends before, and for no column.
    Text cell(std::optional<std::size_t> column) const;

 private:
    bool decode();

    std::string name_;
    InputFile file_;
    FileEncoding encoding_;
    CsvReader reader_;
    CsvRow row_;
    std::vector<Text> titles_;
    std::vector<Text> cells_;
    std::string fault_;
};

}  // namespace tsRtm::cli
