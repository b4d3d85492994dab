#pragma once
// A failure that an operation caught: the operation ends with the state as far as it got.
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

// Leaves its number as the last failure number, and the rest in the debug log.
void recordFailure(const Failure& failure) noexcept;

}  // namespace tsRtm
