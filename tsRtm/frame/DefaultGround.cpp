// The one place of the library that knows a ground by name.
#include "tsRtm/frame/DefaultGround.hpp"

#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::rtmMain {

platform::Platform& defaultGround() { return platform::posixPlatform(); }

}  // namespace tsRtm::rtmMain
