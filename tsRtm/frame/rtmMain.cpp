#include "tsRtm/frame/rtmMain.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/Plugged.hpp"

namespace tsRtm::rtmMain {

void Main(platform::Platform& ground) { start(ground); }

platform::Platform& defaultGround() { return thisMachine(); }

void usePaper(const platform::Paper* paper) noexcept { plugged().paper = paper; }

void WMStop() { stop(); }

}  // namespace tsRtm::rtmMain
