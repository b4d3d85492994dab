#pragma once
// Makes "Orte" with its index of postal codes, and "Strassen".
#include <vector>

#include "tsRtm/places/PlaceRegister.hpp"

namespace tsRtm {

class clsTSDB;

// A place, or a part of one, that has a code.
struct PlaceRow {
    Text name, municipality, code;
    Text box;  // a code of its post office boxes, may be empty
};
struct StreetRow {
    Text place, municipality, street, code;
};

// Why a row is none.
enum class PlaceFault {
    none,
    name,          // empty, too long, or with a character that code page 1252 lacks
    code,          // no five digits, or 00000
    box,           // the same
    municipality,  // no digits, or too many
};
PlaceFault faultOf(const PlaceRow& row);
PlaceFault faultOf(const StreetRow& row);

struct PlaceImportResult {
    int32 stored = 0;
    int32 places = 0;       // with a key of their own
    int32 codes = 0;        // that can be looked up
    int32 sharedCodes = 0;  // of those: of several places
    int32 unknown = 0;      // streets of places that "Orte" does not have
    int32 error = 0;        // as clsTSDB::Error: 7 more rows than there is room, 70 others have it open
};

// Puts these places, right and in any order, in the place of those of "Orte", and its index of codes with
// them: all files change at once, so nobody else may have it open. Rows of the same name and municipality are
// one place and share their key; equal rows count once.
PlaceImportResult importPlaces(clsTSDB& orte, std::vector<PlaceRow> rows);
// The streets of the places that "Orte" has.
PlaceImportResult importStreets(clsTSDB& strassen, clsTSDB& orte, const std::vector<StreetRow>& rows);

}  // namespace tsRtm
