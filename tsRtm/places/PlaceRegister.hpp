#pragma once
// The structure of the databases of places: "Orte", with the index of postal codes in a file of its own, and
// "Strassen".
#include "tsRtm/fields/TSIO.hpp"

namespace tsRtm {

class DatabasesTopic;
class clsControl;

// Field numbers of "Orte".
enum eOrteFelder : int32 {
    fOrteALORT = 1,  // place key: records with the same one are of one place; also the key of the streets
    fOrteName = 2,
    fOrteGemeindeSchluessel = 3,  // municipality; its first two digits tell the state
    fOrteZustellPLZ = 4,          // code of delivery
    fOrtePostfachPLZ = 5,         // code of post office boxes
};

// Field numbers of "Strassen".
enum eStrassenFelder : int32 { fStrassenALORT = 1, fStrassenName = 2, fStrassenPLZ = 3 };

namespace placeRegister {

inline constexpr TextView kPlaces = u"Orte";
inline constexpr TextView kStreets = u"Strassen";

// Record numbers stand in 16 bits with a sign.
inline constexpr int32 kMostPlaces = 32767;
inline constexpr int32 kMostStreets = 2000000;

// Lengths of columns.
inline constexpr int32 kKeyLength = 8;
inline constexpr int32 kNameLength = 90;
inline constexpr int32 kCodeLength = 5;

// Makes an empty database; False where its files cannot be made, or there is one.
bool createPlaces(DatabasesTopic& databases, TextView name);
bool createStreets(DatabasesTopic& databases, TextView name);
// Whether a database has these fields.
bool arePlaces(const clsControl& control);
bool areStreets(const clsControl& control);

}  // namespace placeRegister
}  // namespace tsRtm
