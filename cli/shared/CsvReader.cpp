#include "cli/shared/CsvReader.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::size_t kRead = std::size_t{64} * 1024;
constexpr std::string_view kMark = "\xEF\xBB\xBF";

}  // namespace

CsvReader::CsvReader(ByteSource& source, char separator) : CsvReader(source, separator, Limits()) {}

CsvReader::CsvReader(ByteSource& source, char separator, Limits limits)
    : source_(source), separator_(separator), limits_(limits) {
    seek(0);
    for (const char byte : kMark)
        if (take() != static_cast<unsigned char>(byte)) {
            seek(0);
            line_ = 1;
            return;
        }
}

void CsvReader::seek(uint64 position) {
    if (position >= begin_ && position < begin_ + block_.size()) {
        used_ = static_cast<std::size_t>(position - begin_);
        return;
    }
    begin_ = position;
    used_ = 0;
    block_.resize(kRead);
    block_.resize(source_.read(begin_, block_));
}

int CsvReader::peek() {
    if (used_ == block_.size()) {
        if (block_.empty()) return kEnd;
        seek(begin_ + used_);
        if (block_.empty()) return kEnd;
    }
    return static_cast<unsigned char>(block_[used_]);
}

int CsvReader::take() {
    const int byte = peek();
    if (byte == kEnd) return kEnd;
    ++used_;
    if (byte == '\n') ++line_;
    return byte;
}

// At LF or CR LF: passes over it. A lone CR is text.
bool CsvReader::lineEnd() {
    const int byte = peek();
    if (byte == '\n') {
        take();
        return true;
    }
    if (byte != '\r') return false;
    const uint64 before = position();
    take();
    if (peek() == '\n') {
        take();
        return true;
    }
    seek(before);
    return false;
}

CsvReader::Stop CsvReader::endOfField() {
    if (peek() == static_cast<unsigned char>(separator_)) {
        take();
        return Stop::separator;
    }
    if (peek() == kEnd || lineEnd()) return Stop::lineEnd;
    fault_ = "text behind a closing quote";
    return Stop::fault;
}

CsvReader::Stop CsvReader::quoted(std::string& into) {
    take();
    for (;;) {
        const int byte = take();
        if (byte == kEnd) {
            fault_ = "a quote that is never closed";
            return Stop::fault;
        }
        if (byte == '"') {
            if (peek() != '"') return endOfField();
            take();
        }
        if (into.size() == limits_.field) {
            fault_ = "a field of more than " + std::to_string(limits_.field) +
                     " bytes, or a quote that is never closed";
            return Stop::fault;
        }
        into += static_cast<char>(byte);
    }
}

CsvReader::Stop CsvReader::field(std::string& into) {
    if (peek() == '"') return quoted(into);
    for (;;) {
        const int byte = peek();
        if (byte == kEnd || byte == '\n' || byte == '\r' || byte == static_cast<unsigned char>(separator_)) {
            // Anything but a lone CR ends the field.
            if (byte != '\r') return endOfField();
            if (lineEnd()) return Stop::lineEnd;
        }
        if (into.size() == limits_.field) {
            fault_ = "a field of more than " + std::to_string(limits_.field) + " bytes";
            return Stop::fault;
        }
        into += static_cast<char>(take());
    }
}

bool CsvReader::next(CsvRow& row) {
    row.fields.clear();
    row.fault.clear();
    row.line = line_;
    if (peek() == kEnd) return false;
    const uint64 start = position();
    for (;;) {
        row.fields.emplace_back();
        const Stop stop = field(row.fields.back());
        if (stop == Stop::lineEnd) return true;
        if (stop == Stop::separator && row.fields.size() < limits_.fields) continue;
        row.fault = stop == Stop::fault ? fault_ : "more than " + std::to_string(limits_.fields) + " fields";
        firstLineOnly(row, start);
        return true;
    }
}

// As much of the line as a field may be long.
void CsvReader::firstLineOnly(CsvRow& row, uint64 start) {
    seek(start);
    line_ = row.line;
    row.fields.assign(1, {});
    std::string& text = row.fields.front();
    for (int byte = take(); byte != kEnd && byte != '\n'; byte = take())
        if (text.size() < limits_.field) text += static_cast<char>(byte);
    if (text.ends_with('\r')) text.pop_back();
}

}  // namespace tsRtm::cli
