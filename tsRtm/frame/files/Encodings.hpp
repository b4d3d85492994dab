#pragma once
// Text encodings by code page number: marks, detection, and the way between Text and bytes.
#include <optional>
#include <span>

#include "tsRtm/types/Encodings.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

namespace encodings {

// The byte order mark, as a character.
inline constexpr char16_t mark = 0xFEFF;

// The bytes of the mark; empty for the code pages, which have none, and for what cannot be written.
BytesView markBytes(int32 encoding) noexcept;

// What the first bytes of a file say, and where its text begins.
struct Detected {
    int32 encoding = ANSI1252;
    std::optional<std::size_t> textBegin;  // bytes; nothing for the 32-bit forms, which are not read
};
// Looks at up to four bytes: fewer only where the file is shorter.
Detected detect(BytesView head) noexcept;

// 1252, 850, 65001, 1200 and 1201.
bool supported(int32 encoding) noexcept;
// Says that a file cannot be read or written in an encoding: raises 321 with this source.
[[noreturn]] void raiseUnsupported(int32 encoding, TextView Source, TextView Datei);
// Bytes to Text. A malformed UTF-8 sequence becomes U+FFFD, an odd last byte of UTF-16 is dropped. Only where
// supported.
Text decode(BytesView bytes, int32 encoding);
// Text to bytes, without a mark. "?" for a character that a code page lacks. Only where supported.
Bytes encode(TextView text, int32 encoding);

}  // namespace encodings
}  // namespace tsRtm
