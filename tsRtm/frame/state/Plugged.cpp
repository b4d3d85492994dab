#include "tsRtm/frame/state/Plugged.hpp"

namespace tsRtm::rtmMain {

Plugged& plugged() noexcept {
    static Plugged one;
    return one;
}

}  // namespace tsRtm::rtmMain
