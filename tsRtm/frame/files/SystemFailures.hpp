#pragma once
// From the system's error numbers to the run-time error numbers of the numbered family.
#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// 53 not found, 55 or 58 there already, 57 device, 61 disk full, 64 bad name, 67 too many files, 70 locked,
// 71 not ready, 75 access, 76 folder not found; 57 for what has no number of its own. 0 for no error.
int32 failureNumber(platform::SystemError error) noexcept;

// Description of a run-time error number.
Text failureText(int32 number);

}  // namespace tsRtm
