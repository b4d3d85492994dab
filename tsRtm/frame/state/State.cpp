#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::rtmMain {

State& state() noexcept {
    static State instance;
    return instance;
}

}  // namespace tsRtm::rtmMain
