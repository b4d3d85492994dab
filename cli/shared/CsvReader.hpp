#pragma once
// Comma-separated values by RFC 4180, row by row.
#include <cstdint>
#include <string>
#include <vector>

#include "cli/shared/TextFiles.hpp"

namespace tsRtm::cli {

// One row. Its fields are bytes in the encoding of the file.
struct CsvRow {
    int64 line = 0;  // line of the file where it begins, from 1
    std::vector<std::string> fields;
    std::string
        fault;  // why it is no row, empty where it is one; `fields` then holds its first line as it stands
    // An empty line; it is a row all the same where a row has one field.
    bool blank() const noexcept { return fault.empty() && fields.size() == 1 && fields.front().empty(); }
};

// A field may stand in double quotes and then hold separators, line ends, and quotes written twice. Lines end
// with CR LF or LF. A quote inside of a field that does not begin with one is text. A byte order mark is
// passed over.
//
// A row that is none (a quote that nobody closes, text behind a closing quote, more than the limits) loses
// one line only: the next row begins on the line behind it. Memory: one block of the source and one row
// within the limits.
class CsvReader {
 public:
    struct Limits {
        std::size_t field = std::size_t{1} << 20;  // bytes
        std::size_t fields = 4096;
    };
    // The source outlives the reader.
    explicit CsvReader(ByteSource& source, char separator = ',');
    CsvReader(ByteSource& source, char separator, Limits limits);

    // False at the end.
    bool next(CsvRow& row);
    // Bytes read so far.
    uint64 position() const noexcept { return begin_ + used_; }

 private:
    static constexpr int kEnd = -1;

    int peek();
    int take();
    void seek(uint64 position);
    // What stopped a field.
    enum class Stop { separator, lineEnd, fault };
    Stop field(std::string& into);
    Stop quoted(std::string& into);
    Stop endOfField();
    bool lineEnd();
    void firstLineOnly(CsvRow& row, uint64 start);

    ByteSource& source_;
    char separator_;
    Limits limits_;
    std::string block_;
    uint64 begin_ = 0;
    std::size_t used_ = 0;
    int64 line_ = 1;
    std::string fault_;
};

}  // namespace tsRtm::cli
