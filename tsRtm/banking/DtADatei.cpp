#include "tsRtm/banking/DtADatei.hpp"

#include <cmath>
#include <limits>

#include "tsRtm/banking/payments/EndRecords.hpp"
#include "tsRtm/banking/payments/OrderRecord.hpp"
#include "tsRtm/banking/payments/Reports.hpp"
#include "tsRtm/frame/files/FolderLists.hpp"
#include "tsRtm/frame/files/Paths.hpp"
#include "tsRtm/frame/files/Replace.hpp"

namespace tsRtm {

using payments::Report;

namespace {

constexpr TextView kClass = u"DtADatei";
constexpr int32 kBadValue = 380;
constexpr int32 kNotSupported = 321;
constexpr int32 kOverflow = 6;
constexpr int32 kNoAccess = 75, kNoFolder = 76;
constexpr std::size_t kPurposeLine = 35;

int32 added(int32 sum, float64 amount) {
    const float64 value = std::trunc(amount) + sum;
    if (value > std::numeric_limits<int32>::max() || value < std::numeric_limits<int32>::min())
        payments::raiseNumber(kOverflow, kClass);
    return static_cast<int32>(value);
}

void write(TextView name, BytesView content) {
    if (replaceContent(name, content)) return;
    const Text folder = paths::folder(name);
    payments::raiseNumber(folder.empty() || folderExists(folder) ? kNoAccess : kNoFolder, kClass);
}

}  // namespace

DtADatei::DtADatei() = default;

void DtADatei::Typ(DTATyp value) {
    if (value != dtaUeberweisungen)
        raise(kBadValue, kClass, u"Zur Zeit werden nur Überweisungen unterstützt");
}

std::shared_ptr<DtaAuftrag> DtADatei::Create(TextView BIC, TextView IBAN, float64 Betrag, TextView Name1,
                                             TextView Name2, TextView Strasse, TextView PLZOrt,
                                             TextView Verwendungszweck) const {
    auto order = std::make_shared<DtaAuftrag>();
    order->BIC(BIC);
    order->IBAN(IBAN);
    order->Betrag(Betrag);
    order->Name1(Name1);
    order->Name2(Name2);
    order->Strasse(Strasse);
    order->PLZOrt(PLZOrt);
    // Cut as it comes: what grows when it is normalised falls off in the file.
    const auto from = [&](std::size_t line) {
        return Verwendungszweck.substr(std::min(line * kPurposeLine, Verwendungszweck.size()));
    };
    order->Verwendungszweck1(from(0).substr(0, kPurposeLine));
    if (!from(1).empty()) order->Verwendungszweck2(from(1).substr(0, kPurposeLine));
    if (!from(2).empty()) order->Verwendungszweck3(from(2).substr(0, kPurposeLine));
    if (!from(3).empty()) order->Verwendungszweck4(from(3));
    return order;
}

Text DtADatei::Add(const std::shared_ptr<DtaAuftrag>& newTransfer) {
    if (!newTransfer) return {};
    try {
        Text errors = newTransfer->Errors();
        if (errors.empty()) orders_.push_back(newTransfer);
        return errors;
    } catch (const Failure& failure) {
        return toText(failure.Number()) + u"\r\n" + failure.Description();
    }
}

std::shared_ptr<DtaAuftrag> DtADatei::Item(int32 Index) const {
    return Index >= 1 && Index <= Count() ? orders_[static_cast<std::size_t>(Index - 1)] : nullptr;
}

float64 DtADatei::Summe() const {
    float64 sum = 0;
    for (const auto& order : orders_) sum += order->Betrag();
    return sum;
}

int32 DtADatei::ZSumme() const {
    int32 sum = 0;
    for (const auto& order : orders_) sum = added(sum, order->Betrag());
    return sum;
}

Text DtADatei::validate() {
    Report report;
    if (const Text errors = header_.record_->errors(); !errors.empty()) {
        report.add(u"Bei der Validierung des Headers wurde ein Fehler entdeckt!");
        report.add(errors);
    }
    int32 sum = 0;
    for (int32 number = 1; number <= Count(); ++number) {
        auto& order = *orders_[static_cast<std::size_t>(number - 1)]->record_;
        order.takeFrom(*header_.record_);
        if (const Text errors = order.errors(); !errors.empty()) {
            report.add(u"Bei der Validierung vom GeldTransfer " + toText(number) +
                       u" wurde ein Fehler entdeckt!");
            report.add(errors);
        }
        sum = added(sum, order.amount());
    }
    footer_.TotalBetrag(sum);
    footer_.TotalTransactions(Count());
    if (const Text errors = footer_.record_->errors(); !errors.empty()) {
        report.add(u"Bei der Validierung vom Footer wurde ein Fehler entdeckt!");
        report.add(errors);
    }
    return report.text();
}

Bytes DtADatei::content() {
    Bytes file;
    file.reserve(2 * payments::kEndRecord + payments::kOrderRecord * orders_.size());
    header_.record_->append(file);
    for (const auto& order : orders_) order->record_->append(file);
    footer_.record_->append(file);
    return file;
}

Text DtADatei::Generate(eDTAFormat DateiFormat) {
    const auto other = [](const Failure& failure) { return u"Sonstiger Fehler:" + failure.Description(); };
    Report report;
    // It stays set, also where the format is then refused.
    if (trim(name_).empty()) name_ = DateiFormat == DTAZV ? u"DTAZV" : u"SEPA.xml";
    try {
        if (path_.empty()) report.add(u"Bitte vorher den Pfad festlegen.");
        if (const Text errors = validate(); !errors.empty()) report.add(errors);
    } catch (const Failure& failure) {
        return other(failure);
    }
    if (DateiFormat == SEPA) raise(kNotSupported, kClass, u"Das Format SEPA wird noch nicht unterstützt");
    if (DateiFormat != DTAZV)
        raise(kNotSupported, kClass, u"Das Format " + toText(DateiFormat) + u" wird nicht unterstützt");
    try {
        const Bytes file = content();
        if (file.find("FEHLER") != Bytes::npos) report.add(u"Im Ergebnistext wurden Fehler entdeckt!");
        write(paths::join({Variant(path_), Variant(name_)}), file);
    } catch (const Failure& failure) {
        return other(failure);
    }
    return report.text();
}

}  // namespace tsRtm
