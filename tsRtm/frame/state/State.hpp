#pragma once
// What the library knows of its machine, its user and its run: plain data, without an operation of its own.
//
// One copy per process. The start fills it once, before the first public object is handed out; only the
// locale block, the screen block and the currency cache change later, on a notice of the system.
#include <chrono>
#include <memory>
#include <optional>

#include "tsRtm/platform/Screen.hpp"
#include "tsRtm/platform/SystemInfo.hpp"
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {
class CountFile;
}

namespace tsRtm::rtmMain {

// What the user's locale says; read anew on a change of the system's settings.
struct LocaleBlock {
    int32 country = 0;
    Text countryName;
    Text sepDate, sepTime, sepDec, sep1000;
    int32 dateForm = 1;  // 0 MMTTJJJJ, 1 TTMMJJJJ, 2 JJJJMMTT
    int32 timeForm = 1;
    int32 currForm = 0;
    int32 currDigits = 2;
    int32 calendarType = 1;
    int32 firstDayOfWeek = 0;
    int32 firstWeekOfYear = 0;
    char16_t lastChar = u'Z';  // the character that sorts last in this locale
};

// The screen as the system gives it, and what follows from it in twips.
struct ScreenBlock : platform::ScreenMetrics {
    int32 frameXTwips = 0, frameYTwips = 0;  // edge and border together
    int32 virtualLeftTwips = 0, virtualTopTwips = 0, virtualRightTwips = 0, virtualBottomTwips = 0;
};

struct State {
    bool debugging = false;
    platform::OsVersion os;
    platform::Processor processor;
    int32 lcid = 0;
    int32 langId = 0;
    int32 codePage = 1252;
    LocaleBlock locale;
    ScreenBlock screen;
    Text runtimeDir, runtimeDataDir, userDir;
    Text tempDir;        // cached at first read
    Text supportDBPath;  // likewise
    Text hostPath;
    bool oldTS = false;
    bool expert = false;
    int32 netWait = 5;         // seconds
    int32 FE_ = 0;             // pending failure number
    Text pendingText;          // description kept with FE_
    int32 F = 0;               // last failure number, 0 none
    int32 currentFailure = 0;  // the platform's current failure, taken by ErrorHandler(-2)
    Text currentFailureText;
    bool breakFlag = false;
    bool stopped = false;
    bool stoppedEnabled = false;
    bool stopping = false;  // WMStop has run: waits end
    bool durable = false;   // databases acknowledge what is on the device
    bool lockWait = false;  // a wait for a lock is under way: timers stay away
    // Of the databases whose indexes this program is in the middle of changing.
    std::vector<const CountFile*> updatesUnderWay;
    std::shared_ptr<Object> messageLine;
    std::shared_ptr<Object> shortcuts;  // the input shortcuts, kept by their topic
    Text appProgID;
    int32 appHWnd = 0;
    Text appHelpURL;
    int32 bundesland = 0;
    Text currNameCache;
    // The last fax, by the time since the start of the machine (0 none), and the pause behind it in
    // milliseconds.
    std::chrono::nanoseconds lastFax{0};
    int32 faxPause = 0;
    // The option as it was last read, for the printing of addresses; nothing before.
    std::optional<bool> adresseMitAnrede;
};

// The state; valid at any time, filled by the start.
State& state() noexcept;

}  // namespace tsRtm::rtmMain
