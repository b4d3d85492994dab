// What the library says and asks: boxes, the status text and the message window.
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/clsTaskDialog.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Dialogs.hpp"
#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/tsMessage.hpp"

namespace tsRtm {

namespace {

constexpr int32 richDialogs = 610;  // version of the system's controls
constexpr int32 answerYes = 6;

template <class Assignment>
bool taken(Assignment assignment) noexcept {
    try {
        return assignment();
    } catch (...) {
        return false;
    }
}

bool putStatusBar(iStatusControl& bar, TextView message) {
    return bar.Style() == 0 ? bar.PanelText(message) : bar.SimpleText(message);
}

bool put(iStatusControl& control, TextView message) {
    const auto kind = [&] { return equalIgnoringCase(control.TypeName(), u"STATUSBAR"); };
    if (taken(kind)) return taken([&] { return putStatusBar(control, message); });
    if (taken([&] { return control.IsLabel(); })) return taken([&] { return control.Caption(message); });
    return taken([&] { return control.Text(message); }) || taken([&] { return control.Caption(message); }) ||
           taken([&] { return control.DefaultProperty(message); });
}

}  // namespace

int32 MessagesTopic::TSMsgBox(TextView Prompt, int32 Buttons, const Variant& Titel, TextView Helpfile,
                              int32 Context) {
    auto& ui = rtmMain::system().ui;
    if (ui.comCtlVersion() >= richDialogs) {
        clsTaskDialog dialog(*this);
        dialog.Prompt(Prompt, Buttons, Titel);
        dialog.Configuration().helpFile = Helpfile;
        dialog.Configuration().helpContext = Context;
        return dialog.Show();
    }
    auto box = plainBox(Prompt, Buttons);
    box.title = textOf(Titel);
    if ((Buttons & dlgButtonSet) < dlgCancelTryContinue) {
        box.helpFile = Helpfile;
        box.helpContext = Context;
    }
    box.parent = rtmMain::state().appHWnd;
    const int32 answer = ui.show(box);
    logUnattended(box.body, answer);
    return answer;
}

void MessagesTopic::Fehler(TextView FehlerText) { TSMsgBox(FehlerText, dlgOKOnly | dlgCritical, u"Fehler"); }

bool MessagesTopic::Frage(TextView Message) {
    return TSMsgBox(Message, dlgYesNo | dlgQuestion, u"Frage") == answerYes;
}

void MessagesTopic::WaitForReturn(TextView Message) { TSMsgBox(Message, dlgOKOnly, u"Hinweis"); }

void MessagesTopic::NotAktivExt() {
    TSMsgBox(
        u"Es wird noch an der Realisierung gearbeitet und getestet. Der Aufruf der Funktion ist hier bereits "
        u"realisiert, damit sie ohne Änderung der Anwendung zur Verfügung steht, sobald sie fertig ist.",
        dlgOKOnly | dlgInformation, u"Hinweis");
}

void MessagesTopic::Nachricht(TextView Message) { SetMessage(Message, rtmMain::state().messageLine); }

bool MessagesTopic::SetMessage(TextView Message, const std::shared_ptr<Object>& Ctrl) {
    const auto control = std::dynamic_pointer_cast<iStatusControl>(Ctrl);
    if (!control) return false;
    const bool done = put(*control, Message);
    taken([&] { return control->Refresh(), true; });
    return done;
}

void MessagesTopic::HaltNachricht(TextView Message) { tsMessage().Message(Message); }

void MessagesTopic::ClearHaltNachricht() { tsMessage().Hide(); }

}  // namespace tsRtm
