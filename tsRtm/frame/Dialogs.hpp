#pragma once
// What a message box is asked for and how its prompt is taken apart.
#include "tsRtm/platform/UserInterface.hpp"

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

// The box of a system with rich task dialogs: headline, body with links, check box.
platform::MessageBox richBox(TextView prompt, int32 buttons);
// The box of a system without: the first "@" of the prompt becomes an empty line, no check box.
platform::MessageBox plainBox(TextView prompt, int32 buttons);

// Wraps each address "http:..." and "https:..." up to the next blank as a link, in a text that holds none
// yet.
Text withLinks(TextView body);

}  // namespace tsRtm
