#include "tsRtm/frame/MessagesTopic.hpp"

#include "tsRtm/frame/iStatusControl.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/tsMessage.hpp"

namespace tsRtm {

namespace {

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

void setCurrentFailure(int32 number, TextView description) { leaveFailure(number, description); }

MessagesTopic::MessagesTopic() : messages_(std::make_unique<Messages>()) { rtmMain::ensureStarted(); }
MessagesTopic::~MessagesTopic() = default;

Text MessagesTopic::RtmMsg(int32 MsgNumber) { return messages_->RtmMsg(MsgNumber); }
int32 MessagesTopic::LangNr(int32 Nr) const { return Messages::LangNr(Nr); }
Text MessagesTopic::ErrorMsg(int32 FehlerNr) { return messages_->ErrorMsg(FehlerNr); }
Text MessagesTopic::ErrorMessage(const Failure& Fehler, int32 Zeile) {
    return messages_->ErrorMessage(Fehler, Zeile);
}
Text MessagesTopic::SystemMsg(int32 FehlerNr) const { return Messages::SystemMsg(FehlerNr); }
void MessagesTopic::ErrorHandler(int32 Param, TextView Source) { messages_->ErrorHandler(Param, Source); }

void MessagesTopic::InsertMsg(Text& Message, int32 Position, TextView Insert) {
    Messages::InsertMsg(Message, Position, Insert);
}
void MessagesTopic::ExpandSpecial(Text& Line) { messages_->ExpandSpecial(Line); }
Text MessagesTopic::KeyNames(int32 KeyNumber) { return messages_->KeyNames(KeyNumber); }
Text MessagesTopic::StandardText(int32 Nr) { return messages_->StandardText(Nr); }

int32 MessagesTopic::TSMsgBox(TextView Prompt, int32 Buttons, const Variant& Titel, TextView Helpfile,
                              int32 Context) {
    return messages_->TSMsgBox(Prompt, Buttons, Titel, Helpfile, Context);
}
void MessagesTopic::Fehler(TextView FehlerText) { TSMsgBox(FehlerText, dlgOKOnly | dlgCritical, u"Fehler"); }

bool MessagesTopic::Frage(TextView Message) { return messages_->Frage(Message); }
void MessagesTopic::WaitForReturn(TextView Message) { messages_->WaitForReturn(Message); }

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
