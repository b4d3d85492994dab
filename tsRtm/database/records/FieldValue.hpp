#pragma once
// Numbers of a record between their stored form and the form of the locale.
#include "tsRtm/database/records/RecordLayout.hpp"

namespace tsRtm {

// A stored number as the locale writes it: with its decimals, or plain where the field has none.
void showNumber(const FieldLayout& field, TextView stored, Text& into);
// A number as it is stored, from what was typed: thousands marks gone, "." before the decimals.
Text storedNumber(const FieldLayout& field, TextView typed);

}  // namespace tsRtm
