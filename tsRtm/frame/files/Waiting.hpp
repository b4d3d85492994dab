#pragma once
// One wait for something that others hold.
#include <chrono>

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

// Whether the user wants to go on with a removable drive that is not ready; F becomes 71 on No.
bool driveMayBecomeReady(Messages& messages, TextView name);

}  // namespace tsRtm
