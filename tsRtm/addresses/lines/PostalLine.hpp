#pragma once
// The line of an address that has postal code and place, with the sign of a country in front of them: "A-1010
// Wien".
#include "tsRtm/types/Text.hpp"

namespace tsRtm::postalLine {

struct Parts {
    Text country;  // its name in capitals, empty at home and for an unknown sign
    Text rest;     // without the sign, in capitals; the whole line where there is no country
};

Parts split(TextView line);

// From the first digit on; a line without any stays whole.
Text withoutSign(TextView line);

// Behind the postal code; the whole line where it does not begin with one.
Text place(TextView line);

}  // namespace tsRtm::postalLine
