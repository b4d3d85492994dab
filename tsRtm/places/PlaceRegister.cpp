#include "tsRtm/places/PlaceRegister.hpp"

#include <span>

#include "tsRtm/database/DatabasesTopic.hpp"

namespace tsRtm::placeRegister {
namespace {

struct FieldRow {
    int32 length;
    int32 typ;
    TextView name;
    TextView caption;
};

// In the order of the enumerations.
constexpr FieldRow kPlaceRows[] = {
    {kKeyLength, tsZiffern, u"ALORT", u"Ortsschlüssel"}, {kNameLength, tsAlles, u"NAME", u"&Ort"},
    {kKeyLength, tsZiffern, u"GEMEINDE", u"&Gemeinde"},  {kCodeLength, tsZiffern, u"PLZ", u"&PLZ"},
    {kCodeLength, tsZiffern, u"POSTFACH", u"Post&fach"},
};
constexpr FieldRow kStreetRows[] = {
    {kKeyLength, tsZiffern, u"ALORT", u"Ortsschlüssel"},
    {kNameLength, tsAlles, u"STRASSE", u"&Straße"},
    {kCodeLength, tsZiffern, u"PLZ", u"&PLZ"},
};

// Name, municipality, both codes, place key; place key with street.
constexpr TextView kPlaceIndexes = u"  2  4  0  3  2  0  4  2  0  5  2  0  1  4  0";
constexpr TextView kStreetIndexes = u"  1  2  0";

TSIOArray fieldsOf(std::span<const FieldRow> rows) {
    TSIOArray out;
    for (const auto& row : rows) {
        auto field = std::make_shared<TSIO>();
        field->Zeile(static_cast<int32>(out.size()) + 1);
        field->Spalte(1);
        field->Laenge(row.length);
        field->Typ(row.typ);
        field->Caption(row.caption);
        field->Name(row.name);
        out.push_back(std::move(field));
    }
    return out;
}

bool fits(const clsControl& control, std::span<const FieldRow> rows, TextView indexes) {
    if (control.Felder() != static_cast<int32>(rows.size()) ||
        control.Indizes() != static_cast<int32>(indexes.size() / 9))
        return false;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (control.field(static_cast<int32>(i) + 1).Name() != rows[i].name) return false;
    return true;
}

}  // namespace

bool createPlaces(DatabasesTopic& databases, TextView name) {
    return databases.DBCreateExt(DBAnsi, name, {}, fieldsOf(kPlaceRows), kMostPlaces, kPlaceIndexes);
}
bool createStreets(DatabasesTopic& databases, TextView name) {
    return databases.DBCreateExt(DBAnsi, name, {}, fieldsOf(kStreetRows), kMostStreets, kStreetIndexes);
}
bool arePlaces(const clsControl& control) { return fits(control, kPlaceRows, kPlaceIndexes); }
bool areStreets(const clsControl& control) { return fits(control, kStreetRows, kStreetIndexes); }

}  // namespace tsRtm::placeRegister
