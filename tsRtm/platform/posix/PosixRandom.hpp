#pragma once
// Random bytes of the kernel.
#include "tsRtm/platform/Random.hpp"

namespace tsRtm::platform::posix {

// By getrandom: needs no file and waits only while the machine has not yet gathered enough at its start.
class PosixRandom final : public Random {
 public:
    [[nodiscard]] SystemError check() override;
    [[nodiscard]] SystemError fill(std::span<std::byte> into) override;
};

}  // namespace tsRtm::platform::posix
