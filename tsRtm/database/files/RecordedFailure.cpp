#include "tsRtm/database/files/RecordedFailure.hpp"

#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

void recordFailure(const Failure& failure) noexcept {
    rtmMain::state().F = failure.Number();
    try {
        rtmMain::DebugLog(failure.Source() + u": " + failure.Description());
    } catch (...) {  // the log is never a reason to fail
    }
}

}  // namespace tsRtm
