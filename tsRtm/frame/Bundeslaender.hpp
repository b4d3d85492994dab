#pragma once
// The federal states of Germany by their numbers.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

enum Bundeslaender : int32 {
    BADENW = 1,
    BAYERN = 2,
    BERLIN = 3,
    BREMEN = 4,
    HAMBURG = 5,
    HESSEN = 6,
    NIEDERSACHSEN = 7,
    NRW = 8,
    RHEINLANDPFALZ = 9,
    SAARLAND = 10,
    SCHLESWIG = 11,
    BRANDENBURG = 12,
    MECKPOMM = 13,
    SACHSEN = 14,
    SACHSENANHALT = 15,
    THUERINGEN = 16,
};

}  // namespace tsRtm
