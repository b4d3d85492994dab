// What the library asks and tells: task dialogs where the system has them, else plain boxes.
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Dialogs.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

constexpr int32 richDialogs = 610;  // version of the system's controls
constexpr int32 answerYes = 6;

}  // namespace

int32 Messages::TSMsgBox(TextView Prompt, int32 Buttons, const Variant& Titel, TextView Helpfile,
                         int32 Context) {
    auto& dialogs = rtmMain::system().dialogs;
    if (dialogs.comCtlVersion() >= richDialogs) {
        platform::TaskDialog dialog;
        setPrompt(dialog, Prompt, Buttons, Titel);
        dialog.helpFile = Helpfile;
        dialog.helpContext = Context;
        const auto goOn = [](platform::DialogNotice, int32, TextView) { return 0; };
        return answerNumber(dialog, showDialog(dialog, goOn));
    }
    auto box = plainBox(Prompt, Buttons);
    box.title = textOf(Titel);
    if ((Buttons & dlgButtonSet) < dlgCancelTryContinue) {
        box.helpFile = Helpfile;
        box.helpContext = Context;
    }
    box.parent = rtmMain::state().appHWnd;
    const int32 answer = dialogs.show(box);
    logUnattended(box.body, answer);
    return answer;
}

bool Messages::Frage(TextView Message) {
    return TSMsgBox(Message, dlgYesNo | dlgQuestion, u"Frage") == answerYes;
}

void Messages::WaitForReturn(TextView Message) { TSMsgBox(Message, dlgOKOnly, u"Hinweis"); }

}  // namespace tsRtm
