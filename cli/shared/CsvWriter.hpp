#pragma once
// Comma-separated values by RFC 4180, written row by row.
#include <string>
#include <vector>

#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {

// Rows end with CR LF; a field stands in quotes where it must.
class CsvWriter {
 public:
    // The file outlives the writer.
    CsvWriter(OutputFile& file, char separator, FileEncoding encoding)
        : file_(file), separator_(separator), encoding_(encoding) {}

    // False, and nothing is written, where the encoding lacks a character of a field: badField() tells which,
    // from 0.
    bool row(const std::vector<Text>& fields);
    std::size_t badField() const noexcept { return badField_; }

 private:
    OutputFile& file_;
    char separator_;
    FileEncoding encoding_;
    std::string line_;
    std::size_t badField_ = 0;
};

// One field as it stands in a row, behind what stands there.
void appendCsvField(std::string& line, std::string_view bytes, char separator);

}  // namespace tsRtm::cli
