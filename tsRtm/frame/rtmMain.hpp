#pragma once
// The start of the library, its global state, the debug log, and its stop.
//
// One copy of the state per process. Main fills it once, before the first public object is handed out; only
// the locale block, the screen block and the currency cache change later, on a notice of the system.
#include <functional>

#include "tsRtm/platform/Platform.hpp"
#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

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
    Text tempDir;  // cached at first read
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
    bool stopping = false;      // WMStop has run: waits end
    bool lockWait = false;      // a wait for a lock is under way: timers stay away
    int32 updatesUnderWay = 0;  // changes of database indexes that this program is in the middle of
    std::shared_ptr<Object> messageLine;
    std::shared_ptr<Object> shortcuts;  // the input shortcuts, kept by their topic
    Text appProgID;
    int32 appHWnd = 0;
    Text appHelpURL;
    int32 bundesland = 0;
    Text currNameCache;
    bool adresseMitAnrede = false;  // the option as it was last read, for the printing of addresses
};

// The state; valid at any time, filled by Main.
State& state() noexcept;

// The ground that Main was given. Before Main: the ground of this machine.
platform::Platform& system();

// Starts the library on a ground; a second call does nothing. Never fails and reports nothing to the user.
void Main(platform::Platform& ground);
// Main on the ground of this machine where Main has not run; what every facade object calls at its creation.
void ensureStarted();
bool started() noexcept;
// Starts anew on another ground, with a fresh state. For tests.
void TEST_restart(platform::Platform& ground);
// Back to "not started" with a fresh state on the ground of this machine. For tests whose ground ends.
void TEST_forget();

// Stops the library: ends listening to the system. May run twice. The state stays readable.
void WMStop();
// Hands over how the object that hears the system's events ends its listening; WMStop calls it once.
void holdSystemEvents(std::function<void()> dispose);

// What the library does on a notice of the system between calls; the ground tells it through the seam.
// Nothing after the stop.
void notify(platform::Notice notice, int32 parameter);

// Fill the locale block and the screen block.
void ReadLocaleInfos();
void ReadSystemMetrics();

// One line in the debug log while the log is on. Failures are ignored.
void DebugLog(TextView text);

// The start-time reader of the settings store, by whole key ("Software\Tessarol"); empty for none.
Text RegRaw(platform::HKeys hive, TextView subKey, TextView name);
// A switch value: the number in the first `characters` characters of the text, rounded.
int32 SwitchValue(TextView text, std::size_t characters = 3);
// A special folder; empty where there is none.
Text SpecialFolder(int32 id);
// Non-empty parts joined by the path delimiter; the first one stands as it is. A part that would make the
// path 260 characters or longer is left out.
Text JoinPath(std::initializer_list<TextView> parts);
// Appends a part behind a delimiter; false, and nothing done, where the path would reach `limit` characters.
bool AppendPath(Text& path, TextView part, std::size_t limit = 260);
// Whether a character separates the parts of a path: data come from systems of both kinds.
constexpr bool isDelimiter(char16_t c) noexcept { return c == u'\\' || c == u'/'; }
// The platform's path delimiter.
Text PathDelimiter();
// Whether a folder is there or could be made.
bool EnsureFolder(TextView path);
bool CheckAccess(TextView path, int32 objectType, int32 mask);
// The work area of the screen that a window is on, in twips; of the primary screen without a window, or where
// the ground cannot tell.
struct Rectangle {
    int32 left = 0, top = 0, right = 0, bottom = 0;
};
Rectangle WorkArea(int32 windowHandle);
// Up to the first NUL.
Text CutAtNul(TextView text);

// An int32 in five characters at most: 0..99999 in decimal, others in base 94 with no digit in front.
Text EncodeNumber(int32 value);
// Its inverse; leading blanks are skipped, anything unreadable gives 0.
int32 DecodeNumber(TextView text) noexcept;

// Name of the currency of the locale, "EUR" where it says "DM" from 2002 on.
Text CurrName();
// Current time "hh:mm" and date with four-digit year in the locale's form.
Text TI_();
Text DA8();
// A moment in the general local form: short date, blank, long time ("31.12.2024 18:05:09").
Text GeneralDate(Date moment);

}  // namespace tsRtm::rtmMain
