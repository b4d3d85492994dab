// From the arguments of a question to a task dialog, and its answer.
#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/DialogTexts.hpp"
#include "tsRtm/frame/messages/Dialogs.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

using platform::DialogIcon;
using platform::DialogNotice;

constexpr int32 idIgnore = 5, idTryAgain = 10, idContinue = 11;
constexpr int32 iconBits = 112;
constexpr int32 rightToLeft = 0x100000;  // the system's own flag

void setIcon(platform::TaskDialog& dialog, int32 buttons) {
    dialog.picture = {};
    switch (buttons & iconBits) {
        case dlgCritical:
            dialog.icon = DialogIcon::stop;
            break;
        case dlgQuestion:
            dialog.icon = DialogIcon::picture;
            dialog.picture = RtmIcon();
            break;
        case dlgExclamation:
            dialog.icon = DialogIcon::warning;
            break;
        case dlgInformation:
            dialog.icon = DialogIcon::information;
            break;
        case dlgShield:
            dialog.icon = DialogIcon::shield;
            break;
        default:
            dialog.icon = DialogIcon::none;
            break;
    }
}

}  // namespace

void Messages::setPrompt(platform::TaskDialog& dialog, TextView prompt, int32 buttons, const Variant& title) {
    auto [headline, body] = splitPrompt(prompt);
    dialog.title = textOf(title);
    dialog.headline = std::move(headline);
    dialog.body = withLinks(body);
    dialog.buttons = buttons;
    dialog.checkBox = buttons & dlgDontShowAgain ? dontShowAgainText(buttons & dlgButtonSet) : TextView{};
    dialog.commandLinks = buttons & dlgCommandLinks;
    dialog.rightToLeft = buttons & rightToLeft;
    setButtons(dialog, buttons);
    setIcon(dialog, buttons);
}

void Messages::setButtons(platform::TaskDialog& dialog, int32 buttons) {
    const int32 set = buttons & dlgButtonSet;
    dialog.answers = plainButtons(set);
    dialog.ownButtons.clear();
    if (set == dlgAbortRetryIgnore) {
        // A task dialog has no Abort: Cancel takes its place, behind Retry.
        dialog.answers = {4, 2, idIgnore};
        dialog.ownButtons = {{idIgnore, StandardText(sidIgnore)}};
    } else if (set == dlgCancelTryContinue) {
        dialog.ownButtons = {{idTryAgain, StandardText(sidAgain)}, {idContinue, StandardText(sidContinue)}};
        buttons = 0;  // no flag makes another button than Cancel the default
    }
    dialog.defaultAnswer = defaultButton(dialog.answers, buttons);
}

std::optional<platform::DialogAnswer> showDialog(platform::TaskDialog& dialog,
                                                 const platform::DialogListener& listener) {
    dialog.parent = rtmMain::state().appHWnd;
    const auto answer = rtmMain::system().dialogs.showTaskDialog(
        dialog, [&](DialogNotice notice, int32 value, TextView link) {
            if (notice == DialogNotice::hyperlink) rtmMain::system().dialogs.openLink(link);
            return listener(notice, value, link);
        });
    logUnattended(dialog.headline + u" " + dialog.body, answer ? answer->button : 0);
    return answer;
}

int32 answerNumber(const platform::TaskDialog& dialog,
                   const std::optional<platform::DialogAnswer>& answer) noexcept {
    if (!answer) return 0;
    return answer->button + (answer->checked && !dialog.checkBox.empty() ? dlgDontShowAgain : 0);
}

}  // namespace tsRtm
