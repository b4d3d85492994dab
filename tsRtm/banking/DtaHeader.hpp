#pragma once
// The first and the last record of a payment file.
#include <memory>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

namespace payments {
class FooterRecord;
class HeaderRecord;
}  // namespace payments

// Who pays, from which account and when. Values read as payment files have them: in capitals, without other
// characters than theirs.
class DtaHeader {
 public:
    // Made today, to be carried out today.
    DtaHeader();
    ~DtaHeader();
    DtaHeader(const DtaHeader&) = delete;
    DtaHeader& operator=(const DtaHeader&) = delete;

    // Bank code, 8 digits, and account, up to 10.
    Text BLZ() const;
    void BLZ(TextView value);
    Text Kontonummer() const;
    void Kontonummer(TextView value);
    Text Name1() const;
    void Name1(TextView value);
    Text Name2() const;
    void Name2(TextView value);
    Text Strasse() const;
    void Strasse(TextView value);
    Text PLZOrt() const;
    void PLZOrt(TextView value);
    // JJMMTT, today or up to 15 days ahead.
    Text ExecutionDate() const;
    void ExecutionDate(TextView value);

 private:
    friend class DtADatei;
    std::unique_ptr<payments::HeaderRecord> record_;
};

// The totals.
class DtaFooter {
 public:
    DtaFooter();
    ~DtaFooter();
    DtaFooter(const DtaFooter&) = delete;
    DtaFooter& operator=(const DtaFooter&) = delete;

    // Whole euros of all transfers, cents left out of each.
    int32 TotalBetrag() const;
    void TotalBetrag(int32 value);
    int32 TotalTransactions() const;
    void TotalTransactions(int32 value);

 private:
    friend class DtADatei;
    std::unique_ptr<payments::FooterRecord> record_;
};

}  // namespace tsRtm
