#pragma once
// From the arguments of a message box to the plain box of it.
#include "tsRtm/platform/DialogBoxes.hpp"
#include "tsRtm/types/DialogConstants.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

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
