#pragma once
// Words of appointments: kinds of keys, views, changes, pictures and colours, by the numbers that programs
// use.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// What the key of an appointment says.
enum eTerminTypen : int32 {
    ttEinzel = 0,                 // one date
    ttTaeglich = 1,               // every day
    ttMonatlich = 2,              // a day of each month
    ttJaehrlich = 3,              // a date of each year
    ttWoechentlich = 4,           // a weekday
    ttMonatlichWoche = 5,         // the first, second ... or last such weekday of each month
    ttTagesAbstand = 6,           // every so many days
    ttMonatsAbstand = 7,          // every so many months
    ttGanzesJahr = 8,             // all days of a year
    ttGanzerMonat = 9,            // all days of one month
    ttJaehrlichGanzerMonat = 10,  // all days of a month in each year
    ttGanzeWoche = 11,            // no key of today says this
    ttJaehrlichGanzeWoche = 12,   // nor this
};

enum eKalenderAnzeigen : int32 {
    TagesAnsicht = 0,
    WochenAnsicht = 1,
    MonatsAnsicht = 2,
    JahresAnsicht = 3,
    TagesDruck = 4,
    WochenDruck = 5,
    MonatsDruck = 6,
};

// Bits.
enum eTerminIcons : int32 { tiNone = 0, tiGlocke = 1, tiSchluessel = 2, tiFragezeichen = 4, tiHaus = 8 };

enum eColorElement : int32 { ceForeColor = 0, ceBackColor = 1, ceBorderColor = 2, ceTaskColor = 3 };

}  // namespace tsRtm
