#pragma once
// The clock of this machine.
#include "tsRtm/platform/Clock.hpp"

namespace tsRtm::platform::posix {

class PosixClock final : public Clock {
 public:
    Date now() override;  // whole seconds
    std::chrono::nanoseconds elapsed() override;
    void sleep(std::chrono::nanoseconds duration) override;
};

}  // namespace tsRtm::platform::posix
