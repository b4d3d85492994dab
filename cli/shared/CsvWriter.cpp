#include "cli/shared/CsvWriter.hpp"

namespace tsRtm::cli {

std::string csvField(std::string_view bytes, char separator) {
    const bool plain = bytes.find_first_of("\"\r\n") == std::string_view::npos &&
                       bytes.find(separator) == std::string_view::npos;
    if (plain) return std::string(bytes);
    std::string out = "\"";
    for (const char byte : bytes) {
        if (byte == '"') out += '"';
        out += byte;
    }
    return out + '"';
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
        line_ += csvField(*bytes, separator_);
    }
    file_.write(line_ += "\r\n");
    return true;
}

}  // namespace tsRtm::cli
