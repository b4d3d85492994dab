#include "cli/db/ChainTexts.hpp"

#include "cli/shared/CliError.hpp"
#include "cli/shared/SideFields.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::cli {

std::vector<Text> ChainTexts::row(const std::vector<std::string>& words) {
    std::vector<Text> cells(static_cast<std::size_t>(map_.count()));
    for (const auto& word : words) {
        const auto equals = word.find('=');
        if (equals == std::string::npos) throw CliError("'" + word + "' is not of the form NAME=VALUE");
        const int32 field = map_.need(word.substr(0, equals));
        cells[static_cast<std::size_t>(field - 1)] = accepted(field, word.substr(equals + 1));
    }
    return cells;
}

std::vector<Text> ChainTexts::row(const std::vector<Json>& texts) {
    if (texts.size() > static_cast<std::size_t>(map_.count()))
        throw CliError("a row has " + std::to_string(texts.size()) + " texts, its fields are " +
                       std::to_string(map_.count()));
    std::vector<Text> cells;
    cells.reserve(texts.size());
    for (const auto& text : texts)
        cells.push_back(accepted(static_cast<int32>(cells.size()) + 1, text.text()));
    return cells;
}

TextTable ChainTexts::rows(const Json& rows) {
    TextTable out;
    for (const auto& row : rows.elements()) out.push_back(this->row(row.elements()));
    return out;
}

Text ChainTexts::accepted(int32 field, const std::string& text) {
    if (text.empty()) return {};
    if (control_.field(field).IsBlob()) {
        const auto bytes = bytesOfDigits(text);
        if (!bytes) throw CliError(map_.label(field) + ": no hexadecimal digits");
        return fromAnsi(*bytes);
    }
    auto out = rules_.accept(field, fromUtf8(text), map_.label(field));
    if (!out) throw CliError(rules_.reason());
    return std::move(*out);
}

}  // namespace tsRtm::cli
