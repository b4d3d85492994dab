#pragma once
#include "tsRtm/types/Text.hpp"
#include "tsRtm/validation/ValidTypes.hpp"

namespace tsRtm::desktop {

// How values stand in a field.
enum class Spelling { plain, date, iban };

Spelling spellingOf(eValidatorType type) noexcept;

// What a checker gets of the text of a field: a date as digits, an IBAN without blanks.
Text valueOf(Spelling spelling, TextView shown);

// What the field shows when it is left. A date lacks nothing any more: year, or month and year, are those of
// today. A text that is none yet stays as it is.
Text inFull(Spelling spelling, TextView shown);

}  // namespace tsRtm::desktop
