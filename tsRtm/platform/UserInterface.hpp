#pragma once
// The person at the desk: boxes, the message window, status text, events that wait,
// and what the system tells through its windows.
#include <functional>
#include <optional>

#include "tsRtm/platform/DialogBoxes.hpp"
#include "tsRtm/platform/Notice.hpp"

namespace tsRtm::platform {

// With nobody attached (a server, a script), a box goes to standard error and gets the answer that loses
// nothing (safeAnswer).
class UserInterface {
 public:
    virtual ~UserInterface() = default;
    // Whether somebody is there to answer. The library writes what nobody has seen to its log.
    virtual bool attended() { return true; }
    // Gives the number of the answer.
    virtual int32 show(const MessageBox& box) = 0;
    // Tells the listener what happens until the dialog ends; nothing where it could not be shown. A ground
    // without task dialogs shows the same question as a plain box.
    virtual std::optional<DialogAnswer> showTaskDialog(const TaskDialog& dialog, const DialogListener& tell) {
        MessageBox plain = dialog;
        if (!dialog.headline.empty()) plain.body = dialog.headline + u"\r\r" + dialog.body;
        const int32 button = show(plain);
        tell(DialogNotice::buttonClick, button, {});
        return DialogAnswer{button, dialog.defaultOption, dialog.checked};
    }
    // Opens an address with the program that the system has for it.
    virtual void openLink(TextView address) = 0;
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

    // Whether the ground hears of changes of the system, some of those of Notice at least. It tells them
    // while events are handled.
    virtual bool hearsNotices() = 0;

    // Set by the library: what a click on the Abort button of the message window does, and, until the library
    // stops, whom to tell of changes of the system. Both are called on the thread of all else.
    std::function<void()> onAbort;
    std::function<void(Notice notice, int32 parameter)> onNotice;
};

}  // namespace tsRtm::platform
