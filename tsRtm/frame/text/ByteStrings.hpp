#pragma once
// Whole numbers in byte strings: a ByteText holds one byte a unit, by way of code page 1252.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

constexpr int32 LoWord(int32 value) noexcept { return value & 0xFFFF; }
// Unsigned, 0..65535.
constexpr int32 HiWord(int32 value) noexcept { return static_cast<int32>(static_cast<uint32>(value) >> 16); }
constexpr int32 LoByte(int32 value) noexcept { return value & 0xFF; }
constexpr int32 HiByte(int32 value) noexcept { return value >> 8 & 0xFF; }

// Two bytes of the low word, the low byte first.
ByteText MKI(int32 Zahl);
// Four bytes, the low byte first.
ByteText MKL(int32 Wert);

// Positions are 1-based. Outside the text: -1.
int32 ByteVal(TextView text, int32 Position) noexcept;
// 0..65535; 0 where two bytes do not lie at the position.
int32 WordVal(TextView s, int32 Posi) noexcept;
// Signed; 0 where four bytes do not lie at the position.
int32 LongVal(TextView text, int32 Position) noexcept;

}  // namespace tsRtm
