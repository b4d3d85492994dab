#include "tsRtm/banking/DtaAuftrag.hpp"

#include "tsRtm/banking/payments/OrderRecord.hpp"

namespace tsRtm {

using namespace payments;

DtaAuftrag::DtaAuftrag() : record_(std::make_unique<OrderRecord>()) {}
DtaAuftrag::~DtaAuftrag() = default;

Text DtaAuftrag::BIC() const { return record_->values.text(oBIC); }
void DtaAuftrag::BIC(TextView value) { record_->bic(value); }
Text DtaAuftrag::Name1() const { return record_->values.text(oName1); }
void DtaAuftrag::Name1(TextView value) { record_->values.set(oName1, value); }
Text DtaAuftrag::Name2() const { return record_->values.text(oName2); }
void DtaAuftrag::Name2(TextView value) { record_->values.set(oName2, value); }
Text DtaAuftrag::Strasse() const { return record_->values.text(oStrasse); }
void DtaAuftrag::Strasse(TextView value) { record_->values.set(oStrasse, value); }
Text DtaAuftrag::PLZOrt() const { return record_->values.text(oPLZOrt); }
void DtaAuftrag::PLZOrt(TextView value) { record_->values.set(oPLZOrt, value); }
Text DtaAuftrag::IBAN() const { return record_->iban(); }
void DtaAuftrag::IBAN(TextView value) { record_->iban(value); }
float64 DtaAuftrag::Betrag() const { return record_->amount(); }
void DtaAuftrag::Betrag(float64 value) { record_->amount(value); }
Text DtaAuftrag::Verwendungszweck1() const { return record_->values.text(oVerwendungszweck1); }
void DtaAuftrag::Verwendungszweck1(TextView value) { record_->values.set(oVerwendungszweck1, value); }
Text DtaAuftrag::Verwendungszweck2() const { return record_->values.text(oVerwendungszweck2); }
void DtaAuftrag::Verwendungszweck2(TextView value) { record_->values.set(oVerwendungszweck2, value); }
Text DtaAuftrag::Verwendungszweck3() const { return record_->values.text(oVerwendungszweck3); }
void DtaAuftrag::Verwendungszweck3(TextView value) { record_->values.set(oVerwendungszweck3, value); }
Text DtaAuftrag::Verwendungszweck4() const { return record_->values.text(oVerwendungszweck4); }
void DtaAuftrag::Verwendungszweck4(TextView value) { record_->values.set(oVerwendungszweck4, value); }
Text DtaAuftrag::VariableText() const { return record_->values.text(oVariableText); }
void DtaAuftrag::VariableText(TextView value) { record_->values.set(oVariableText, value); }

Text DtaAuftrag::Errors() { return record_->errors(); }

}  // namespace tsRtm
