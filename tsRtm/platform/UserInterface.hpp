#pragma once
// The desk while the library works: the message window, status text, events that wait, and what the system
// tells through its windows.
#include <functional>

#include "tsRtm/platform/Notice.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

class UserInterface {
 public:
    virtual ~UserInterface() = default;
    // The small non-modal window with an Abort button; a click on it calls what `onAbort` was set to.
    virtual void showMessageWindow(TextView message) = 0;
    virtual void hideMessageWindow() = 0;
    // Status text while something waits; empty takes it away.
    virtual void status(TextView message) = 0;
    // Lets events that wait be handled. Called in every wait and long loop; must return soon.
    virtual void processEvents() = 0;
    virtual void beep() = 0;

    // Whether the ground hears of changes of the system, some of those of Notice at least. It tells them
    // while events are handled.
    virtual bool hearsNotices() = 0;

    // Set by the library: what a click on the Abort button of the message window does, and, until the library
    // stops, whom to tell of changes of the system. Both are called on the thread of all else.
    std::function<void()> onAbort;
    std::function<void(Notice notice, int32 parameter)> onNotice;
};

}  // namespace tsRtm::platform
