#pragma once
// What a message box is asked for, and the plain box of it.
#include "tsRtm/platform/DialogBoxes.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// Argument Buttons of TSMsgBox: the low three bits select the buttons, the rest are flags.
enum DialogConstants : int32 {
    dlgOKOnly = 0,
    dlgOKCancel = 1,
    dlgAbortRetryIgnore = 2,
    dlgYesNoCancel = 3,
    dlgYesNo = 4,
    dlgRetryCancel = 5,
    dlgCancelTryContinue = 6,
    dlgCritical = 16,
    dlgQuestion = 32,
    dlgExclamation = 48,
    dlgInformation = 64,
    dlgShield = 80,
    dlgCommandLinks = 128,
    dlgDefault1 = 0,
    dlgDefault2 = 256,
    dlgDefault3 = 512,
    dlgDefault4 = 768,
    dlgDontShowAgain = 2048,
    dlgSystemModal = 4096,
    dlgTaskModal = 8192,
    dlgHelpButton = 16384,
};

constexpr int32 dlgButtonSet = 7;  // the bits that select the buttons

// The buttons of a set (the low three bits), in order, as a plain box has them.
std::vector<int32> plainButtons(int32 set);
// Which of the buttons offered is the default one by the flags dlgDefault1 to dlgDefault4; the first where
// there is no such button.
int32 defaultButton(const std::vector<int32>& offered, int32 buttons);

// Writes a box that nobody has seen to the log, with the answer that it got.
void logUnattended(TextView text, int32 answer);

// The box of a system without task dialogs: the first "@" of the prompt becomes an empty line.
platform::MessageBox plainBox(TextView prompt, int32 buttons);

}  // namespace tsRtm
