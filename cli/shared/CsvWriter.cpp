#include "cli/shared/CsvWriter.hpp"

#include <algorithm>

namespace tsRtm::cli {

void appendCsvField(std::string& line, std::string_view bytes, char separator) {
    const auto needsQuotes = [separator](char byte) {
        return byte == '"' || byte == '\r' || byte == '\n' || byte == separator;
    };
    if (std::none_of(bytes.begin(), bytes.end(), needsQuotes)) {
        line += bytes;
        return;
    }
    line += '"';
    for (const char byte : bytes) {
        if (byte == '"') line += '"';
        line += byte;
    }
    line += '"';
}

bool CsvWriter::row(const std::vector<Text>& fields) {
    line_.clear();
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const auto bytes = encodeText(fields[i], encoding_);
        if (!bytes) {
            badField_ = i;
            return false;
        }
        if (i > 0) line_ += separator_;
        appendCsvField(line_, *bytes, separator_);
    }
    file_.write(line_ += "\r\n");
    return true;
}

}  // namespace tsRtm::cli
