#pragma once
// The countries whose IBANs are known: one table of the checker of input fields, one of the payment records.
//
// A code is searched as a text in the row of all codes, at any place: "E!" or "E." count as found there too,
// and their length is read at that place. Data have been let through by this for years, so it stays.
#include <optional>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::countries {

struct Format {
    int32 length = 0;
    bool onlyDigits = false;  // behind the code of the country
};

// Of the checker of input fields; nothing for a code that it does not know.
std::optional<Format> checked(TextView code) noexcept;

// Of payment records. An empty code is found at the first place.
bool inEU(TextView code) noexcept;  // countries of EU standard transfers
std::optional<int32> paymentLength(TextView code) noexcept;

}  // namespace tsRtm::countries
