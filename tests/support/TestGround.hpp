#pragma once
// A ground for tests: every interface of the seam but the files, settable and recording.
//
//     MemoryFiles files;                      // or any other file system
//     StartedLibrary library(files);          // rtmMain runs on it until the end of the test
//     library.ground.clock.set(Date::of(2024, 12, 31));
//     library.ground.ui.answers = {6};        // one Yes
//
// A value that the library reads at its start is set before: make a TestGround, set it, and hand it to
// StartedLibrary.
#include <array>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/platform/Platform.hpp"

namespace tsRtm::test {

// What a table says of a key; empty where it says nothing.
template <class Key>
Text textOf(const std::map<Key, Text>& table, const Key& key) {
    const auto found = table.find(key);
    return found == table.end() ? Text() : found->second;
}

// Stands still: time passes only in sleep() and advance(), and the date moves along with it.
class TestClock final : public platform::Clock {
 public:
    Date now() override {
        constexpr float64 nanosecondsPerDay = 86400e9;
        return Date(set_.serial() + static_cast<float64>((elapsed_ - setAt_).count()) / nanosecondsPerDay);
    }
    std::chrono::nanoseconds elapsed() override { return elapsed_; }
    void sleep(std::chrono::nanoseconds duration) override {
        elapsed_ += duration;
        if (onSleep) onSleep();
    }

    void set(Date moment) {
        set_ = moment;
        setAt_ = elapsed_;
    }
    void advance(std::chrono::nanoseconds duration) { elapsed_ += duration; }

    std::function<void()> onSleep;  // called at every sleep, when its time has passed

 private:
    Date set_ = Date::of(2024, 6, 15, 12, 0, 0);
    std::chrono::nanoseconds setAt_{0};
    std::chrono::nanoseconds elapsed_{0};
};

// German unless another one is assigned; every item can be set.
class TestLocale final : public platform::LocaleValues {
 public:
    TestLocale();

    int32 lcid() override { return language; }
    int32 langId() override { return language; }
    int32 codePage() override { return page; }
    Text item(platform::LocaleItem which) override { return textOf(items, which); }
    Text weekdayName(int32 weekday) override { return weekdays.at(static_cast<std::size_t>(weekday)); }
    Text monthName(int32 month) override { return months.at(static_cast<std::size_t>(month - 1)); }

    int32 language = 1031;
    int32 page = 1252;
    std::map<platform::LocaleItem, Text> items;
    std::array<Text, 7> weekdays;
    std::array<Text, 12> months;
};

// A settings store in memory.
class TestSettings final : public platform::Settings, public platform::SettingsCare {
 public:
    std::optional<Text> get(platform::HKeys hive, TextView key, TextView name) override;
    [[nodiscard]] platform::SystemError set(platform::HKeys hive, TextView key, TextView name,
                                            TextView value) override;
    [[nodiscard]] platform::SystemError replace(platform::HKeys hive, TextView key, TextView name,
                                                TextView expected, TextView value) override;
    [[nodiscard]] platform::SystemError remove(platform::HKeys hive, TextView key, TextView name) override;
    [[nodiscard]] platform::SystemError removeKey(platform::HKeys hive, TextView key) override;
    std::vector<Text> names(platform::HKeys hive, TextView key) override;
    std::vector<Text> keys(platform::HKeys hive, TextView key) override;
    bool mayAccess(platform::HKeys hive, TextView key, bool write) override;
    [[nodiscard]] platform::SystemError check(platform::HKeys hive) override;
    Text location(platform::HKeys) override { return u"memory"; }

    // Shorthands for the two keys below which the library starts: Software\Tessarol of a user and of the
    // machine.
    void user(TextView name, TextView value) { start(platform::HKeys::currentUser, name, value); }
    void machine(TextView name, TextView value) { start(platform::HKeys::localMachine, name, value); }

    bool damaged = false;         // reads as empty, refuses to be written
    bool readOnly = false;        // refuses to be written
    std::function<void()> onGet;  // called when a value was read: another process may write now

 private:
    struct IgnoringCase {
        bool operator()(const Text& a, const Text& b) const { return upper(a) < upper(b); }
    };
    using Values = std::map<Text, Text, IgnoringCase>;
    Text* find(platform::HKeys hive, TextView key, TextView name);
    void start(platform::HKeys hive, TextView name, TextView value) {
        static_cast<void>(set(hive, u"Software\\Tessarol", name, value));
    }

    std::map<platform::HKeys, std::map<Text, Values, IgnoringCase>> hives_;
};

// A machine whose every answer is a field.
class TestSystem final : public platform::SystemInfo, public platform::UserInfo, public platform::Screen {
 public:
    platform::OsVersion osVersion() override { return os; }
    platform::Processor processor() override { return cpu; }
    bool is64Bit() override { return wide; }
    bool isUserAdmin() override { return admin; }
    int32 elevationType() override { return elevation; }
    bool isRemoteSession() override { return remote; }
    Text hostPath() override { return host; }
    platform::VolumeInfo volumeInfo(TextView root) override {
        volumesAsked.emplace_back(root);
        return volume;
    }
    platform::ScreenMetrics metrics() override { return screen; }
    platform::PixelArea workAreaOf(int32 window) override { return workAreas[window]; }
    Text folder(platform::FolderId id, bool create) override {
        return folders.contains(id) || !create ? textOf(folders, id) : textOf(foldersWhenMade, id);
    }
    Text tempFolder() override { return temp; }
    bool checkAccess(TextView path, int32 mask) override { return !access || access(path, mask); }
    Text userName() override { return user; }
    char16_t pathDelimiter() override { return delimiter; }

    platform::OsVersion os;
    platform::Processor cpu;
    bool wide = true;
    bool admin = false;
    int32 elevation = 1;
    bool remote = false;
    Text host = u"/opt/host/Anwendung.exe";
    platform::VolumeInfo volume{u"ext4", 255};
    std::vector<Text> volumesAsked;
    platform::ScreenMetrics screen;
    std::map<int32, platform::PixelArea> workAreas;      // by window
    std::map<platform::FolderId, Text> folders;          // there
    std::map<platform::FolderId, Text> foldersWhenMade;  // not there, but can be made
    Text temp = u"/tmp/";
    std::function<bool(TextView path, int32 mask)> access;  // empty: everything is allowed
    Text user = u"tester";
    char16_t delimiter = u'/';
};

// A user who follows a script and whose screen is recorded.
class ScriptedUi final : public platform::UserInterface,
                         public platform::Dialogs,
                         public platform::Choices,
                         public platform::SystemTexts {
 public:
    // The next scripted answer, else the default answer; without both the test fails and the box throws.
    int32 show(const platform::MessageBox& box) override;
    // Likewise; 2048 in an answer ticks the box. The notices of `play` come before the click.
    std::optional<platform::DialogAnswer> showTaskDialog(const platform::TaskDialog& dialog,
                                                         const platform::DialogListener& tell) override;
    // The next scripted choice is asked with the list; without one nothing is chosen.
    int32 choose(const platform::ChoiceList& list) override;
    std::optional<Text> ask(TextView prompt, TextView title, TextView preset) override {
        asked.push_back(Text(title) + u": " + Text(prompt));
        return line.value_or(Text(preset));
    }
    void openLink(TextView address) override { linksOpened.emplace_back(address); }
    bool attended() override { return somebody; }
    bool hearsNotices() override { return hears; }
    void showMessageWindow(TextView message) override {
        windowTexts.emplace_back(message);
        windowOpen = true;
    }
    void hideMessageWindow() override { windowOpen = false; }
    void status(TextView) override {}
    void processEvents() override {
        ++eventRounds;
        if (onEvents) onEvents();
    }
    void beep() override { ++beeps; }
    int32 comCtlVersion() override { return controls; }
    Text systemCaption(int32 number) override {
        captionsAsked.push_back(number);
        return textOf(captions, number);
    }
    bool hasSystemCaptions() override { return ownCaptions; }
    Text keyName(int32 virtualKey) override { return textOf(keyNames, virtualKey); }

    std::deque<int32> answers;
    std::optional<int32> defaultAnswer;
    std::vector<platform::TaskDialog> boxes;  // plain ones, too
    std::deque<std::function<int32(const platform::ChoiceList&)>> choices;
    std::vector<Text> listsShown;  // their captions
    // What the user and the clock do in the next task dialog.
    struct Played {
        platform::DialogNotice notice;
        int32 value = 0;
        Text link;
    };
    std::vector<Played> play;
    bool dialogFails = false;  // a task dialog cannot be shown
    int32 window = 77;         // of a task dialog
    std::vector<Text> asked;
    std::optional<Text> line;  // what the user types there; else the preset text
    std::vector<Text> linksOpened;
    bool somebody = true;
    bool hears = true;
    std::vector<Text> windowTexts;  // of the message window
    bool windowOpen = false;
    int32 beeps = 0;
    int32 eventRounds = 0;
    std::function<void()> onEvents;  // called in every processEvents
    int32 controls = 610;
    bool ownCaptions = false;
    std::map<int32, Text> captions;
    std::vector<int32> captionsAsked;
    std::map<int32, Text> keyNames;

 private:
    int32 nextAnswer();
};

// Random bytes that a test can foretell: those given, then 1, 2, 3 and so on.
class TestRandom final : public platform::Random {
 public:
    [[nodiscard]] platform::SystemError check() override { return missing; }
    [[nodiscard]] platform::SystemError fill(std::span<std::byte> into) override;

    platform::SystemError missing = platform::SystemError::none;  // why there is no source
    platform::SystemError failing = platform::SystemError::none;  // what every fill() answers
    std::deque<uint8> bytes;

 private:
    uint8 counter_ = 0;
};

// One zone for every year: that of Germany as it is now, unless a test sets another one.
class TestZones final : public platform::TimeZones {
 public:
    std::optional<platform::ZoneYear> year(TextView, int32) override { return zone; }

    std::optional<platform::ZoneYear> zone = platform::ZoneYear{-60, 0, -60, {3, 0, 5}, {10, 0, 5}};
};

// The doubles together. The Platform that on() gives refers to them: it must not outlive them.
struct TestGround {
    TestClock clock;
    TestLocale locale;
    TestSettings settings;
    TestSystem system;
    ScriptedUi ui;
    TestRandom random;
    TestZones zones;

    platform::Platform on(platform::FileSystem& files) { return on(files, clock); }
    // With another clock: real processes that wait for each other need that of the machine.
    platform::Platform on(platform::FileSystem& files, platform::Clock& otherClock) {
        return {files,  otherClock, locale, settings, settings, system, system,
                system, ui,         ui,     ui,       ui,       random, zones};
    }
};

// The library, started afresh on a test ground; ends with the object. One at a time.
class StartedLibrary {
 public:
    StartedLibrary() : StartedLibrary(none()) {}
    explicit StartedLibrary(platform::FileSystem& files)
        : own_(std::make_unique<TestGround>()), ground(*own_), platform(ground.on(files)) {
        rtmMain::TEST_restart(platform);
    }
    StartedLibrary(TestGround& prepared, platform::FileSystem& files)
        : StartedLibrary(prepared, files, prepared.clock) {}
    StartedLibrary(TestGround& prepared, platform::FileSystem& files, platform::Clock& otherClock)
        : ground(prepared), platform(ground.on(files, otherClock)) {
        rtmMain::TEST_restart(platform);
    }
    explicit StartedLibrary(TestGround& prepared) : StartedLibrary(prepared, none()) {}
    ~StartedLibrary() {
        if (&rtmMain::system() == &platform) rtmMain::TEST_forget();  // unless a newer one has taken over
    }
    StartedLibrary(const StartedLibrary&) = delete;
    StartedLibrary& operator=(const StartedLibrary&) = delete;

    // Starts anew on the same ground, so that changed values are read.
    void restart() { rtmMain::TEST_restart(platform); }

 private:
    static platform::FileSystem& none();
    std::unique_ptr<TestGround> own_;

 public:
    TestGround& ground;
    platform::Platform platform;
};

}  // namespace tsRtm::test
