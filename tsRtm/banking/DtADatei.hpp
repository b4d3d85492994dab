#pragma once
// A DTAZV payment file: foreign and EU transfers of one orderer, for his bank.
//
//     DtADatei datei;
//     datei.Pfad(u"/srv/bank");
//     datei.Header().BLZ(u"37040044"); ...
//     auto auftrag = datei.Create(BIC, IBAN, 12.5, Name1, Name2, Strasse, PLZOrt, u"Rechnung 17");
//     if (Text falsch = datei.Add(auftrag); !falsch.empty()) show(falsch);
//     if (Text bericht = datei.Generate(); !bericht.empty()) show(bericht);
#include <vector>

#include "tsRtm/banking/DtaAuftrag.hpp"
#include "tsRtm/banking/DtaHeader.hpp"

namespace tsRtm {

enum DTATyp : int32 {
    dtaUeberweisungen = 0,
    dtaLastschriften = 1,
};

enum eDTAFormat : int32 {
    DTAZV = 0,
    SEPA = 1,
};

// For one file. What is wrong with its data comes back as text, a message a line; only what is not supported
// is raised.
class DtADatei {
 public:
    DtADatei();
    DtADatei(const DtADatei&) = delete;
    DtADatei& operator=(const DtADatei&) = delete;

    // Only transfers: raises 380 for anything else.
    DTATyp Typ() const noexcept { return dtaUeberweisungen; }
    void Typ(DTATyp value);
    // Folder of the file, and its name in it; Generate sets "DTAZV" where it is empty.
    const Text& Pfad() const noexcept { return path_; }
    void Pfad(TextView value) { path_ = value; }
    const Text& DateiName() const noexcept { return name_; }
    void DateiName(TextView value) { name_ = value; }
    DtaHeader& Header() noexcept { return header_; }

    // A transfer, not added yet. The purpose is cut into lines of 35 characters, all the rest in the fourth.
    std::shared_ptr<DtaAuftrag> Create(TextView BIC, TextView IBAN, float64 Betrag, TextView Name1,
                                       TextView Name2, TextView Strasse, TextView PLZOrt,
                                       TextView Verwendungszweck) const;
    // Empty where it has been added, else what is wrong with it, warnings too.
    Text Add(const std::shared_ptr<DtaAuftrag>& newTransfer);
    int32 Count() const noexcept { return static_cast<int32>(orders_.size()); }
    // From 1; nothing outside.
    std::shared_ptr<DtaAuftrag> Item(int32 Index) const;
    float64 Summe() const;
    // Of the whole euros, cents left out of each. Raises 6 beyond int32.
    int32 ZSumme() const;

    // Writes the file, also where the report that comes back is full: it is for the caller to judge. An older
    // file is replaced in one step; where something fails it stays as it was. Raises 321 for any format but
    // DTAZV.
    Text Generate(eDTAFormat DateiFormat = DTAZV);

 private:
    Text validate();
    Bytes content();

    Text path_;
    Text name_;
    DtaHeader header_;
    DtaFooter footer_;
    std::vector<std::shared_ptr<DtaAuftrag>> orders_;
};

}  // namespace tsRtm
