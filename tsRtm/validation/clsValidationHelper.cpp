#include "tsRtm/validation/clsValidationHelper.hpp"

#include <algorithm>

#include "tsRtm/validation/clsValidBanking.hpp"
#include "tsRtm/validation/clsValidDate.hpp"
#include "tsRtm/validation/clsValidEAdr.hpp"
#include "tsRtm/validation/clsValidLike.hpp"
#include "tsRtm/validation/clsValidValue.hpp"
#include "tsRtm/validation/texts/OptionScan.hpp"
#include "tsRtm/validation/texts/Quietly.hpp"

namespace tsRtm {
namespace {

constexpr int32 kDatePadding = 240;  // twips: a button for the calendar stands there
constexpr int32 kAddressMode = 3;    // the low two bits

constexpr TextView kPlacePattern = u"^([A-Z]{0,3}[ -])?[0-9]{3,5} .+$";
constexpr TextView kNoPlace = u"Keine gültige Ortsangabe";
constexpr TextView kPlaceForm =
    u"Sie müssen eine gültige Kombination aus Länderkennung, Postleitzahl und Ortsname eingeben. Für "
    u"Deutschland "
    u"genügt die Postleitzahl und der Ort, sonst bitte nach dem Muster \"LK-12345 Ort\".";

// Fits texts of one character only; longer ones have always been refused.
constexpr TextView kPaymentPattern = u"^[A-Z0-9 .,/+-]$";
constexpr TextView kNoPaymentText = u"Eingabe enthält ungültige Zeichen";
constexpr TextView kPaymentForm =
    u"Text darf nur Großbuchstaben A-Z, Ziffern und die Zeichen \".\", \",\", \"+\", \"-\", \"/\" sowie "
    u"Leerzeichen "
    u"enthalten.";

struct Wishes {
    int32 options;
    Text errorMsg, description;
    TextView params;
};

template <class Checker>
std::shared_ptr<iValidChecker> finished(const std::shared_ptr<Checker>& checker, const Wishes& wishes,
                                        int32 options) {
    checker->Options(checker->Options() | options);
    checker->Description(wishes.description);
    checker->ErrorMsg(wishes.errorMsg);
    return checker;
}

std::shared_ptr<iValidChecker> like(TextView pattern, const Wishes& wishes) {
    auto checker = std::make_shared<clsValidLike>();
    checker->Pattern(pattern);
    return finished(checker, wishes, wishes.options);
}

// With texts that a caller's empty ones give way to.
std::shared_ptr<iValidChecker> like(TextView pattern, Wishes wishes, TextView errorMsg,
                                    TextView description) {
    if (wishes.errorMsg.empty()) wishes.errorMsg = errorMsg;
    if (wishes.description.empty()) wishes.description = description;
    return like(pattern, wishes);
}

std::shared_ptr<iValidChecker> number(const Wishes& wishes) {
    auto checker = std::make_shared<clsValidValue>();
    if (const auto least = optionValue(wishes.params, u"Min"))
        checker->Minimum(clsValidValue::NumberOf(*least));
    if (const auto most = optionValue(wishes.params, u"Max"))
        checker->Maximum(clsValidValue::NumberOf(*most));
    return finished(checker, wishes, wishes.options);
}

std::shared_ptr<iValidChecker> date(const Wishes& wishes) {
    auto checker = std::make_shared<clsValidDate>();
    checker->Minimum(optionValue(wishes.params, u"Min").value_or(Text()));
    checker->Maximum(optionValue(wishes.params, u"Max").value_or(Text()));
    return finished(checker, wishes, wishes.options);
}

std::shared_ptr<iValidChecker> banking(eValidBankingOptions mode, const Wishes& wishes) {
    return finished(std::make_shared<clsValidBanking>(), wishes, wishes.options | mode);
}

std::shared_ptr<iValidChecker> address(eValidEAdrOptions mode, const Wishes& wishes) {
    return finished(std::make_shared<clsValidEAdr>(), wishes, (wishes.options & ~kAddressMode) | mode);
}

std::shared_ptr<iValidChecker> make(eValidatorType type, const Wishes& wishes) {
    switch (type) {
        case Numeric:
            return number(wishes);
        case IsLike:
            return like(optionValue(wishes.params, u"Pattern").value_or(Text()), wishes);
        case PLZundOrt:
            return like(kPlacePattern, wishes, kNoPlace, kPlaceForm);
        case Datum:
            return date(wishes);
        case BLZ:
            return banking(btBLZDE, wishes);
        case BLZBIC:
            return banking(btBLZBIC, wishes);
        case IBAN:
            return banking(btIBAN, wishes);
        case Konto:
            return banking(btKontoDE, wishes);
        case KontoOrIBAN:
            return banking(btKontoOrIBAN, wishes);
        case LikeEMail:
            return address(eaEMail, wishes);
        case BIC:
            return banking(btBIC, wishes);
        case DTAUSText:
            return like(kPaymentPattern, wishes, kNoPaymentText, kPaymentForm);
        case LikeEGVP:
            return address(eaEGVP, wishes);
        case LikeEMailOrEGVP:
            return address(eaEMailOrEGVP, wishes);
    }
    return nullptr;
}

}  // namespace

clsValidationHelper::~clsValidationHelper() { Clear(); }

std::shared_ptr<clsValidator> clsValidationHelper::Add(const std::shared_ptr<Object>& Frm,
                                                       const std::shared_ptr<iValidControl>& Ctrl,
                                                       eValidatorType Typ, int32 Options, TextView ErrorMsg,
                                                       TextView Description, TextView Params,
                                                       const std::shared_ptr<iValidChecker>& ValidChecker) {
    auto checker = ValidChecker;
    if (!checker)
        checker = quietly([&] { return make(Typ, {Options, Text(ErrorMsg), Text(Description), Params}); });
    auto validator = clsValidator::Bind(Frm, Ctrl, checker);
    if (!validator) return nullptr;
    if (Typ == Datum && !ValidChecker) validator->Padding(kDatePadding);
    // The picture of the validator before has the same key: it goes first.
    if (const auto before = find(Ctrl)) {
        before->End();
        std::erase_if(entries_, [&](const Entry& entry) { return entry.validator == before; });
    }
    entries_.push_back({clsValidator::KeyOf(Ctrl), validator});
    validator->Check();
    return validator;
}

void clsValidationHelper::Clear() {
    // Whoever hears of a picture that goes may call in here.
    const auto entries = std::exchange(entries_, {});
    for (const auto& entry : entries) entry.validator->End();
}

void clsValidationHelper::Resize() {
    const auto entries = entries_;
    for (const auto& entry : entries) entry.validator->Refresh();
}

std::shared_ptr<clsValidator> clsValidationHelper::find(const std::shared_ptr<iValidControl>& Ctrl) const {
    if (!Ctrl) return nullptr;
    const Text key = clsValidator::KeyOf(Ctrl);
    for (const auto& entry : entries_)
        if (equalIgnoringCase(entry.key, key)) return entry.validator;
    return nullptr;
}

eValidResult clsValidationHelper::Status(const std::shared_ptr<iValidControl>& Ctrl) const {
    if (Ctrl) {
        const auto validator = find(Ctrl);
        return validator ? validator->Status() : validOK;
    }
    eValidResult worst = validOK;
    for (const auto& entry : entries_) worst = std::max(worst, entry.validator->Status());
    return worst;
}

void clsValidationHelper::Check(const std::shared_ptr<iValidControl>& Ctrl) {
    if (const auto validator = find(Ctrl)) validator->Check();
}

}  // namespace tsRtm
