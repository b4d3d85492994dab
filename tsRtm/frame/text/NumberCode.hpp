#pragma once
// Numbers in five columns of a record.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtmMain {

// An int32 in five characters at most: 0..99999 in decimal, others in base 94 with no digit in front.
Text EncodeNumber(int32 value);
// Its inverse; leading blanks are skipped, anything unreadable gives 0.
int32 DecodeNumber(TextView text) noexcept;

}  // namespace tsRtm::rtmMain
