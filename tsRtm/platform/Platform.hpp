#pragma once
// The seam: all that the library asks of an operating system, as references to small interfaces.
#include "tsRtm/platform/Clock.hpp"
#include "tsRtm/platform/FileSystem.hpp"
#include "tsRtm/platform/LocaleValues.hpp"
#include "tsRtm/platform/Random.hpp"
#include "tsRtm/platform/Settings.hpp"
#include "tsRtm/platform/SystemInfo.hpp"
#include "tsRtm/platform/UserInterface.hpp"

namespace tsRtm::platform {

// What rtmMain::Main takes. The referenced objects outlive the library's use of them.
struct Platform {
    FileSystem& files;
    Clock& clock;
    LocaleValues& locale;
    Settings& settings;
    SystemInfo& system;
    UserInterface& ui;
    Random& random;
};

}  // namespace tsRtm::platform
