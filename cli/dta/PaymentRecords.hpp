#pragma once
// A DTAZV file as it lies on the disk, record by record.
#include <string>
#include <vector>

#include "tsRtm/banking/payments/RecordLayout.hpp"

namespace tsRtm::cli {

// The field of a record, without the blanks behind it.
std::string fieldOf(BytesView record, const payments::FieldRow& row);

struct PaymentRecords {
    std::string header;
    std::vector<std::string> orders;
    std::string footer;
};
// Throws a CliError for a file that is no DTAZV file, and says where it is none.
PaymentRecords readPayments(const std::string& name);

// Whole euros and the three digits behind them, as they stand: "12.500" is what the bank reads of 12.05, too.
std::string amountOf(BytesView order);
int64 wholeEuros(BytesView order);
// "31.12.2024" of "241231".
std::string dateOf(BytesView yearMonthDay);

}  // namespace tsRtm::cli
