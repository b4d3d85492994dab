#pragma once
// Questions and notices to the person at the desk.
#include <optional>

#include "tsRtm/platform/DialogBoxes.hpp"

namespace tsRtm::platform {

// With nobody attached (a server, a script), a box goes to standard error and gets the answer that loses
// nothing (safeAnswer).
class Dialogs {
 public:
    virtual ~Dialogs() = default;
    // Whether somebody is there to answer. The library writes what nobody has seen to its log.
    virtual bool attended() = 0;
    // Gives the number of the answer.
    virtual int32 show(const MessageBox& box) = 0;
    // Tells the listener what happens until the dialog ends; nothing where it could not be shown. A ground
    // without task dialogs gives showPlainly.
    virtual std::optional<DialogAnswer> showTaskDialog(const TaskDialog& dialog,
                                                       const DialogListener& tell) = 0;
    // Asks for a line of text; the preset one where nobody is there, nothing where the user gives up.
    virtual std::optional<Text> ask(TextView prompt, TextView title, TextView preset) = 0;
    // Opens an address with the program that the system has for it.
    virtual void openLink(TextView address) = 0;
    // Version of the system's control library: 610 with rich task dialogs, 580 with plain boxes only.
    virtual int32 comCtlVersion() = 0;
};

// The question of a task dialog as a plain box.
inline DialogAnswer showPlainly(Dialogs& dialogs, const TaskDialog& dialog, const DialogListener& tell) {
    MessageBox plain = dialog;
    if (!dialog.headline.empty()) plain.body = dialog.headline + u"\r\r" + dialog.body;
    const int32 button = dialogs.show(plain);
    tell(DialogNotice::buttonClick, button, {});
    return DialogAnswer{button, dialog.defaultOption, dialog.checked};
}

}  // namespace tsRtm::platform
