#pragma once
// The seam: all that the library asks of an operating system, as references to small interfaces.
#include "tsRtm/platform/Choices.hpp"
#include "tsRtm/platform/Clock.hpp"
#include "tsRtm/platform/Dialogs.hpp"
#include "tsRtm/platform/FileSystem.hpp"
#include "tsRtm/platform/LocaleValues.hpp"
#include "tsRtm/platform/Random.hpp"
#include "tsRtm/platform/Screen.hpp"
#include "tsRtm/platform/Settings.hpp"
#include "tsRtm/platform/SystemInfo.hpp"
#include "tsRtm/platform/SystemTexts.hpp"
#include "tsRtm/platform/TimeZones.hpp"
#include "tsRtm/platform/UserInfo.hpp"
#include "tsRtm/platform/UserInterface.hpp"

namespace tsRtm::platform {

// What rtmMain::Main takes. The referenced objects outlive the library's use of them; one object may serve
// several interfaces.
struct Platform {
    FileSystem& files;
    Clock& clock;
    LocaleValues& locale;
    Settings& settings;
    SettingsCare& settingsCare;
    SystemInfo& system;
    UserInfo& user;
    Screen& screen;
    UserInterface& ui;
    Dialogs& dialogs;
    Choices& choices;
    SystemTexts& texts;
    Random& random;
    TimeZones& zones;
};

}  // namespace tsRtm::platform
