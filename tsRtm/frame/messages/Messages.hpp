#pragma once
// The texts of the library and the way failures travel: numbered messages, captions, key names, the handler
// of what is pending, and the boxes that ask and tell.
#include <array>
#include <optional>

#include "tsRtm/platform/DialogBoxes.hpp"
#include "tsRtm/types/Captions.hpp"
#include "tsRtm/types/DialogConstants.hpp"
#include "tsRtm/types/Failure.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// What setCurrentFailure does.
void leaveFailure(int32 number, TextView description);

// The operations of MessagesTopic of the same names, which tells them in full. Each object keeps its own key
// names and its own verdict on system captions; the pending failure (F, FE_) is the state's, one for the
// process.
class Messages {
 public:
    Messages() = default;
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    Text RtmMsg(int32 MsgNumber);
    static int32 LangNr(int32 Nr);
    Text ErrorMsg(int32 FehlerNr);
    Text ErrorMessage(const Failure& Fehler, int32 Zeile);
    static Text SystemMsg(int32 FehlerNr);
    void ErrorHandler(int32 Param, TextView Source);

    static void InsertMsg(Text& Message, int32 Position, TextView Insert);
    void ExpandSpecial(Text& Line);
    Text KeyNames(int32 KeyNumber);
    Text StandardText(int32 Nr);

    bool Frage(TextView Message);
    void WaitForReturn(TextView Message);
    int32 TSMsgBox(TextView Prompt, int32 Buttons, const Variant& Titel = {}, TextView Helpfile = {},
                   int32 Context = 0);

    // Puts texts, buttons, icon and check box by the arguments of TSMsgBox into a dialog; the rest of it
    // stays.
    void setPrompt(platform::TaskDialog& dialog, TextView prompt, int32 buttons, const Variant& title);

 private:
    Text describe(const Text& number, TextView description);
    void fillKeyNames();
    bool systemCaptionsAllowed();
    void setButtons(platform::TaskDialog& dialog, int32 buttons);

    std::optional<std::array<Text, 20>> keyNames_;
    std::optional<bool> systemCaptions_;
};

// Shows a dialog over the application's window until it is closed; nothing where it could not be shown. The
// listener hears what happens in it, a link after it has been opened. What nobody has seen goes to the log.
std::optional<platform::DialogAnswer> showDialog(platform::TaskDialog& dialog,
                                                 const platform::DialogListener& listener);
// The number that TSMsgBox gives for an answer.
int32 answerNumber(const platform::TaskDialog& dialog,
                   const std::optional<platform::DialogAnswer>& answer) noexcept;

}  // namespace tsRtm
