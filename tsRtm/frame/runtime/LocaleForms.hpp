#pragma once
// What the user's locale and screen say, and date, time and currency formed by it.
#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtmMain {

// Fill the locale block and the screen block.
void ReadLocaleInfos();
void ReadSystemMetrics();

// The work area of the screen that a window is on, in twips; of the primary screen without a window, or where
// the ground cannot tell.
struct Rectangle {
    int32 left = 0, top = 0, right = 0, bottom = 0;
};
Rectangle WorkArea(int32 windowHandle);

// Name of the currency of the locale, "EUR" where it says "DM" from 2002 on.
Text CurrName();
// Current time "hh:mm" and date with four-digit year in the locale's form.
Text TI_();
Text DA8();
// A moment in the general local form: short date, blank, long time ("31.12.2024 18:05:09").
Text GeneralDate(Date moment);

}  // namespace tsRtm::rtmMain
