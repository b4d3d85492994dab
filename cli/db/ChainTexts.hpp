#pragma once
// Texts for the rows of a chain, each checked against its field; a blob comes as hexadecimal digits.
#include "cli/shared/Records.hpp"

namespace tsRtm::cli {

// Knows the control by reference. Throws a CliError for what does not fit.
class ChainTexts {
 public:
    explicit ChainTexts(const clsControl& control) : map_(control), rules_(control), control_(control) {}

    // From "NAME=VALUE" words.
    std::vector<Text> row(const std::vector<std::string>& words);
    // From texts by the order of the fields.
    std::vector<Text> row(const std::vector<Json>& texts);
    // The same for whole chains.
    TextTable rows(const Json& rows);

 private:
    Text accepted(int32 field, const std::string& text);

    FieldMap map_;
    FieldRules rules_;
    const clsControl& control_;
};

}  // namespace tsRtm::cli
