#pragma once
// Whether a text fits a field: what does not fit is refused with a reason, never cut or changed in silence.
#include <optional>
#include <string>

#include "tsRtm/control/clsControl.hpp"

namespace tsRtm::cli {

// Forms that are taken and how they are stored:
//
//   number   "1234", "-12.5", "12,5", "1.234,50": stored with "." and no thousands marks
//   date     "31.12.2024", "2024-12-31", digits in the order of the locale: stored as local digits, or in a
//   field of ten
//            columns with the separators of the locale
//   others   as they are, without blanks at the end
class FieldRules {
 public:
    // The control is that of the structure file and outlives the rules.
    explicit FieldRules(const clsControl& control) : control_(control) {}

    // The text to store, or nothing and the reason in English, which names the field by `label`.
    std::optional<Text> accept(int32 field, TextView value, const std::string& label);
    const std::string& reason() const noexcept { return reason_; }

 private:
    std::nullopt_t refuse(const std::string& label, const std::string& why);
    std::optional<Text> number(const TSIO& field, TextView value, const std::string& label);
    std::optional<Text> date(const TSIO& field, TextView value, const std::string& label);
    bool fits(const TSIO& field, const Text& text, const std::string& label);

    const clsControl& control_;
    std::string reason_;
};

}  // namespace tsRtm::cli
