#pragma once
// The ground of this machine.
#include "tsRtm/platform/Platform.hpp"

namespace tsRtm::rtmMain {

// Serves until Main is given another one.
platform::Platform& defaultGround();

}  // namespace tsRtm::rtmMain
