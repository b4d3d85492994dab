#pragma once
// Changes of law since the rule table was closed in 2020, one a line: in force from | ends row | rule | law.
//
// A rule stands as in RuleTable.hpp. Where it takes the place of a row of that table, the row ends with the
// year before the new one begins.
#include <array>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::holidays {

struct Amendment {
    int32 inForce;  // JJJJMMTT
    int32 ends;     // row of the table, 0 none
    TextView rule;
    TextView law;
};

// clang-format off
inline constexpr std::array kAmendments{
    Amendment{20220713, 59, u"internationaler Frauentag|0803|2|2023|32000|0313", u"Mecklenburg-Vorpommern, Gesetz vom 7.7.2022 (GVOBl. M-V S. 427)"},
    Amendment{20240721,  0, u"80 Jahre Befreiung|0805|2|2025|2025|03",           u"Berlin, Gesetz vom 10.7.2024 (GVBl. S. 460)"},
    Amendment{20240721,  0, u"75 Jahre Volksaufstand|1706|2|2028|2028|03",       u"Berlin, Gesetz vom 10.7.2024 (GVBl. S. 460)"},
};
// clang-format on

}  // namespace tsRtm::holidays
