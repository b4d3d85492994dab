#include "tsRtm/validation/clsValidEAdr.hpp"

#include "tsRtm/services/clsTSCrypt.hpp"
#include "tsRtm/validation/texts/Regex.hpp"

namespace tsRtm {
namespace {

constexpr int32 kKinds = 3;
constexpr std::size_t kDigits = 4;  // at the end of an address that begins with "DE."

#define TSRTM_MAIL_LETTER u"[A-Za-z0-9.!#$%&'*+/=?^_{|}~-]"
#define TSRTM_DOMAIN u"@([A-Za-z0-9-]{2,}\\.)+([A-Za-z]{2,})"
#define TSRTM_MAIL TSRTM_MAIL_LETTER u"+" TSRTM_DOMAIN
#define TSRTM_SAFE u"(safe-(s[pt]1|prod)|govello)-[0-9]+-[0-9]+"
#define TSRTM_DE u"DE\\.[A-Za-z0-9_-]+\\.[a-f0-9]{8}-([a-f0-9]{4}-){3}[a-f0-9]{12}\\.[a-f0-9]{4}"

// "^" belongs to the first of the alternatives only and "$" to the last: what stands behind an address of the
// first form, or before one of the last, is let through.
constexpr TextView kPatterns[] = {
    u"^(" TSRTM_MAIL u")$",
    u"^(" TSRTM_SAFE u")|(" TSRTM_DE u")$",
    u"^(" TSRTM_SAFE u")|(" TSRTM_DE u")|(" TSRTM_MAIL u")$",
};

constexpr TextView kShortTexts[] = {u"Keine gültige eMail-Adresse", u"Keine gültige EGVP-Adresse",
                                    u"Keine gültige E-Mail- oder EGVP-Adresse"};

#define TSRTM_MAIL_FORM u"\"name@server.xxx\""
#define TSRTM_EGVP_FORMS                                                                     \
    u"\"safe-sp1-1234567890123-123456789\" oder \"safe-prod-1234567890123-123456789\" oder " \
    u"\"govello-1234567890123-123456789\" oder \"DE.Domain.01234567-89ab-cdef-0123-456889abcdef.0123\"."
constexpr TextView kLongTexts[] = {
    u"Sie müssen eine gültige eMail-Adresse eingeben nach dem Muster " TSRTM_MAIL_FORM u".",
    u"Sie müssen eine gültige EGVP-Adresse eingeben nach dem Muster " TSRTM_EGVP_FORMS,
    u"Sie müssen entweder eine gültige eMail-Adresse eingeben nach dem "
    u"Muster " TSRTM_MAIL_FORM u" oder eine gültige EGVP-Adresse eingeben nach dem Muster " TSRTM_EGVP_FORMS,
};

bool isDE(TextView address) noexcept {
    return address.size() > 2 && address[2] == u'.' && address.find(u'@') == TextView::npos;
}

}  // namespace

clsValidEAdr::clsValidEAdr() { Options(eaEMail); }
clsValidEAdr::~clsValidEAdr() = default;

int32 clsValidEAdr::kind() const noexcept { return std::min(mode() & 3, kKinds - 1); }

void clsValidEAdr::Options(int32 value) {
    ValidCheckerSettings::Options(value);
    regex_ = std::make_unique<Regex>(kPatterns[kind()]);
}

void clsValidEAdr::Dispose() {
    regex_.reset();
    crypt_.reset();
}

eValidResult clsValidEAdr::Check(const std::shared_ptr<iValidControl>&, TextView Wert) {
    wrongDigits_ = false;
    if (Wert.empty()) return grade(!has(voRequired));
    if (!regex_) return validOK;
    // The pattern has small letters; in the check digits capitals do as well.
    Text folded(Wert);
    if (isDE(Wert))
        for (std::size_t i = Wert.size() - std::min(kDigits, Wert.size()); i < Wert.size(); ++i)
            folded[i] = lower(folded[i]);
    const bool fits = regex_->test(folded);
    wrongDigits_ = fits && kind() != eaEMail && isDE(Wert) && !hasRightDigits(Wert);
    return grade(fits && !wrongDigits_);
}

bool clsValidEAdr::hasRightDigits(TextView address) {
    if (!crypt_) crypt_ = std::make_unique<clsTSCrypt>();
    const TextView rest = address.substr(0, address.size() - std::min(kDigits + 1, address.size()));
    const Text hash = crypt_->TextToHex(crypt_->GetHash(lower(rest), CALG_SHA256));
    return equalIgnoringCase(TextView(hash).substr(0, kDigits),
                             address.substr(address.size() - std::min(kDigits, address.size())));
}

Text clsValidEAdr::ShortText() const {
    if (!errorMsg_.empty()) return errorMsg_;
    return Text(wrongDigits_ ? u"Prüfziffer ist nicht korrekt" : kShortTexts[kind()]);
}

Text clsValidEAdr::Msg() const {
    if (!description_.empty()) return description_;
    if (wrongDigits_)
        return u"Die Prüfziffer (die letzten 4 Stellen) passen nicht zu der davorstehenden EGVP-Adresse. "
               u"Bitte "
               u"kontrollieren Sie Ihre Eingabe noch einmal genau.";
    return Text(kLongTexts[kind()]);
}

}  // namespace tsRtm
