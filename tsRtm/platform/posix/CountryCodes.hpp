#pragma once
// Telephone codes of countries (ITU-T E.164), by their two letters (ISO 3166-1).
#include <string_view>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm::platform::posix {

struct CountryCode {
    std::string_view country;
    int32 telephone;
};

// Europe and the countries whose languages the library speaks.
inline constexpr CountryCode kCountryCodes[] = {
    {"AD", 376}, {"AL", 355}, {"AR", 54},  {"AT", 43},  {"AU", 61},  {"BA", 387}, {"BE", 32},  {"BG", 359},
    {"BR", 55},  {"BY", 375}, {"CA", 1},   {"CH", 41},  {"CL", 56},  {"CN", 86},  {"CO", 57},  {"CY", 357},
    {"CZ", 420}, {"DE", 49},  {"DK", 45},  {"EE", 372}, {"ES", 34},  {"FI", 358}, {"FR", 33},  {"GB", 44},
    {"GR", 30},  {"HR", 385}, {"HU", 36},  {"IE", 353}, {"IL", 972}, {"IN", 91},  {"IS", 354}, {"IT", 39},
    {"JP", 81},  {"LI", 423}, {"LT", 370}, {"LU", 352}, {"LV", 371}, {"MC", 377}, {"MD", 373}, {"ME", 382},
    {"MK", 389}, {"MT", 356}, {"MX", 52},  {"NL", 31},  {"NO", 47},  {"NZ", 64},  {"PE", 51},  {"PL", 48},
    {"PT", 351}, {"RO", 40},  {"RS", 381}, {"RU", 7},   {"SE", 46},  {"SI", 386}, {"SK", 421}, {"SM", 378},
    {"TR", 90},  {"UA", 380}, {"US", 1},   {"ZA", 27},
};

// 0 for a country that is not in the table.
constexpr int32 telephoneCode(std::string_view country) noexcept {
    for (const auto& row : kCountryCodes)
        if (row.country == country) return row.telephone;
    return 0;
}

}  // namespace tsRtm::platform::posix
