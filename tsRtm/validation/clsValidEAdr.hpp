#pragma once
// Addresses of e-mail, and of the electronic mailboxes of courts and administrations (EGVP).
#include "tsRtm/validation/ValidCheckerBase.hpp"

namespace tsRtm {

class Regex;
class clsTSCrypt;

// The mode is in the low two bits of the options, eaEMail at first; 3 is taken as eaEMailOrEGVP. EGVP
// addresses come in an older form ("safe-sp1-...", "govello-...") and in one that begins with "DE." and ends
// with four check digits, which are tested.
class clsValidEAdr final : public ValidCheckerBase {
 public:
    clsValidEAdr();
    ~clsValidEAdr() override;

    using ValidCheckerSettings::Options;
    void Options(int32 value) override;

    void Dispose() override;
    eValidResult Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) override;
    Text Msg() const override;

 private:
    Text ShortText() const override;
    int32 kind() const noexcept;
    bool hasRightDigits(TextView address);

    std::unique_ptr<Regex> regex_;
    std::unique_ptr<clsTSCrypt> crypt_;  // made at first need
    bool wrongDigits_ = false;
};

}  // namespace tsRtm
