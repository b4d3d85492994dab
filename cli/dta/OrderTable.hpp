#pragma once
// Transfers and their orderer in CSV files, and what of them would be lost or changed in a payment file.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/shared/CsvTable.hpp"
#include "tsRtm/banking/DtADatei.hpp"

namespace tsRtm::cli {

// What is to be said of a line. A refusal keeps the orders from being written, unless they are wanted as they
// are.
struct Remark {
    std::string text;
    bool refusal = false;
};
using Remarks = std::vector<Remark>;

// Columns BLZ, Kontonummer, Name1, and where they are there Name2, Strasse, PLZOrt, ExecutionDate (JJMMTT,
// today without it); the first row counts. Throws a CliError where a column or the row is missing.
void readHeader(CsvTable& table, DtaHeader& header, Remarks& remarks);

// Columns BIC, IBAN, Betrag, Name1, and where they are there Name2, Strasse, PLZOrt, Verwendungszweck and
// VariableText.
class OrderTable {
 public:
    // Throws a CliError where a column is missing.
    explicit OrderTable(CsvTable& table);
    // The next order; nothing at the end. One that cannot be read comes with a refusal and without an order.
    bool next(const DtADatei& file, std::shared_ptr<DtaAuftrag>& order, Remarks& remarks);

 private:
    using Column = std::optional<std::size_t>;
    CsvTable& table_;
    std::size_t bic_, iban_, amount_, name1_;
    Column name2_, street_, place_, purpose_, variable_;
};

}  // namespace tsRtm::cli
