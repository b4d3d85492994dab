#include "tsRtm/frame/clsCommon.hpp"

#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/runtime/OSName.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/state/SystemKinds.hpp"

namespace tsRtm {

using rtmMain::state;

namespace {

constexpr int32 lastBundesland = 16;
constexpr TextView libraryVersion = u"3.01.0526";

platform::SystemInfo& ground() { return rtmMain::system().system; }

}  // namespace

clsCommon::clsCommon() { rtmMain::ensureStarted(); }

Text clsCommon::App_ProgID() const { return state().appProgID; }
void clsCommon::App_ProgID(Text value) { state().appProgID = std::move(value); }
int32 clsCommon::App_hWnd() const { return state().appHWnd; }
void clsCommon::App_hWnd(int32 value) { state().appHWnd = value; }
Text clsCommon::App_HelpURL() const { return state().appHelpURL; }
void clsCommon::App_HelpURL(Text value) { state().appHelpURL = std::move(value); }

std::shared_ptr<clsHostApp> clsCommon::RTMApp() const {
    static const auto app = std::make_shared<clsHostApp>();
    return app;
}

std::shared_ptr<Object> clsCommon::MessageLine() const { return state().messageLine; }
void clsCommon::MessageLine(std::shared_ptr<Object> value) { state().messageLine = std::move(value); }

bool clsCommon::Break() const { return state().breakFlag; }
void clsCommon::Break(bool value) { state().breakFlag = value; }

bool clsCommon::Stopped() { return std::exchange(state().stopped, false); }

void clsCommon::Stopped(bool value) {
    if (state().stoppedEnabled) state().stopped = value;
}

bool clsCommon::StoppedEnabled() const { return state().stoppedEnabled; }

void clsCommon::StoppedEnabled(bool value) {
    state().stoppedEnabled = value;
    state().stopped = false;
}

int32 clsCommon::OSTyp() const { return state().os.platformId; }
int32 clsCommon::OSVersion() const { return state().os.major * 100 + state().os.minor; }
Text clsCommon::OSName() const { return osName(state().os); }
bool clsCommon::IsWin64() const { return ground().is64Bit(); }

bool clsCommon::IsUserAdmin() const {
    if (OSTyp() != systemKind::ntFamily) return true;
    return state().os.major >= 5 && rtmMain::system().user.isUserAdmin();
}

TOKEN_ELEVATION_TYPE clsCommon::ElevationType() const {
    if (OSTyp() != systemKind::ntFamily || state().os.major < 6) return TokenElevationTypeDefault;
    return static_cast<TOKEN_ELEVATION_TYPE>(rtmMain::system().user.elevationType());
}

int32 clsCommon::Prozessor() const { return state().processor.type; }
bool clsCommon::KoProzessor() const { return state().processor.floatingPoint; }

Text clsCommon::RuntimeDir() const { return state().runtimeDir; }
void clsCommon::RuntimeDir(Text value) { state().runtimeDir = std::move(value); }
Text clsCommon::RuntimeDataDir() const { return state().runtimeDataDir; }
void clsCommon::RuntimeDataDir(Text value) { state().runtimeDataDir = std::move(value); }
Text clsCommon::UserDir() const { return state().userDir; }
void clsCommon::UserDir(Text value) { state().userDir = std::move(value); }

Text clsCommon::TempDir() const {
    Text& cached = state().tempDir;
    if (cached.empty()) cached = rtmMain::CutAtNul(ground().tempFolder());
    return cached;
}

bool clsCommon::OldTS() const { return state().oldTS; }
Text clsCommon::RTMVersion() const { return Text(libraryVersion); }
Text clsCommon::LastChar() const { return Text(1, state().locale.lastChar); }
Text clsCommon::TI_() const { return rtmMain::TI_(); }
Text clsCommon::DA8() const { return rtmMain::DA8(); }

int32 clsCommon::Date_Form() const { return state().locale.dateForm; }
Text clsCommon::Sep_Date() const { return state().locale.sepDate; }
Text clsCommon::Sep_Time() const { return state().locale.sepTime; }
Text clsCommon::Sep_Dec() const { return state().locale.sepDec; }
Text clsCommon::Sep_1000() const { return state().locale.sep1000; }
int32 clsCommon::Time_Form() const { return state().locale.timeForm; }
int32 clsCommon::Curr_Form() const { return state().locale.currForm; }
int32 clsCommon::Curr_Digits() const { return state().locale.currDigits; }
Text clsCommon::CurrName() const { return rtmMain::CurrName(); }
int32 clsCommon::Language() const { return state().langId & 0xFF; }
int32 clsCommon::Country() const { return state().locale.country; }
Text clsCommon::CountryName() const { return state().locale.countryName; }
int32 clsCommon::CodePage() const { return state().codePage; }

Bundeslaender clsCommon::Bundesland() const { return static_cast<Bundeslaender>(state().bundesland); }

void clsCommon::Bundesland(Bundeslaender value) {
    if (value >= 0 && value <= lastBundesland) state().bundesland = value;
}

int32 clsCommon::DisplayZeilen() const { return state().screen.fullY; }
int32 clsCommon::DisplaySpalten() const { return state().screen.fullX; }
int32 clsCommon::NetWait() const { return state().netWait; }
int32 clsCommon::Expert() const { return state().expert ? -1 : 0; }

int32 clsCommon::FE_() const { return state().FE_; }
void clsCommon::FE_(int32 value) { state().FE_ = value; }
int32 clsCommon::F() const { return state().F; }
void clsCommon::F(int32 value) { state().F = value; }

bool clsCommon::Debugging() const { return state().debugging; }
void clsCommon::Debugging(bool value) { state().debugging = value; }

}  // namespace tsRtm
