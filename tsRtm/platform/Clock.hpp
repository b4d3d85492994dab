#pragma once
// Time of day, passing time, and waiting.
#include <chrono>

#include "tsRtm/types/Date.hpp"

namespace tsRtm::platform {

class Clock {
 public:
    virtual ~Clock() = default;
    // The local date and time.
    virtual Date now() = 0;
    // Time that only grows, from an arbitrary start, to some milliseconds; cheap enough to ask at every
    // record.
    virtual std::chrono::nanoseconds elapsed() = 0;
    // Gives the processor away for about this long; for 0 only to those who wait for it.
    virtual void sleep(std::chrono::nanoseconds duration) = 0;
};

}  // namespace tsRtm::platform
