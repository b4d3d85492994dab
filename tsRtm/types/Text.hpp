#pragma once
// Text in memory is UTF-16; bytes stay bytes until they become Text at a face of the library.
#include <string>
#include <string_view>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

using Text = std::u16string;
using TextView = std::u16string_view;

// The public form of a byte string: a Text, one byte a unit through the ANSI code page (1252).
using ByteText = std::u16string;

// Bytes inside the library: records, keys, file content.
using Bytes = std::string;
using BytesView = std::string_view;

// UTF-8 to Text; each malformed sequence becomes U+FFFD.
Text fromUtf8(std::string_view utf8);
// Text to UTF-8; a lone surrogate becomes U+FFFD.
std::string toUtf8(TextView text);

// Decimal text of a whole number, without blanks.
Text toText(int64 number);
// Hexadecimal digits in capitals, without zeros in front.
Text toHexadecimal(uint32 number);

// Blanks (U+0020 only) taken off one end or both.
TextView trimLeft(TextView text) noexcept;
TextView trimRight(TextView text) noexcept;
TextView trim(TextView text) noexcept;

// Upper and lower case of the characters of code page 1252 (also "ÿ" and "ß" as that code page has them:
// "ß" stays); other characters stay as they are.
char16_t upper(char16_t c) noexcept;
char16_t lower(char16_t c) noexcept;
Text upper(TextView text);
Text lower(TextView text);

// Equal without regard to case, as upper() sees it.
bool equalIgnoringCase(TextView a, TextView b) noexcept;

// The text with every occurrence of `what` replaced; an empty `what` changes nothing.
Text replaceAll(TextView text, TextView what, TextView by);

// The number at the start of a text by the plain rule: blanks skipped, sign, digits, ".", exponent as far as
// they fit; 0 when nothing fits. Free of the locale.
float64 Val(TextView text) noexcept;

// Whether the whole text is a number: trimmed, optional sign, digits, at most one decimal mark (the one
// given), thousands marks, no exponent, not empty.
bool IstNumerisch(TextView text, TextView decimalMark, TextView thousandsMark) noexcept;

// A whole text of digits only, not empty.
bool IstZiffern(TextView text) noexcept;

// Float to the nearest int32, halves to the even neighbour, limited to the range of int32.
int32 roundToInt32(float64 value) noexcept;

}  // namespace tsRtm
