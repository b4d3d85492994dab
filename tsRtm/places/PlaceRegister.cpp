#include "tsRtm/places/PlaceRegister.hpp"

#include "tsRtm/control/files/NewFields.hpp"
#include "tsRtm/database/DatabasesTopic.hpp"

namespace tsRtm::placeRegister {
namespace {

// In the order of the enumerations.
constexpr NewField kPlaceRows[] = {
    {kKeyLength, tsZiffern, u"ALORT", u"Ortsschlüssel"}, {kNameLength, tsAlles, u"NAME", u"&Ort"},
    {kKeyLength, tsZiffern, u"GEMEINDE", u"&Gemeinde"},  {kCodeLength, tsZiffern, u"PLZ", u"&PLZ"},
    {kCodeLength, tsZiffern, u"POSTFACH", u"Post&fach"},
};
constexpr NewField kStreetRows[] = {
    {kKeyLength, tsZiffern, u"ALORT", u"Ortsschlüssel"},
    {kNameLength, tsAlles, u"STRASSE", u"&Straße"},
    {kCodeLength, tsZiffern, u"PLZ", u"&PLZ"},
};

// Name, municipality, both codes, place key; place key with street.
constexpr TextView kPlaceIndexes = u"  2  4  0  3  2  0  4  2  0  5  2  0  1  4  0";
constexpr TextView kStreetIndexes = u"  1  2  0";

bool fits(const clsControl& control, std::span<const NewField> rows, TextView indexes) {
    if (control.Felder() != static_cast<int32>(rows.size()) ||
        control.Indizes() != static_cast<int32>(indexes.size() / 9))
        return false;
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (control.field(static_cast<int32>(i) + 1).Name() != rows[i].name) return false;
    return true;
}

}  // namespace

bool createPlaces(DatabasesTopic& databases, TextView name) {
    return databases.DBCreateExt(DBAnsi, name, {}, newFields(kPlaceRows), kMostPlaces, kPlaceIndexes);
}
bool createStreets(DatabasesTopic& databases, TextView name) {
    return databases.DBCreateExt(DBAnsi, name, {}, newFields(kStreetRows), kMostStreets, kStreetIndexes);
}
bool arePlaces(const clsControl& control) { return fits(control, kPlaceRows, kPlaceIndexes); }
bool areStreets(const clsControl& control) { return fits(control, kStreetRows, kStreetIndexes); }

}  // namespace tsRtm::placeRegister
