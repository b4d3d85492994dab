#pragma once
// What the built-in checkers have in common.
#include "tsRtm/validation/iValidChecker.hpp"

namespace tsRtm {

// Both interfaces have an ErrorMsg: that of iValidChecker is what is wrong with the last value, that of
// iValidStd is what the caller has set. These two classes keep them apart.
class ValidCheckerTexts : public iValidChecker {
 public:
    Text ErrorMsg() const final { return ShortText(); }

 private:
    virtual Text ShortText() const = 0;
};

class ValidCheckerSettings : public iValidStd {
 public:
    int32 Options() const final { return options_; }
    void Options(int32 value) override { options_ = value; }
    Text ErrorMsg() const final { return errorMsg_; }
    void ErrorMsg(TextView value) final { errorMsg_ = value; }
    Text Description() const final { return description_; }
    void Description(TextView value) final { description_ = value; }

 protected:
    int32 mode() const noexcept { return options_ & voMode; }
    bool has(int32 flag) const noexcept { return (options_ & flag) != 0; }
    // The grade of what has passed or failed, by a flag of the options.
    eValidResult grade(bool passed, int32 errorFlag = voError) const noexcept {
        return passed ? validOK : has(errorFlag) ? validError : validWarning;
    }

    Text errorMsg_;
    Text description_;

 private:
    int32 options_ = 0;
};

// By name ErrorMsg is the one that is set; the other is asked through iValidChecker.
class ValidCheckerBase : public ValidCheckerTexts, public ValidCheckerSettings {
 public:
    using ValidCheckerSettings::ErrorMsg;
    void Dispose() override {}
};

}  // namespace tsRtm
