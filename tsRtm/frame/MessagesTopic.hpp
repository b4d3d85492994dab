#pragma once
// The texts of the library and the way failures travel: numbered messages, captions, key names, the central
// failure handler, and the questions and notices that all other rooms ask through.
#include <memory>

#include "tsRtm/types/Captions.hpp"
#include "tsRtm/types/DialogConstants.hpp"
#include "tsRtm/types/Failure.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class Messages;

// Whoever catches a failure that it will record leaves it here before ErrorHandler(-2), which takes it into
// FE_ and the pending description. `number` is a run-time error number (53 file not found, 70 no permission
// ...); an empty description takes the one of that number.
void setCurrentFailure(int32 number, TextView description = {});

// The topic of clsRtm for messages. Each object keeps its own key names and its own verdict on system
// captions; the pending failure (F, FE_) is the state's, one for the process.
class MessagesTopic {
 public:
    MessagesTopic();  // starts the library where it is not started
    virtual ~MessagesTopic();

    // Text of message 0..511 in the language of the system, expanded by ExpandSpecial. Flags: 1024 a blank in
    // front, 2048 a blank behind, 4096 "..." behind, 8192 not expanded. Empty where the language has no such
    // text.
    Text RtmMsg(int32 MsgNumber);
    // The number of a message in the language of the system: German +1000, English +2000, others +30000.
    // Raises 6 where that is beyond int32.
    int32 LangNr(int32 Nr) const;

    // "Fehler 53: Datei nicht gefunden"; empty for -1, a negative number in hexadecimal.
    Text ErrorMsg(int32 FehlerNr);
    // The same of a failure; with a line over 0, " in Zeile " and the line.
    Text ErrorMessage(const Failure& Fehler, int32 Zeile = 0);
    // Description of a system error number.
    Text SystemMsg(int32 FehlerNr) const;

    // Absorbs, records, shows or raises what is pending in FE_. Param: -2 takes the current failure into FE_
    // and stops where it is outside 1..49; -1 moves FE_ to F and clears it; 0 shows or raises anything
    // pending; n does so too, but absorbs n. Failures 24 to 27 ask whether to go on. Raises FE_ for 1..19
    // without a description.
    void ErrorHandler(int32 Param) { ErrorHandler(Param, u"ErrorHandler"); }
    void ErrorHandler(int32 Param, TextView Source);

    // Puts a text in all places "%Position" of a message; Position is 1..9.
    void InsertMsg(Text& Message, int32 Position, TextView Insert);
    void InsertMsgNr(Text& Message, int32 Position, int32 Nr) { InsertMsg(Message, Position, toText(Nr)); }
    // "#nn" becomes the name of key nn, "«C»" the name of the currency, "«D»" today's date.
    void ExpandSpecial(Text& Line);
    // Name of a key of eKeyIDs, "?" outside 0..19.
    Text KeyNames(int32 KeyNumber);
    // Button caption of eStringIDs in the language of the system; empty where there is none.
    Text StandardText(int32 Nr);

    // Boxes. Frage is true on Yes.
    void Fehler(TextView FehlerText);
    bool Frage(TextView Message);
    void Frage(TextView Message, bool& Answer) { Answer = Frage(Message); }
    void WaitForReturn(TextView Message);
    void NotAktiv() { WaitForReturn(RtmMsg(39)); }
    void NotAktivExt();
    // A question or notice; gives the number of the button (1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6
    // Yes, 7 No, 10 Try again, 11 Continue), plus 2048 where the user ticked "do not show again". In the
    // prompt "@" parts the headline from the body.
    int32 TSMsgBox(TextView Prompt, int32 Buttons = dlgOKOnly, const Variant& Titel = {},
                   TextView Helpfile = {}, int32 Context = 0);

    // Status text on the application's MessageLine; nothing where it has none.
    void Nachricht(TextView Message);
    void ClearMsg() { Nachricht({}); }
    // Whether the control took the text. Never fails.
    bool SetMessage(TextView Message, const std::shared_ptr<Object>& Ctrl);

    // The small window with an Abort button; a click on it sets Stopped and closes the window.
    void HaltNachricht(TextView Message);
    void ClearHaltNachricht();

 private:
    friend class FilesTopic;
    friend class clsTaskDialog;

    std::unique_ptr<Messages> messages_;
};

}  // namespace tsRtm
