#include "tsRtm/frame/runtime/Lifetime.hpp"

#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/runtime/StartSequence.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::rtmMain {

namespace {

using platform::Notice;

// What the library is, beside what it knows.
struct Module {
    bool started = false;
    bool stopAtExit = false;
    bool listening = false;  // to notices, from the start until the stop
    std::function<void()> disposeSystemEvents;
};

Module& module() noexcept {
    static Module instance;
    return instance;
}

// Stops the library at the end of the process where nobody has. A library that was stopped before stays as it
// is: its ground may be gone by now.
struct StopGuard {
    // Made first, so that they outlive the guard.
    StopGuard() {
        module();
        state();
    }
    ~StopGuard() {
        if (module().stopAtExit && !state().stopping) stop();
    }
};

// Does not touch the ground: that of a former test may be gone.
void reset() {
    module() = Module{};
    state() = State{};
    standOn(nullptr);
}

// Whatever fails at the end, the library stops.
template <class Step>
void ignoringFailures(const Step& step) noexcept {
    try {
        step();
    } catch (...) {
    }
}

struct NoticeRow {
    Notice notice;
    const char16_t* name;
};

constexpr NoticeRow noticeNames[] = {
    {Notice::sysColorChange, u"SysColorChange"},   {Notice::settingChange, u"SettingChange"},
    {Notice::devModeChange, u"DevmodeChange"},     {Notice::timeChange, u"TimeChange"},
    {Notice::inputLangChange, u"InputLangChange"}, {Notice::displayChange, u"DisplayChange"},
    {Notice::powerBroadcast, u"PowerBroadcast"},   {Notice::deviceChange, u"DeviceChange"},
};

constexpr int32 localeSettings = 0;    // parameter of a setting change: the locale
constexpr int32 displaySettings = 42;  // the measures of windows

}  // namespace

bool started() noexcept { return module().started; }

void start(platform::Platform& ground) {
    if (module().started) return;
    module().started = true;
    standOn(&ground);
    runStartSequence();
    // Without a window that hears of the system nothing stops the library at its end.
    module().listening = ground.ui.hearsNotices();
    module().stopAtExit = module().listening;
    if (module().listening) ground.ui.onNotice = notify;
    static const StopGuard guard;
    DebugLog(Text(u"WMFormInstance: WMObject ") + (module().listening ? u"True" : u"False"));
    DebugLog(u"Rtm: Main Done");
}

void ensureStarted() {
    if (!module().started) start(system());
}

void TEST_restart(platform::Platform& ground) {
    reset();
    start(ground);
    module().stopAtExit = false;  // a ground of a test is gone by then
}

void TEST_forget() { reset(); }

void holdSystemEvents(std::function<void()> dispose) { module().disposeSystemEvents = std::move(dispose); }

void stop() {
    DebugLog(u"WMStop");
    if (const auto dispose = std::exchange(module().disposeSystemEvents, nullptr)) {
        DebugLog(u"Disposing");
        ignoringFailures(dispose);
    }
    if (std::exchange(module().listening, false)) {
        system().ui.onNotice = nullptr;
        system().ui.onAbort = nullptr;
        ignoringFailures([] { system().ui.hideMessageWindow(); });
    }
    state().stopping = true;
    DebugLog(u"Ende Rtm " + GeneralDate(system().clock.now()));
}

void notify(Notice notice, int32 parameter) {
    if (!module().listening) return;
    if (notice == Notice::destroyed) return stop();
    for (const auto& row : noticeNames)
        if (row.notice == notice) DebugLog(row.name + (u" " + toText(parameter)));

    const bool settings = notice == Notice::settingChange;
    if (settings && parameter == localeSettings) ReadLocaleInfos();
    if ((settings && parameter == displaySettings) || notice == Notice::displayChange) ReadSystemMetrics();
    if (notice == Notice::timeChange) state().currNameCache.clear();
}

}  // namespace tsRtm::rtmMain
