#include "cli/dta/OrderTable.hpp"

#include "cli/shared/CliError.hpp"
#include "tsRtm/banking/payments/FixedField.hpp"

namespace tsRtm::cli {
namespace {

constexpr std::size_t kName = 35, kPurpose = 4 * 35, kVariable = 27;
constexpr std::size_t kCode = 8, kAccount = 10;
constexpr int32 kFewCents = 10;

// Characters that a payment file drops, each once.
Text dropped(TextView text) {
    Text out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool pair = (text[i] & 0xFC00) == 0xD800 && i + 1 < text.size();
        const TextView one = text.substr(i, pair ? 2 : 1);
        const bool joins =
            text[i] == 0x308 && i > 0 && payments::normalised(text.substr(i - 1, 2)).size() == 2;
        if (!joins && payments::normalised(one).empty() && out.find(one) == Text::npos) out += one;
        if (pair) ++i;
    }
    return out;
}

void look(const char* name, TextView text, std::size_t room, Remarks& remarks) {
    if (const Text lost = dropped(text); !lost.empty())
        remarks.push_back({std::string(name) + ": left out: " + toUtf8(lost)});
    if (payments::normalised(text).size() > room)
        remarks.push_back({std::string(name) + ": cut to " + std::to_string(room) + " characters"});
}

// "12", "12,5", "12.50": cents as a whole number; nothing for anything else.
std::optional<int64> centsOf(TextView text) {
    text = trim(text);
    const bool negative = text.starts_with(u'-');
    if (negative) text.remove_prefix(1);
    const auto mark = text.find_first_of(u".,");
    Text digits(text.substr(0, mark));
    Text cents = mark == TextView::npos ? Text() : Text(text.substr(mark + 1));
    if (!IstZiffern(digits) || digits.size() > 9 || cents.size() > 2 ||
        (mark != TextView::npos && !IstZiffern(cents)))
        return std::nullopt;
    cents.resize(2, u'0');
    const auto value = static_cast<int64>(Val(digits + cents));
    return negative ? -value : value;
}

}  // namespace

void readHeader(CsvTable& table, DtaHeader& header, Remarks& remarks) {
    const std::size_t code = table.need("BLZ"), account = table.need("Kontonummer"),
                      name = table.need("Name1");
    if (!table.next() || !table.fault().empty())
        throw CliError("the header file has no row with the orderer");
    header.BLZ(table.cell(code));
    header.Kontonummer(table.cell(account));
    header.Name1(table.cell(name));
    const auto put = [&](const char16_t* column, void (DtaHeader::*set)(TextView)) {
        Text text = table.cell(table.find(column));
        if (!text.empty()) (header.*set)(text);
        return text;
    };
    look("Name1", table.cell(name), kName, remarks);
    look("Name2", put(u"Name2", &DtaHeader::Name2), kName, remarks);
    look("Strasse", put(u"Strasse", &DtaHeader::Strasse), kName, remarks);
    look("PLZOrt", put(u"PLZOrt", &DtaHeader::PLZOrt), kName, remarks);
    put(u"ExecutionDate", &DtaHeader::ExecutionDate);
    if (table.cell(code).size() != kCode || !IstZiffern(table.cell(code)))
        remarks.push_back({"BLZ: a bank code has 8 digits", true});
    if (table.cell(account).size() > kAccount)
        remarks.push_back(
            {"Kontonummer: more than 10 digits, of which the file would hold the first 10", true});
}

OrderTable::OrderTable(CsvTable& table)
    : table_(table),
      bic_(table.need("BIC")),
      iban_(table.need("IBAN")),
      amount_(table.need("Betrag")),
      name1_(table.need("Name1")),
      name2_(table.find(u"Name2")),
      street_(table.find(u"Strasse")),
      place_(table.find(u"PLZOrt")),
      purpose_(table.find(u"Verwendungszweck")),
      variable_(table.find(u"VariableText")) {}

bool OrderTable::next(const DtADatei& file, std::shared_ptr<DtaAuftrag>& order, Remarks& remarks) {
    remarks.clear();
    order.reset();
    if (!table_.next()) return false;
    const auto cell = [&](Column column) { return table_.cell(column); };
    const auto cents = centsOf(cell(amount_));
    if (!table_.fault().empty() || !cents) {
        remarks.push_back({table_.fault().empty() ? "Betrag: '" + toUtf8(cell(amount_)) + "' is no amount"
                                                  : "no row: " + table_.fault(),
                           true});
        return true;
    }
    if (*cents <= 0) remarks.push_back({"Betrag: not above 0", true});
    if (*cents > 0 && *cents % 100 != 0 && *cents % 100 < kFewCents)
        remarks.push_back({"Betrag: cents below ten stand as tens in the file, and would be paid so", true});
    order = file.Create(cell(bic_), cell(iban_), static_cast<float64>(*cents) / 100, cell(name1_),
                        cell(name2_), cell(street_), cell(place_), cell(purpose_));
    order->VariableText(cell(variable_));
    look("Name1", cell(name1_), kName, remarks);
    look("Name2", cell(name2_), kName, remarks);
    look("Strasse", cell(street_), kName, remarks);
    look("PLZOrt", cell(place_), kName, remarks);
    look("Verwendungszweck", cell(purpose_), kPurpose, remarks);
    look("VariableText", cell(variable_), kVariable, remarks);
    return true;
}

}  // namespace tsRtm::cli
