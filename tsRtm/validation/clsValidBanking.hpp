#pragma once
// Bank codes, account numbers, IBANs and BICs.
#include "tsRtm/validation/ValidCheckerBase.hpp"

namespace tsRtm {

// The mode is one of eValidBankingOptions; 0 and 7 let only empty values through. A German bank must be in
// the register of banks, where there is one (iBankRegister); without it the form decides.
//
// There is one field for messages: what a caller sets as ErrorMsg is gone after the first check.
class clsValidBanking final : public ValidCheckerBase {
 public:
    // Length and check digits of an IBAN as it stands, without blanks and in capitals, of one of 34
    // countries. ErrorMsg tells why it is none, and is empty where it is one.
    bool CheckIBAN(TextView IBAN);
    // The two check digits that belong to an IBAN, as a number. NurZiffern tells whether its part behind them
    // has only digits.
    static int32 PZIBAN(TextView IBAN, bool& NurZiffern) noexcept;

    eValidResult Check(const std::shared_ptr<iValidControl>& Ctrl, TextView Wert) override;
    Text Msg() const override;

 private:
    enum class Fault { none, form, unknownBank };

    Text ShortText() const override;
    bool passes(TextView value);
    bool passesAccount(TextView value, int32 mode);
    bool passesCode(TextView value);
    bool passesBIC(TextView value);

    Fault fault_ = Fault::none;
};

}  // namespace tsRtm
