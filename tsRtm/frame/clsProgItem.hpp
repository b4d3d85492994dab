#pragma once
// One program of an application's menu.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

using ConfigTypes = int32;  // stored only
using GUIStates = int32;    // stored only

// A plain record, filled and read by the application.
struct clsProgItem {
    int32 ID = 0;  // program id for the menu dispatcher
    Text Caption;
    Text TooltipText;
    Text MenuCaption;
    ConfigTypes ConfigType = 0;
    int32 IconIndex = 0;
    GUIStates Status = 0;
    int32 Category = 0;
    Text KeyWords;
    bool SingleUse = false;
    Text Rights;
    int32 Count = 0;
};

}  // namespace tsRtm
