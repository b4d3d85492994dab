#pragma once
// Fields of fixed width in payment records: what may stand in them, and how they are filled up.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::payments {

// How a field stands in its record.
struct FieldForm {
    int32 width = 0;
    bool zeros = false;       // fills up with "0", else with blanks
    bool leftAligned = true;  // the value first, the filling behind it
};

// A text as payment files have it: capitals, digits and " .,-/+" only, "AE" for "Ä" and "SS" for "ß". All
// other characters are dropped, letters with their accents too. Its bytes are ASCII.
Bytes normalised(TextView text);
void normalise(TextView text, Bytes& into);  // appends

// The value in the field's width, appended to a record: filled up, or cut behind its first characters. Raises
// 5 for a negative width.
void appendField(BytesView value, const FieldForm& form, Bytes& record);

// ASCII to Text.
Text textOf(BytesView ascii);

}  // namespace tsRtm::payments
