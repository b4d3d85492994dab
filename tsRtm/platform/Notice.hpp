#pragma once
// What a system tells between two calls of the library.
namespace tsRtm::platform {

// The parameter told with a notice: of a setting change 0 for the locale and 42 for the measures of windows;
// else for the log only.
enum class Notice {
    sysColorChange,
    settingChange,
    devModeChange,
    timeChange,
    inputLangChange,
    displayChange,
    powerBroadcast,
    deviceChange,
    destroyed,  // whoever hears them ends, and with it the library's use of the system
};

}  // namespace tsRtm::platform
