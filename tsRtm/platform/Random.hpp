#pragma once
// Random bytes.
#include <cstddef>
#include <span>

#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform {

// The system's source of bytes that nobody can foretell; fit for keys.
class Random {
 public:
    virtual ~Random() = default;
    // Whether there is a source; why not, where there is none.
    [[nodiscard]] virtual SystemError check() = 0;
    // All bytes or an error.
    [[nodiscard]] virtual SystemError fill(std::span<std::byte> into) = 0;
};

}  // namespace tsRtm::platform
