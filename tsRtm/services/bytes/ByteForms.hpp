#pragma once
// Bytes written as text and read back.
#include <optional>

#include "tsRtm/types/CryptTypes.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::byteForms {

// Text in the form that the flags say; its lines, the last one too, end in CR LF if no flag says otherwise.
// Empty for no bytes and for a form that is for reading only. A dump without line ends keeps a blank where
// they were.
Bytes encode(BytesView bytes, CryptStringFlags flags);
// The bytes of such a text; nothing where it is not of the form. White space counts nothing in base 64 and
// between hexadecimal digits, and the "=" at the end may be missing unless a flag wants them.
std::optional<Bytes> decode(BytesView text, CryptStringFlags flags);

// Two digits a byte, nothing between.
enum class Case { lower, upper };
Bytes hexDigits(BytesView bytes, Case digits);

}  // namespace tsRtm::byteForms
