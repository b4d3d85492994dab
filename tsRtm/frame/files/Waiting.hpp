#pragma once
// One wait for something that others hold.
#include <chrono>

#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class Messages;

// Begins with its creation. Between two tries pause() lets other events run, then sleeps: short at first,
// since most locks are held for a moment only, then longer, to leave the network alone.
class Waiting {
 public:
    Waiting();
    // Whether more than this many seconds have gone by.
    bool longerThan(int64 seconds) const;
    void pause();

 private:
    std::chrono::nanoseconds since_;
    std::chrono::nanoseconds next_;
};

// Tries again while somebody has one of the files open, for NetWait seconds.
template <class Step>
platform::SystemError patiently(Step step) {
    using platform::SystemError;
    for (Waiting waiting;;) {
        const SystemError error = step();
        const bool inUse = error == SystemError::sharingViolation || error == SystemError::lockViolation;
        if (!inUse || rtmMain::state().stopping || waiting.longerThan(rtmMain::state().netWait)) return error;
        waiting.pause();
    }
}

// Whether the user wants to go on with a removable drive that is not ready; F becomes 71 on No.
bool driveMayBecomeReady(Messages& messages, TextView name);

}  // namespace tsRtm
