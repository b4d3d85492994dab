#include "tsRtm/banking/BankRegister.hpp"

#include "tsRtm/database/DatabasesTopic.hpp"

namespace tsRtm::bankRegister {
namespace {

struct FieldRow {
    int32 length;
    int32 typ;
    TextView name;
    TextView caption;
    TextView help;
};

// In the order of FelderBanken; the columns are as wide as those of the bank code file.
constexpr std::array<FieldRow, kFields> kFieldRows{{
    {bankFormat::kCode.size, tsZiffern, u"BLZ", u"&Bankleitzahl", u"Bankleitzahl, acht Ziffern"},
    {bankFormat::kName.size, tsAlles, u"NAME", u"&Name", u"Name der Bank"},
    {bankFormat::kPostalCode.size, tsZiffern, u"PLZ", u"&PLZ", u"Postleitzahl"},
    {bankFormat::kPlace.size, tsAlles, u"ORT", u"&Ort", u"Sitz der Bank"},
    {bankFormat::kBic.size, tsAlphanumerisch, u"BIC", u"B&IC", u"BIC, acht oder elf Zeichen"},
    {bankFormat::kCheckMethod.size, tsAlphanumerisch, u"PZMETHODE", u"Prüf&ziffer",
     u"Prüfziffermethode der Kontonummern"},
}};

constexpr TextView kIndexes = u"  1  0  0  5  0  0  4  2  0";
static_assert(kIndexes.size() == 27);

}  // namespace

TSIOArray fields() {
    TSIOArray out;
    for (const auto& row : kFieldRows) {
        auto field = std::make_shared<TSIO>();
        field->Zeile(static_cast<int32>(out.size()) + 1);
        field->Spalte(1);
        field->Laenge(row.length);
        field->Typ(row.typ);
        field->Caption(row.caption);
        field->Hilfe(row.help);
        field->Name(row.name);
        out.push_back(std::move(field));
    }
    return out;
}

Text indexes() { return Text(kIndexes); }

bool fits(const clsControl& control) {
    if (control.Felder() != kFields || control.Indizes() != kByPlaceAndName) return false;
    for (int32 field = 1; field <= kFields; ++field)
        if (control.field(field).Name() != kFieldRows[static_cast<std::size_t>(field - 1)].name) return false;
    return true;
}

bool create(DatabasesTopic& databases, TextView name) {
    return databases.DBCreateExt(DBAnsi, name, {}, fields(), kMaxRecords, indexes());
}

std::array<TextView, kFields + 1> values(const BankRow& row) noexcept {
    return {TextView(), row.code, row.name, row.postalCode, row.place, row.bic, row.checkMethod};
}

}  // namespace tsRtm::bankRegister
