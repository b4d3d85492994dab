#pragma once
// Text to bytes and back: code pages 1252 (ANSI) and 850 (DOS), UTF-8, UTF-16.
#include <span>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// The 256 characters of code page 1252; the five undefined codes map to the control characters of the same
// number, so that the table is a bijection and any byte string survives the way through Text.
Text fromAnsi(BytesView bytes);
void fromAnsi(BytesView bytes, Text& into);  // keeps the capacity of `into`
Bytes toAnsi(TextView text);                 // "?" for a character outside the code page
bool appendAnsi(Bytes& out, TextView text);  // the same; false where there was such a one
char16_t ansiToUnicode(uint8 byte) noexcept;
// The byte of a character, or -1 outside the code page.
int32 unicodeToAnsi(char16_t c) noexcept;

// Code page 850 to 1252 and back, one byte for one byte, best fit where there is no equal; 0 to 31 map to
// themselves.
Bytes oemToAnsi(BytesView bytes);
Bytes ansiToOem(BytesView bytes);
// The same on Text, as the system's own calls do it on an ANSI text.
Text OemToChar(TextView text);
Text CharToOem(TextView text);

// UTF-16 in little-endian bytes, and back (an odd last byte is dropped).
Bytes toUtf16Le(TextView text);
Text fromUtf16Le(BytesView bytes);

}  // namespace tsRtm
