#pragma once
// One transfer of a payment file.
#include <memory>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

namespace payments {
class OrderRecord;
}

// An EU standard transfer. Values read as payment files have them: in capitals, without other characters than
// theirs, and as long as they were given; the file cuts them to the width of their field.
class DtaAuftrag {
 public:
    DtaAuftrag();
    ~DtaAuftrag();
    DtaAuftrag(const DtaAuftrag&) = delete;
    DtaAuftrag& operator=(const DtaAuftrag&) = delete;

    // Of the payee's bank, 11 characters; the country is taken from it.
    Text BIC() const;
    void BIC(TextView value);
    // The payee.
    Text Name1() const;
    void Name1(TextView value);
    Text Name2() const;
    void Name2(TextView value);
    Text Strasse() const;
    void Strasse(TextView value);
    Text PLZOrt() const;
    void PLZOrt(TextView value);
    // Without blanks: they stay, and make it too long.
    Text IBAN() const;
    void IBAN(TextView value);
    // Euros, up to 12500.99. Cents below ten are written as tens: 12.05 stands in the file as 12.50 does.
    float64 Betrag() const;
    void Betrag(float64 value);
    // Lines of 35 characters each.
    Text Verwendungszweck1() const;
    void Verwendungszweck1(TextView value);
    Text Verwendungszweck2() const;
    void Verwendungszweck2(TextView value);
    Text Verwendungszweck3() const;
    void Verwendungszweck3(TextView value);
    Text Verwendungszweck4() const;
    void Verwendungszweck4(TextView value);
    // For the orderer's own use, 27 characters.
    Text VariableText() const;
    void VariableText(TextView value);

    // What is wrong, a line each, empty where nothing is. A warning tells that a field has been emptied; a
    // second call does not tell it again.
    Text Errors();

 private:
    friend class DtADatei;
    std::unique_ptr<payments::OrderRecord> record_;
};

}  // namespace tsRtm
