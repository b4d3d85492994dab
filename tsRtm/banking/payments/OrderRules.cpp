// What each kind of payment demands of a transfer.
#include "tsRtm/banking/checks/CheckDigits.hpp"
#include "tsRtm/banking/checks/Countries.hpp"
#include "tsRtm/banking/payments/OrderRecord.hpp"
#include "tsRtm/banking/payments/Reports.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::payments {
namespace {

constexpr int32 kMostEuros = 12500;
constexpr std::size_t kLongBIC = 11;
constexpr std::size_t kBankCode = 8;
constexpr BytesView kEUETransfer = "11";
constexpr BytesView kEUStandard = "13";

// Fields that a kind of payment must not have: emptied, and told of where there was something in them.
struct Forbidden {
    std::size_t field;
    TextView warning;
};
constexpr Forbidden kNotInEUE[] = {
    {oBankLaenderCode,
     u"Warnung: Bei einer EUE-Ueberweisung darf das Feld BankLaenderCode nicht belegt werden!"},
    {oOrdervermerk, u"Warnung: Bei einer EUE-Ueberweisung darf das Feld Ordervermerk nicht belegt werden!"},
};
constexpr Forbidden kNotInEUStandard[] = {
    {oBLZE, u"Warnung: Bei einer EU-Standardüberweisung darf das Feld BLZ_E nicht belegt werden!"},
    {oKontonummerE,
     u"Warnung: Bei einer EU-Standardüberweisung darf das Feld Kontonummer_E nicht belegt werden!"},
    {oBankLaenderCode,
     u"Warnung: Bei einer EU-Standardüberweisung darf das Feld BankLaenderCode nicht belegt werden!"},
    {oOrdervermerk,
     u"Warnung: Bei einer EU-Standardüberweisung darf das Feld Ordervermerk nicht belegt werden!"},
};

class Rules {
 public:
    Rules(OrderRecord& order, Report& report) : order_(order), values_(order.values), report_(report) {}

    void check() {
        // By whole euros: 12500.99 is let through, and so is what is below nothing.
        if (Val(values_.text(oBetragVor)) > kMostEuros)
            report_.add(u"Fehler: Betrag darf nicht groesser als 12.500EUR sein!");
        country();
        if (values_[oZahlungsart] == kEUETransfer)
            eueTransfer();
        else if (values_[oZahlungsart] == kEUStandard)
            euStandard();
        else
            general();
    }

 private:
    Text bicCountry() const {
        const BytesView bic = values_[oBIC];
        return textOf(bic.substr(std::min<std::size_t>(4, bic.size()), 2));
    }

    void country() {
        const Text code = values_.text(oLaenderCode);
        if (!countries::inEU(code))
            report_.add(u"Fehler: Unbekannter LaenderCode!");
        else if (values_[oZahlungsart] == kEUStandard && !countries::inEU(code))  // never: it has been found
            report_.add(u"Fehler: EU-Standardüberweisung für dieses Land nicht erlaubt");
        if (bicCountry() != code)
            report_.add(u"Fehler: Angegebener Laendercode und Laendercode im BIC stimmen nicht überein!");
    }

    void eueTransfer() {
        if (values_[oBIC].size() != kLongBIC)
            report_.add(u"Fehler: EUE-Ueberweisung verlangt eine 11-stellige BIC!");
        iban();
        empty(kNotInEUE);
        values_.clear(oBankName1);
    }

    void euStandard() {
        if (values_[oBIC].size() != kLongBIC)
            report_.add(u"Fehler: EU-Standardueberweisung verlangt eine 11-stellige BIC!");
        const auto& locale = rtmMain::state().locale;
        const Text code = bicCountry();
        if (IstNumerisch(code, locale.sepDec, locale.sep1000))
            report_.add(u"Fehler: BIC muss an den Stellen 5-6 einen ISO-Ländercode haben!");
        else if (!countries::inEU(code))
            report_.add(u"Fehler: EU-Standardüberweisung für das im BIC angegebene Land nicht erlaubt!");
        iban();
        if (values_.fileForm(oEntgeltregelung) != "00")
            report_.add(u"Fehler: EU-Standardüberweisung verlangt den Wert 00 im Feld Entgeltregelung!");
        empty(kNotInEUStandard);
        // So the currency of the payee's account is blank in the file.
        for (const std::size_t field : {oISOCodeE, oBankName1, oMeldeteil}) values_.clear(field);
    }

    void general() {
        if (values_[oBIC].size() == kBankCode)
            values_.put(oBIC, Bytes(values_[oBIC]) + "///");
        else if (values_[oBIC].size() != kLongBIC)
            report_.add(
                u"Fehler: allgemeine Zahlung verlangt eine 11-stellige BIC oder eine 8-stellige BLZ!");
        const BytesView code = values_[oBankLaenderCode];
        if (code.size() < 3 || code[2] != ' ')
            report_.add(u"Fehler: Die dritte Stelle des BankLaenderCodes muss ein Leerzeichen sein!");
    }

    void iban() {
        if (!values_[oIBAN].starts_with('/')) return report_.add(u"Fehler: IBAN muss mit / beginnen!");
        const Text value = order_.iban();
        const Text code = value.substr(0, 2);
        const auto length = countries::inEU(code) ? countries::paymentLength(code) : std::nullopt;
        if (!length || *length < 1)
            return report_.add(u"Fehler: \"" + code + u"\" ist kein gültiger Ländercode!");
        if (static_cast<int64>(value.size()) != *length)
            return report_.add(u"Fehler: Für \"" + code + u"\" muss die IBAN " + toText(*length) +
                               u" Stellen lang sein!");
        if (value.size() <= 4 || !checkDigits::fit(value))
            report_.add(u"Fehler: Die Prüfziffern " +
                        value.substr(std::min<std::size_t>(2, value.size()), 2) + u" stimmen nicht!");
    }

    void empty(std::span<const Forbidden> fields) {
        for (const auto& [field, warning] : fields) {
            if (values_[field].empty()) continue;
            report_.add(warning);
            values_.clear(field);
        }
    }

    OrderRecord& order_;
    FieldValues& values_;
    Report& report_;
};

}  // namespace

Text OrderRecord::errors() {
    return checked([this](Report& report) { Rules(*this, report).check(); });
}

}  // namespace tsRtm::payments
