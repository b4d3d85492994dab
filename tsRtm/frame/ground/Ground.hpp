#pragma once
// The ground that the library stands on.
#include "tsRtm/platform/Platform.hpp"

namespace tsRtm::rtmMain {

// The ground that Main was given. Before Main: the ground of this machine.
platform::Platform& system();

// The ground of this machine.
platform::Platform& thisMachine();

// From now on system() is this one; nullptr goes back to the ground of this machine. The library does not
// touch the former one any more.
void standOn(platform::Platform* ground) noexcept;

}  // namespace tsRtm::rtmMain
