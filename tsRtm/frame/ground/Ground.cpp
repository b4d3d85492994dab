// The one place of the library that knows a ground by name.
#include "tsRtm/frame/ground/Ground.hpp"

#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::rtmMain {

namespace {

platform::Platform* given = nullptr;

}  // namespace

platform::Platform& system() { return given ? *given : thisMachine(); }

platform::Platform& thisMachine() { return platform::posixPlatform(); }

void standOn(platform::Platform* ground) noexcept { given = ground; }

}  // namespace tsRtm::rtmMain
