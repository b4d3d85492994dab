#include "tsRtm/frame/clsTaskDialog.hpp"

#include <utility>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/DialogTexts.hpp"
#include "tsRtm/frame/messages/Dialogs.hpp"
#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

using platform::DialogIcon;
using platform::DialogNotice;

constexpr int32 idIgnore = 5, idTryAgain = 10, idContinue = 11;
constexpr int32 iconBits = 112;
constexpr int32 rightToLeft = 0x100000;  // the system's own flag

// Forgets the window when the dialog ends, also by a listener that throws.
struct WindowGone {
    int32& window;
    ~WindowGone() { window = 0; }
};

}  // namespace

void clsTaskDialog::Prompt(TextView Prompt, int32 Buttons, const Variant& Titel) {
    auto [headline, body] = splitPrompt(Prompt);
    dialog_.title = textOf(Titel);
    dialog_.headline = std::move(headline);
    dialog_.body = withLinks(body);
    dialog_.buttons = Buttons;
    dialog_.checkBox = Buttons & dlgDontShowAgain ? dontShowAgainText(Buttons & dlgButtonSet) : TextView{};
    dialog_.commandLinks = Buttons & dlgCommandLinks;
    dialog_.rightToLeft = Buttons & rightToLeft;
    setButtons(Buttons);
    setIcon(Buttons);
}

void clsTaskDialog::setButtons(int32 buttons) {
    const int32 set = buttons & dlgButtonSet;
    dialog_.answers = plainButtons(set);
    dialog_.ownButtons.clear();
    if (set == dlgAbortRetryIgnore) {
        // A task dialog has no Abort: Cancel takes its place, behind Retry.
        dialog_.answers = {4, 2, idIgnore};
        dialog_.ownButtons = {{idIgnore, messages_.StandardText(sidIgnore)}};
    } else if (set == dlgCancelTryContinue) {
        dialog_.ownButtons = {{idTryAgain, messages_.StandardText(sidAgain)},
                              {idContinue, messages_.StandardText(sidContinue)}};
        buttons = 0;  // no flag makes another button than Cancel the default
    }
    dialog_.defaultAnswer = defaultButton(dialog_.answers, buttons);
}

void clsTaskDialog::setIcon(int32 buttons) {
    dialog_.picture = {};
    switch (buttons & iconBits) {
        case dlgCritical:
            dialog_.icon = DialogIcon::stop;
            break;
        case dlgQuestion:
            dialog_.icon = DialogIcon::picture;
            dialog_.picture = RtmIcon();
            break;
        case dlgExclamation:
            dialog_.icon = DialogIcon::warning;
            break;
        case dlgInformation:
            dialog_.icon = DialogIcon::information;
            break;
        case dlgShield:
            dialog_.icon = DialogIcon::shield;
            break;
        default:
            dialog_.icon = DialogIcon::none;
            break;
    }
}

int32 clsTaskDialog::Show() {
    dialog_.parent = rtmMain::state().appHWnd;
    clicked_ = 0;
    const WindowGone gone{window_};
    const auto answer = rtmMain::system().ui.showTaskDialog(
        dialog_,
        [this](DialogNotice notice, int32 value, TextView link) { return hear(notice, value, link); });
    logUnattended(dialog_.headline + u" " + dialog_.body, answer ? answer->button : 0);
    if (!answer) return 0;
    option_ = answer->option;
    checked_ = answer->checked;
    return answer->button + (checked_ && !dialog_.checkBox.empty() ? dlgDontShowAgain : 0);
}

int32 clsTaskDialog::hear(DialogNotice notice, int32 value, TextView link) {
    tell(notice, value, link);
    return std::exchange(clicked_, 0);
}

void clsTaskDialog::tell(DialogNotice notice, int32 value, TextView link) {
    switch (notice) {
        case DialogNotice::created:
            return Created();
        case DialogNotice::navigated:
            return Navigated();
        case DialogNotice::buttonClick:
            return ButtonClick(value);
        case DialogNotice::hyperlink:
            rtmMain::system().ui.openLink(link);
            return Hyperlink(Text(link));
        case DialogNotice::timer:
            return Timer(value);
        case DialogNotice::destroyed:
            window_ = 0;
            return Destroyed();
        case DialogNotice::optionClick:
            return OptionClick(value);
        case DialogNotice::constructed:
            window_ = value;
            return Constructed();
        case DialogNotice::verify:
            return Verify(value != 0);
        case DialogNotice::help:
            return Help();
        case DialogNotice::expand:
            return Expand(value != 0);
    }
}

}  // namespace tsRtm
