#pragma once
// What a message box is asked for.
#include "tsRtm/types/Numbers.hpp"

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

}  // namespace tsRtm
