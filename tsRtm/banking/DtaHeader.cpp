#include "tsRtm/banking/DtaHeader.hpp"

#include "tsRtm/banking/payments/EndRecords.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {

using namespace payments;

DtaHeader::DtaHeader() : record_(std::make_unique<HeaderRecord>(rtmMain::system().clock.now())) {}
DtaHeader::~DtaHeader() = default;

Text DtaHeader::BLZ() const { return record_->values.text(hBLZ); }
void DtaHeader::BLZ(TextView value) { record_->values.set(hBLZ, value); }
Text DtaHeader::Kontonummer() const { return record_->values.text(hKontonummer); }
void DtaHeader::Kontonummer(TextView value) { record_->values.set(hKontonummer, value); }
Text DtaHeader::Name1() const { return record_->values.text(hName1); }
void DtaHeader::Name1(TextView value) { record_->values.set(hName1, value); }
Text DtaHeader::Name2() const { return record_->values.text(hName2); }
void DtaHeader::Name2(TextView value) { record_->values.set(hName2, value); }
Text DtaHeader::Strasse() const { return record_->values.text(hStrasse); }
void DtaHeader::Strasse(TextView value) { record_->values.set(hStrasse, value); }
Text DtaHeader::PLZOrt() const { return record_->values.text(hPLZOrt); }
void DtaHeader::PLZOrt(TextView value) { record_->values.set(hPLZOrt, value); }
Text DtaHeader::ExecutionDate() const { return record_->values.text(hExecutionDate); }
void DtaHeader::ExecutionDate(TextView value) { record_->values.set(hExecutionDate, value); }

DtaFooter::DtaFooter() : record_(std::make_unique<FooterRecord>()) {}
DtaFooter::~DtaFooter() = default;

int32 DtaFooter::TotalBetrag() const { return record_->number(fTotalBetrag); }
void DtaFooter::TotalBetrag(int32 value) { record_->number(fTotalBetrag, value); }
int32 DtaFooter::TotalTransactions() const { return record_->number(fTotalTransactions); }
void DtaFooter::TotalTransactions(int32 value) { record_->number(fTotalTransactions, value); }

}  // namespace tsRtm
