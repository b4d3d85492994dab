// tsrtm dta show: a payment file in words.
#include <iostream>

#include "cli/dta/Commands.hpp"
#include "cli/dta/PaymentRecords.hpp"
#include "cli/shared/CliError.hpp"
#include "cli/shared/Command.hpp"
#include "cli/shared/Output.hpp"
#include "cli/shared/SharedOptions.hpp"

namespace tsRtm::cli {
namespace {

using namespace payments;  // the layout

struct DtaShowOptions {
    std::string file;
    bool json = false;
};

struct Totals {
    int64 transfers = 0, euros = 0;
    bool operator==(const Totals&) const = default;
};

Totals counted(const PaymentRecords& records) {
    Totals totals;
    for (const auto& order : records.orders) {
        ++totals.transfers;
        totals.euros += wholeEuros(order);
    }
    return totals;
}

Totals told(const PaymentRecords& records) {
    const auto number = [&](FooterField field) {
        return static_cast<int64>(Val(fromUtf8(fieldOf(records.footer, kFooterRows[field]))));
    };
    return {number(fTotalTransactions), number(fTotalBetrag)};
}

template <std::size_t N>
Json fields(BytesView record, const FieldRow (&rows)[N]) {
    Json json = Json::object();
    for (const FieldRow& row : rows) json[std::string(row.name)] = fieldOf(record, row);
    return json;
}

void printJson(const PaymentRecords& records, bool right) {
    Json orders = Json::array();
    for (const auto& order : records.orders) {
        Json json = fields(order, kOrderRows);
        json["amount"] = amountOf(order);
        orders.push_back(std::move(json));
    }
    std::cout << jsonText({{"header", fields(records.header, kHeaderRows)},
                           {"orders", std::move(orders)},
                           {"footer", fields(records.footer, kFooterRows)},
                           {"totalsRight", right}})
              << '\n';
}

// Parts that are there, with commas between.
std::string joined(std::initializer_list<std::string> parts) {
    std::string out;
    for (const auto& part : parts)
        if (!part.empty() && part != "-") out += (out.empty() ? "" : ", ") + part;
    return out;
}

void printWords(const PaymentRecords& records) {
    const auto head = [&](HeaderField field) { return fieldOf(records.header, kHeaderRows[field]); };
    titledLine("orderer", 12, joined({head(hName1), head(hName2), head(hStrasse), head(hPLZOrt)}));
    titledLine("account", 12, head(hKontonummer) + " at bank " + head(hBLZ));
    titledLine("made", 12, dateOf(head(hErstellungsdatum)) + ", number " + head(hNummer) + " of the day");
    titledLine("for", 12, dateOf(head(hExecutionDate)));
    int64 number = 0;
    for (const auto& order : records.orders) {
        const auto of = [&](OrderField field) { return fieldOf(order, kOrderRows[field]); };
        std::cout << '\n';
        titledLine("transfer", 12, std::to_string(++number));
        titledLine("amount", 12, amountOf(order) + " " + of(oAuftragswaehrung) + " as it stands");
        titledLine("payee", 12, joined({of(oName1), of(oName2), of(oStrasse), of(oPLZOrt)}));
        titledLine("IBAN", 12, of(oIBAN).substr(std::min<std::size_t>(1, of(oIBAN).size())));
        titledLine("BIC", 12, of(oBIC));
        titledLine("purpose", 12,
                   joined({of(oVerwendungszweck1), of(oVerwendungszweck2), of(oVerwendungszweck3),
                           of(oVerwendungszweck4)}));
    }
}

void show(const DtaShowOptions& options) {
    const PaymentRecords records = readPayments(options.file);
    const Totals there = counted(records), written = told(records);
    if (options.json) {
        printJson(records, there == written);
    } else {
        printWords(records);
        std::cout << '\n';
        titledLine(
            "totals", 12,
            std::to_string(written.transfers) + (written.transfers == 1 ? " transfer, " : " transfers, ") +
                std::to_string(written.euros) + " whole euros: " + (there == written ? "right" : "wrong"));
    }
    if (there != written)
        throw CliError("the totals do not fit: there are " + std::to_string(there.transfers) +
                       " transfers of " + std::to_string(there.euros) + " whole euros");
}

}  // namespace

void addPaymentShow(Command dta) {
    auto options = std::make_shared<DtaShowOptions>();
    const auto command = dta.add("show", "Show a payment file in words, and whether its totals are right");
    command.option("FILE", options->file, "A DTAZV file").required();
    addJson(command, options->json);
    command.footer(
        "Amounts stand in the file with three digits behind the point; cents below ten stand as tens.");
    command.onRun([options] { show(*options); });
}

}  // namespace tsRtm::cli
