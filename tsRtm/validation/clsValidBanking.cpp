#include "tsRtm/validation/clsValidBanking.hpp"

#include "tsRtm/banking/checks/CheckDigits.hpp"
#include "tsRtm/banking/checks/Countries.hpp"
#include "tsRtm/frame/state/Plugged.hpp"
#include "tsRtm/validation/iBankRegister.hpp"
#include "tsRtm/validation/texts/Quietly.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kHead = 4;  // country and check digits of an IBAN
constexpr std::size_t kCode = 8;  // digits of a bank code
constexpr std::size_t kMostAccount = 10;
constexpr std::size_t kShortBIC = 8, kLongBIC = 11;

constexpr TextView kAccounts =
    u"In Deutschland bestehen Kontonummern aus maximal 10 Ziffern ohne eingefügte Leerstellen.\r";
constexpr TextView kIBANs =
    u"Eine IBAN beginnt mit 2 Buchstaben für das Land, dann zwei Stellen Prüfzahl und danach länderabhängig "
    u"die "
    u"Information zu Bank und Kontonummer. In Deutschland folgen nach der Prüfzahl die 8 Ziffern der "
    u"Bankleitzahl "
    u"und danach 10 Ziffern für die Kontonummer mit führenden Nullen. Bei der Deutschen Bank muss beim "
    u"normalen "
    u"Giro-Konto die Unterkontonummer 00 angehängt werden!";
constexpr TextView kCodes =
    u"In Deutschland bestehen Bankleitzahlen aus genau 8 Ziffern, wobei die erste Ziffer nicht 0 und nicht 9 "
    u"sein "
    u"kann.\rDie ersten 3 Ziffern stehen für den Clearing-Bezirk, die vierte Ziffer kennzeichnen den "
    u"Bankenverband "
    u"(z.B. 7 für Deutsche Bank). Die fünfte und sechste Ziffer unterscheidet innerhalb des Verbandes "
    u"weiter. Die "
    u"letzten beiden Ziffern werden zur Kennzeichnung von Filialen etc. genutzt.";
constexpr TextView kBICs =
    u"Der BIC (Bank Interchange Code) bzw. die SWIFT-Adresse einer Bank ist 8 oder 11 Zeichen lang und "
    u"beginnt mit "
    u"4 Buchstaben, die die Bank kennzeichnen. Danach folgt mit 2 Buchstaben die Länderkodierung sowie "
    u"weitere 2 "
    u"oder 5 alphanumerische Zeichen, die den Ort und die Filiale oder ähnliche Merkmale enthält.";

constexpr TextView kUnknownBank = u"Die Bank zu dieser IBAN wurde nicht gefunden.";

bool startsWithDigit(TextView text) noexcept {
    return !text.empty() && text.front() >= u'0' && text.front() <= u'9';
}

// The register where it can be asked, else nothing. What it throws counts as not being there.
iBankRegister* openRegister() {
    auto* banks = dynamic_cast<iBankRegister*>(rtmMain::plugged().bankRegister.get());
    return banks && quietly([&] { return banks->IsOpen(); }) ? banks : nullptr;
}
bool hasName(iBankRegister& banks, TextView key) {
    return !quietly([&] { return banks.Name(key); }).empty();
}

}  // namespace

int32 clsValidBanking::PZIBAN(TextView IBAN, bool& NurZiffern) noexcept {
    const auto wanted = checkDigits::of(IBAN);
    NurZiffern = wanted.onlyDigits;
    return wanted.number;
}

bool clsValidBanking::CheckIBAN(TextView IBAN) {
    errorMsg_.clear();
    if (IBAN.size() <= kHead) {
        errorMsg_ =
            u"Eine IBAN muss mindestens des Ländercode, die Prüfziffern und die Kontodaten enthalten.";
        return false;
    }
    const TextView country = IBAN.substr(0, 2);
    const auto format = countries::checked(country);
    if (!format) {
        errorMsg_ = u"Mit dem Ländercode " + Text(country) + u" ist kein SEPA-Zahlungsverkehr möglich.";
        return false;
    }
    if (static_cast<int64>(IBAN.size()) != format->length) {
        errorMsg_ = u"Beim Ländercode " + Text(country) + u" muss die IBAN " + toText(format->length) +
                    u" Stellen lang sein.";
        return false;
    }
    const auto wanted = checkDigits::of(IBAN);
    if (!checkDigits::fit(IBAN, wanted)) {
        errorMsg_ = u"Die Prüfziffern passen nicht zur IBAN, \"" + checkDigits::twoDigits(wanted.number) +
                    u"\" wären die passenden Prüfziffern.";
        return false;
    }
    if (format->onlyDigits && !wanted.onlyDigits) {
        errorMsg_ =
            u"Beim Ländercode " + Text(country) + u" besteht die IBAN nach dem Ländercode nur aus Ziffern.";
        return false;
    }
    return true;
}

eValidResult clsValidBanking::Check(const std::shared_ptr<iValidControl>&, TextView Wert) {
    errorMsg_.clear();
    fault_ = Fault::none;
    return grade((Wert.empty() && !has(voRequired)) || passes(Wert));
}

bool clsValidBanking::passes(TextView value) {
    switch (mode()) {
        case btKontoDE:
        case btIBAN:
        case btKontoOrIBAN:
            return passesAccount(value, mode());
        case btBLZDE:
            return passesCode(value);
        case btBIC:
            return !startsWithDigit(value) && passesBIC(value);
        case btBLZBIC:
            return startsWithDigit(value) ? passesCode(value) : passesBIC(value);
        default:
            return false;
    }
}

bool clsValidBanking::passesAccount(TextView value, int32 mode) {
    if (startsWithDigit(value)) return mode != btIBAN && value.size() <= kMostAccount && IstZiffern(value);
    if (mode == btKontoDE || !CheckIBAN(value)) return false;
    if (!value.starts_with(u"DE")) return true;
    auto* banks = openRegister();
    if (!banks || hasName(*banks, value.substr(kHead, kCode))) return true;
    fault_ = Fault::unknownBank;
    errorMsg_ = kUnknownBank;
    return false;
}

bool clsValidBanking::passesCode(TextView value) {
    if (value.size() != kCode || !IstZiffern(value) || value.front() < u'1' || value.front() > u'8') {
        fault_ = Fault::form;
        return false;
    }
    auto* banks = openRegister();
    if (banks && !hasName(*banks, value)) fault_ = Fault::unknownBank;
    return fault_ == Fault::none;
}

bool clsValidBanking::passesBIC(TextView value) {
    if (value.size() != kShortBIC && value.size() != kLongBIC) {
        fault_ = Fault::form;
        return false;
    }
    if (value.substr(4, 2) != u"DE") return true;
    auto* banks = openRegister();
    const Text key = Text(value) + (value.size() == kShortBIC ? u"XXX" : u"");
    if (banks && !quietly([&] { return banks->HasRecord(key); })) fault_ = Fault::unknownBank;
    return fault_ == Fault::none;
}

Text clsValidBanking::ShortText() const {
    if (!errorMsg_.empty()) return errorMsg_;
    const bool unknown = fault_ == Fault::unknownBank;
    switch (mode()) {
        case btKontoDE:
            return u"Sie haben keine gültige Kontonummer eingegeben.";
        case btBLZDE:
            return unknown ? u"Die Bankleitzahl wurde nicht gefunden."
                           : u"Sie haben keine gültige Bankleitzahl eingegeben.";
        case btIBAN:
            return unknown ? Text(kUnknownBank) : u"Sie haben keine gültige IBAN eingegeben.";
        case btBIC:
        case btBLZBIC:  // also of a bank code
            return u"Sie haben keinen gültigen BIC eingegeben.";
        case btKontoOrIBAN:
            return u"Sie haben keine gültige Kontonummer bzw. IBAN eingegeben.";
        default:
            return {};
    }
}

Text clsValidBanking::Msg() const {
    if (!description_.empty()) return description_;
    switch (mode()) {
        case btKontoDE:
            return Text(kAccounts);
        case btBLZDE:
            return fault_ == Fault::unknownBank ? Text() : Text(kCodes);
        case btIBAN:
            return Text(kIBANs);
        case btBIC:
        case btBLZBIC:
            return Text(kBICs);
        case btKontoOrIBAN:
            return Text(kAccounts).append(kIBANs);
        default:
            return {};
    }
}

}  // namespace tsRtm
