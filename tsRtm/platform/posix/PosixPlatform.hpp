#pragma once
// The POSIX ground as one object.
#include "tsRtm/platform/Platform.hpp"

namespace tsRtm::platform {

// The ground of this machine: made at the first call, lives as long as the process.
Platform& posixPlatform();

}  // namespace tsRtm::platform
