#pragma once
#include <functional>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::cli {

// Formatted text with fields in braces, "{NAME}". Word processors write formats between the letters of one
// word; these stay where they are.
class LetterTemplate {
 public:
    // `known` says whether a name is that of a field; braces around others stay as they are.
    LetterTemplate(TextView rtf, const std::function<bool(TextView name)>& known);

    // The names that it has, in their order.
    const std::vector<Text>& names() const noexcept { return names_; }
    // The text with a value for each name.
    Text filled(const std::function<Text(TextView name)>& value) const;

 private:
    std::vector<Text> pieces_;  // one more than names
    std::vector<Text> names_;
};

}  // namespace tsRtm::cli
