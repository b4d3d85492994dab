#include "tsRtm/frame/rtmMain.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"

namespace tsRtm::rtmMain {

void Main(platform::Platform& ground) { start(ground); }

platform::Platform& defaultGround() { return thisMachine(); }

void WMStop() { stop(); }

}  // namespace tsRtm::rtmMain
