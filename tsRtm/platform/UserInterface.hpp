#pragma once
// The person at the desk: boxes, the message window, status text, events that wait.
#include <functional>
#include <vector>

#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// One question or notice. Answers by number: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No, 10 Try
// again, 11 Continue; plus 2048 where the user ticked "do not show again".
struct MessageBox {
    Text title;
    Text headline;      // empty: the body alone
    Text body;          // lines end in CR or CR LF; links stand as <A HREF="address">address</A>
    int32 buttons = 0;  // low three bits: the button set; 16..80: the icon; 256..768: the default button
    std::vector<int32> answers;  // the button numbers offered, in order
    int32 defaultAnswer = 1;
    Text checkBox;  // empty: none
    Text helpFile;
    int32 helpContext = 0;
};

// With nobody attached (a server, a script), a box goes to the log and standard error and gets the answer
// that loses nothing: No, Cancel, OK in this order.
class UserInterface {
 public:
    virtual ~UserInterface() = default;
    virtual int32 show(const MessageBox& box) = 0;
    // The small non-modal window with an Abort button; a click on it calls what `onAbort` was set to.
    virtual void showMessageWindow(TextView message) = 0;
    virtual void hideMessageWindow() = 0;
    // Status text while something waits; empty takes it away.
    virtual void status(TextView message) = 0;
    // Lets events that wait be handled. Called in every wait and long loop; must return soon.
    virtual void processEvents() = 0;
    virtual void beep() = 0;
    // Version of the system's control library: 610 with rich task dialogs, 580 with plain boxes only.
    virtual int32 comCtlVersion() = 0;
    // A system caption by its number (0 OK .. 10 Continue), empty where the system has none.
    virtual Text systemCaption(int32 number) = 0;
    // Whether the system has captions of its own at all.
    virtual bool hasSystemCaptions() { return false; }
    // Name of a key by its virtual key number (256 added for an extended key), empty where unknown.
    virtual Text keyName(int32 virtualKey) = 0;

    // What a click on the Abort button of the message window does; the library sets it at its start.
    std::function<void()> onAbort;
};

}  // namespace tsRtm::platform
