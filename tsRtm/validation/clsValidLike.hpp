#pragma once
// Texts that fit a pattern.
#include "tsRtm/validation/ValidCheckerBase.hpp"

namespace tsRtm {

class Regex;

// In mode loLike the whole value must be like a pattern with wildcards ("?", "*", "#", "[...]", "[!...]"),
// without regard to case. In every other mode a regular expression must fit somewhere in it (ECMAScript 3;
// "^" and "$" are the ends of the whole value), with loIgnoreCase without regard to case. A pattern that is
// none fits nothing, and neither does one that takes more than some milliseconds to decide.
class clsValidLike final : public ValidCheckerBase {
 public:
    clsValidLike();
    ~clsValidLike() override;

    const Text& Pattern() const noexcept { return pattern_; }
    void Pattern(TextView value);
    using ValidCheckerSettings::Options;
    void Options(int32 value) override;

    void Dispose() override;
    eValidResult Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) override;
    Text Msg() const override;

 private:
    Text ShortText() const override;

    Text pattern_;
    std::unique_ptr<Regex> regex_;  // none: to be made
};

}  // namespace tsRtm
