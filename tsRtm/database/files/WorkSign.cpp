#include "tsRtm/database/files/WorkSign.hpp"

#include <chrono>
#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr uint64 kAlive = 1;
constexpr int32 kAttemptsToLeave = 20;
constexpr std::chrono::milliseconds kPauseToLeave{1};

}  // namespace

bool WorkSign::othersLive() const {
    if (!folder_.shared) return false;
    const auto shown = count_.file().greatestShown(0);
    // A ground that cannot tell is no reason to check whole indexes at each opening.
    return !shown || *shown != 0;
}

bool WorkSign::leftUncleanly() {
    unsettled_ = false;
    return count_.atWork() && !othersLive();
}

DatabaseError WorkSign::enter() {
    if (entered_) return DatabaseError::none;
    const DatabaseHold hold(locks_);
    if (!hold) return hold.error();
    if (folder_.shared && platform::failed(count_.file().show(kAlive)))
        rtmMain::DebugLog(folder_.name + u": ein Abbruch wird von anderen nicht bemerkt");
    if (!count_.atWork()) {
        count_.signOn();
        static_cast<void>(count_.file().flush());
    }
    entered_ = true;
    return DatabaseError::none;
}

void WorkSign::leave(const std::function<void()>& flush, const std::function<void()>& last) noexcept {
    if (!std::exchange(entered_, false)) return;
    try {
        flush();
        // He lives until he has the lock: an opening that looks in between would find a sign that nobody set.
        // Who holds the lock for long is at work, and takes the sign back himself.
        for (int32 attempt = 0; attempt < kAttemptsToLeave; ++attempt) {
            if (attempt > 0) rtmMain::system().clock.sleep(kPauseToLeave);
            const DatabaseHold hold(locks_, DatabaseLocks::Wait::never);
            if (!hold) continue;
            if (folder_.shared) static_cast<void>(count_.file().show(0));
            if (!count_.marked() && !unsettled_ && !othersLive()) {
                last();
                count_.signOff();
            }
            break;
        }
    } catch (...) {  // the sign stays: the next opening looks
    }
}

}  // namespace tsRtm
