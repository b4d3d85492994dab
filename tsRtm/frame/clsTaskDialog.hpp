#pragma once
// The dialog behind all questions and notices of the library.
#include "tsRtm/platform/DialogBoxes.hpp"
#include "tsRtm/types/DialogConstants.hpp"
#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class Messages;
class MessagesTopic;

// Configured, shown, and heard while it shows. It lies this low since every room asks through it.
//
//     clsTaskDialog dialog(rtm);
//     dialog.Prompt(u"Speichern?@Die Datei wurde geändert.", dlgYesNoCancel | dlgQuestion);
//     const auto ended = dialog.Timer.connect([&](int32 ms) { if (ms > 60000) dialog.ClickButton(2); });
//     if (dialog.Show() == 6) ...
class clsTaskDialog {
 public:
    // The topic gives captions of buttons; it outlives the dialog.
    explicit clsTaskDialog(MessagesTopic& messages);

    // Takes texts, buttons, icon and check box from the arguments of TSMsgBox. In the prompt "@" parts the
    // headline from the body, and addresses of the body become links.
    void Prompt(TextView Prompt, int32 Buttons = dlgOKOnly, const Variant& Titel = {});
    // All that there is to set, also beyond what a prompt sets: options, buttons of one's own, footer, timer.
    platform::TaskDialog& Configuration() noexcept { return dialog_; }

    // Shows the dialog until it is closed. Gives the number of the button, plus 2048 where there is a box to
    // tick and it was ticked; 0 where the dialog could not be shown. Throws what a listener throws.
    int32 Show();
    // Closes the dialog as a click on this button would. For listeners while it shows; without effect else.
    void ClickButton(int32 ButtonID) noexcept { clicked_ = ButtonID; }

    int32 hWnd() const noexcept { return window_; }  // while it shows, else 0
    // As the user left them.
    int32 Option() const noexcept { return option_; }
    bool Checked() const noexcept { return checked_; }

    Event<int32> ButtonClick;  // number of the button
    Event<> Constructed;       // the window is there, but does not show yet
    Event<> Created;
    Event<> Destroyed;
    Event<bool> Expand;  // whether the expanded text shows now
    Event<> Help;
    Event<Text> Hyperlink;     // an address that has been opened
    Event<> Navigated;         // the dialog shows new content
    Event<int32> OptionClick;  // number of the option
    Event<int32> Timer;        // milliseconds since the dialog was created
    Event<bool> Verify;        // whether the box is ticked now

 private:
    int32 hear(platform::DialogNotice notice, int32 value, TextView link);
    void tell(platform::DialogNotice notice, int32 value, TextView link);

    Messages& messages_;
    platform::TaskDialog dialog_;
    int32 window_ = 0, option_ = 0, clicked_ = 0;
    bool checked_ = false;
};

}  // namespace tsRtm
