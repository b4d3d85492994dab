#pragma once
// The check digits of an IBAN: modulus 97-10 of ISO 7064, by the order of ISO 13616.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::checkDigits {

struct OfIban {
    int32 number;     // the two digits that belong there, 2..98
    bool onlyDigits;  // in the part behind country and check digits
};

// Of any text. A character that is no digit counts by its code minus 55, so "A" is 10 and "Z" 35; nothing is
// folded or left out.
OfIban of(TextView iban) noexcept;

// Whether characters 3 and 4 are digits, and those that belong there.
bool fit(TextView iban, const OfIban& wanted) noexcept;
inline bool fit(TextView iban) noexcept { return fit(iban, of(iban)); }

// "68", "07".
Text twoDigits(int32 number);

}  // namespace tsRtm::checkDigits
