#pragma once
// Numbers to text and back, under the separators of the locale (rtmMain::state().locale, read anew at each
// call).
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The decimal form of a number, rounded. Rounding goes through text: the number's 15 significant decimal
// digits, then half away from zero at the last place kept, so that 1.005 rounds to 1.01.
struct DecimalForm {
    bool negative = false;  // never for a rounded 0
    std::string whole;      // digits without leading zeros, "0" below 1
    std::string fraction;   // as many digits as places were kept
};
// `decimals` is limited to 0..99. Raises 6 for an infinite number and for what is none.
DecimalForm decimalForm(float64 value, int32 decimals);

// With `decimals` places (below 0: none) and at least one digit before the mark; raises as decimalForm does.
Text formatNumber(float64 value, int32 decimals, bool thousands = false);
// The same with marks of one's own; an empty thousands mark sets none.
Text formatNumber(float64 value, int32 decimals, TextView decimalMark, TextView thousandsMark);
// The form of number fields: no thousands marks.
inline Text formatDecimals(float64 value, int32 decimals) { return formatNumber(value, decimals); }
// All digits that count, at most 15, no thousands marks; "1E+15" from there on.
Text plainNumber(float64 value);

// The numeric reader of the system: a text with the decimal mark is read by the locale, one without it by the
// plain rule of Val, so that "1.234" is 1.234 also where "." is the thousands mark. 0 where nothing fits.
float64 TSVal(TextView text);
Text TSStr(float64 Zahl, int32 NachKomma = 2, bool Mit1000er = false);
// The machine form: two decimals behind ".".
Text TSString(float64 Zahl);
// Rounds Wert to 0..7 places; SWert is its machine form.
void Runden(int32 NachKomma, float64& Wert, Text& SWert);
// SWert is the amount with two decimals and thousands marks.
void Waehrung(float64 Wert, Text& SWert);

// Finds a number in a text from Position (1-based) plus Laenge on: digits, one "." or ",", a "-" in front.
// Laenge grows by the characters taken, at most up to `longest`; the answer is TSVal of them, 0 where there
// are none.
float64 HolZahl(TextView text, int32 Position, int32& Laenge);
float64 HolZahl(TextView text, int32 Position, int32& Laenge, int32 longest);

}  // namespace tsRtm
