#pragma once
// The kinds of system by the number that state().os.platformId tells.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::systemKind {

inline constexpr int32 win9x = 1, ntFamily = 2;

}  // namespace tsRtm::systemKind
