#pragma once
// The roles of the fields of an appointment store.
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class clsControl;

// Which field of a store has which role, by the number of the role; 0 where the store has none.
struct TerminFelder {
    enum Rolle : std::size_t {
        schluessel = 1,
        gueltigAb = 2,
        gueltigBis = 3,
        id = 4,
        uhrzeitVon = 5,
        uhrzeitBis = 6,
        betreff = 7,
        ort = 8,
        prioritaet = 9,
        dauer = 10,
        tag = 11,
        memo = 12
    };
    std::array<int32, 13> nummern{};  // from 1 on

    // Found in a structure by the names of its fields, else by their captions. A store without a key is none.
    static TerminFelder in(const clsControl& control);

    int32 operator[](Rolle role) const noexcept { return nummern[role]; }
};

}  // namespace tsRtm
