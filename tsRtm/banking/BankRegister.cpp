#include "tsRtm/banking/BankRegister.hpp"

#include "tsRtm/control/files/NewFields.hpp"
#include "tsRtm/database/DatabasesTopic.hpp"

namespace tsRtm::bankRegister {
namespace {

// In the order of FelderBanken; the columns are as wide as those of the bank code file.
constexpr std::array<NewField, kFields> kFieldRows{{
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

TSIOArray fields() { return newFields(kFieldRows); }
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
