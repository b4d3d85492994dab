#include "cli/shared/CsvTable.hpp"

#include <charconv>

#include "cli/shared/CliError.hpp"

namespace tsRtm::cli {

CsvTable::CsvTable(const std::string& name, FileEncoding encoding, const std::string& separator)
    : name_(name),
      file_(name),
      encoding_(encoding == FileEncoding::automatic ? detectEncoding(file_) : encoding),
      reader_(file_, separator.empty() ? ',' : separator.front()) {
    if (!next() || !fault_.empty())
        throw CliError("'" + name + "' has no header line that names its columns");
    titles_ = cells_;
}

bool CsvTable::decode() {
    cells_.clear();
    for (const auto& field : row_.fields) {
        auto text = decodeText(field, encoding_);
        if (!text) return false;
        cells_.push_back(std::move(*text));
    }
    return true;
}

bool CsvTable::next() {
    do {
        if (!reader_.next(row_)) return false;
    } while (row_.blank());
    fault_ = row_.fault;
    if (fault_.empty() && !decode()) fault_ = std::string("is not in ") + encodingName(encoding_);
    if (!fault_.empty()) cells_.clear();
    return true;
}

std::optional<std::size_t> CsvTable::find(TextView column) const {
    for (std::size_t i = 0; i < titles_.size(); ++i)
        if (equalIgnoringCase(trim(titles_[i]), column)) return i;
    return std::nullopt;
}

std::size_t CsvTable::need(const std::string& word) const {
    if (const auto column = find(fromUtf8(word))) return *column;
    std::size_t number = 0;
    const auto end = std::from_chars(word.data(), word.data() + word.size(), number);
    if (end.ptr == word.data() + word.size() && number >= 1 && number <= titles_.size()) return number - 1;
    std::string there;
    for (const auto& title : titles_) there += (there.empty() ? "" : ", ") + toUtf8(title);
    throw CliError("'" + name_ + "' has no column '" + word + "'; there are: " + there);
}

Text CsvTable::cell(std::optional<std::size_t> column) const {
    return column && *column < cells_.size() ? cells_[*column] : Text();
}

}  // namespace tsRtm::cli
