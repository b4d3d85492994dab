#pragma once
// What a value is as text.
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// Numbers by the locale, a flag as -1 or 0, a date in the general local form; empty for what has no text.
Text textOf(const Variant& value);

}  // namespace tsRtm
