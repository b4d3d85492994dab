// What the start finds: switches, folders, the log it leaves behind.
#include <stdexcept>
#include <utility>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/clsCommon.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::test {
namespace {

using platform::FolderId;
using rtmMain::state;

constexpr TextView logName = u"/home/t/.config/Tessarol/RTMDebug.txt";

class Start : public ::testing::Test {
 protected:
    Start() {
        ground.system.folders = {{FolderId::documents, u"/home/t/Dokumente"},
                                 {FolderId::applicationData, u"/home/t/.config"},
                                 {FolderId::commonApplicationData, u"/var/lib"},
                                 {FolderId::commonProgramFiles, u"/usr/lib"},
                                 {FolderId::programFiles, u"/opt"}};
        for (const auto& [id, folder] : ground.system.folders) files.putFolder(folder);
        files.putFolder(u"/home/t/.config/Tessarol");  // that of the log
        ground.clock.set(Date::of(2024, 12, 31, 18, 5, 9));
    }

    void start() { library = std::make_unique<StartedLibrary>(ground, files); }

    // The log as lines without their date, "31.12.2024 18:05:09 - ".
    std::vector<Text> log() {
        std::vector<Text> lines;
        for (const auto& line : split(fromAnsi(files.dump(logName)), u"\r\n")) {
            EXPECT_TRUE(line.empty() || line.substr(19, 3) == u" - ");
            lines.push_back(line.substr(std::min<std::size_t>(22, line.size())));
        }
        EXPECT_EQ(lines.back(), u"") << "a line without its end";
        lines.pop_back();
        return lines;
    }

    TestGround ground;
    MemoryFiles files;
    std::unique_ptr<StartedLibrary> library;
};

TEST_F(Start, SwitchesReadTheFirstThreeCharacters) {
    for (const auto& [text, on, netWait] :
         {std::tuple{u"", 0, 5}, std::tuple{u"0", 0, 5}, std::tuple{u"1", -1, 1}, std::tuple{u"-1", -1, -1},
          std::tuple{u"abc", 0, 5}, std::tuple{u"0001", 0, 5}, std::tuple{u"12", -1, 12},
          std::tuple{u"1234", -1, 123}, std::tuple{u" 7x", -1, 7}}) {
        for (const TextView name : {u"Debug", u"Expert", u"NetWait"}) ground.settings.user(name, text);
        start();
        EXPECT_EQ(std::tuple(state().debugging, clsCommon().Expert(), state().netWait),
                  std::tuple(on != 0, on, netWait))
            << toUtf8(text);
    }
}

TEST_F(Start, RuntimeFolderOfTheSettings) {
    for (const auto& [configured, program, told] :
         {std::tuple{u"", u"", "/usr/lib/Tessarol|/daten|no"},
          {u"/app/", u"", "/app/|/daten|yes"},                       // with a delimiter: unchecked
          {u"/app", u"", "/usr/lib/Tessarol|/var/lib/Tessarol|no"},  // the program is missing: both dropped
          {u"/app", u"/app/TSRtm.exe", "/app/|/daten|yes"}}) {
        if (*program) files.put(program, "");
        ground.settings.machine(u"RunTimeDir", configured);
        ground.settings.machine(u"RunTimeDataDir", u"/daten");
        start();
        EXPECT_TOLD(told, state().runtimeDir, state().runtimeDataDir, state().oldTS) << toUtf8(configured);
    }
}

TEST_F(Start, OldInstallationIsSearchedOnDrivesCToZThenBThenA) {
    ground.system.delimiter = u'\\';
    for (const char16_t drive : TextView(u"ABZDC")) {  // each is asked before those already there
        const Text folder = Text(1, drive) + u":\\Tessarol\\";
        files.put(folder + u"TSRtm.exe", "");
        start();
        EXPECT_EQ(toUtf8(state().runtimeDir), toUtf8(folder));
        EXPECT_TRUE(state().oldTS);
    }
    ground.system.delimiter = u'/';
    start();
    EXPECT_FALSE(state().oldTS) << "a ground without drive letters has no drives to search";
}

TEST_F(Start, RuntimeFolderFallsBackToTheHostsOwn) {
    ground.system.folders.erase(FolderId::commonProgramFiles);
    ground.system.access = [](TextView path, int32) { return path != u"/opt/"; };
    start();
    EXPECT_EQ(state().runtimeDir, u"/opt/host");
    ground.system.access = nullptr;
    library->restart();
    EXPECT_EQ(state().runtimeDir, u"/opt/Tessarol");
}

// The user's own folder is made, since ours goes into it; no other one is.
TEST_F(Start, MakesNoFolderButItsOwn) {
    auto& system = ground.system;
    system.foldersWhenMade = std::exchange(system.folders, {});
    start();
    EXPECT_TOLD("/opt/host|/home/t/.config/Tessarol|/home/t/.config/Tessarol", state().runtimeDir,
                state().userDir, state().runtimeDataDir);
    for (const auto& [id, folder] : system.foldersWhenMade)
        EXPECT_EQ(rtmMain::SpecialFolder(static_cast<int32>(id)), u"") << toUtf8(folder);
}

TEST_F(Start, DataFoldersNeedTheRightToWrite) {
    TextView refused;  // folder into which nobody may write; "*" all
    ground.system.access = [&](TextView path, int32 mask) {
        return mask != 70 || (refused != u"*" && path != refused);
    };
    const Text user = u"/home/t/.config/Tessarol", last = u"/home/t/Dokumente/Tessarol";  // taken unchecked
    for (const auto& [refuses, dataDir, userDir] :
         {std::tuple<TextView, Text, Text>{u"", u"/var/lib/Tessarol", user},
          {u"/var/lib/Tessarol", user, user},
          {u"*", last, last}}) {
        refused = refuses;
        start();
        EXPECT_EQ(std::pair(state().runtimeDataDir, state().userDir), std::pair(dataDir, userDir));
        EXPECT_TRUE(files.exists(dataDir) && files.exists(userDir));
    }
}

TEST_F(Start, StartsOnAGroundThatRefusesEverything) {
    ground.settings.damaged = true;
    ground.system.folders.clear();
    ground.locale.items.clear();
    ground.system.access = [](TextView, int32) { return false; };
    files.setFreeSpace(0);
    start();
    EXPECT_TOLD("yes|5|/opt/host", rtmMain::started(), state().netWait, state().runtimeDir);
    EXPECT_TRUE(ground.ui.boxes.empty()) << "the start reports nothing to the user";
}

TEST_F(Start, LogTellsTheStepsInOrder) {
    ground.settings.user(u"Debug", u"1");
    start();
    EXPECT_TOLD(
        "Start Rtm 31.12.2024 18:05:09,GetVersionEx OSVERSIONINFOEX:1,GetSystemInfo: ProcessorType "
        "8664,GetUserDefaultLCID: 1031,"
        "GetUserDefaultLangID: 1031,GetACP: 1252,GetVolumeInformation  - FSName:ext4 - "
        "MaxPathLength:260,ReadLocaleInfos done,"
        "ReadSystemMetrics done,RuntimeDir: /usr/lib/Tessarol,RuntimeDataDir: /var/lib/Tessarol,UserDir: "
        "/home/t/.config/Tessarol,"
        "GetModuleFileName: /opt/host/Anwendung.exe,WMFormInstance: WMObject True,Rtm: Main Done",
        log());
    EXPECT_EQ(files.openings(), 0u) << "the log is closed after each line";
    EXPECT_EQ(files.dump(logName).substr(0, 22), "31.12.2024 18:05:09 - ");
}

TEST_F(Start, VolumeRootOfSharesAndDrives) {
    ground.settings.user(u"Debug", u"1");
    ground.system.delimiter = u'\\';
    for (const auto& [host, root] :
         {std::pair{u"\\\\srv\\share\\app\\a.exe", u"\\\\srv\\"}, std::pair{u"\\\\srv\\a.exe", u"\\\\srv\\"},
          std::pair{u"D:\\app\\a.exe", u"D:\\"}, std::pair{u"app\\a.exe", u""}}) {
        ground.system.host = host;
        start();
        EXPECT_EQ(ground.system.volumesAsked.back(), root);
    }
}

TEST_F(Start, LogIsSwitchedAtRunTimeAndNeverInTheWay) {
    start();
    rtmMain::DebugLog(u"nicht da");
    clsCommon().Debugging(true);
    rtmMain::DebugLog(u"Größe 5 €");
    files.setFreeSpace(0);
    rtmMain::DebugLog(u"verloren");
    files.setFreeSpace(std::nullopt);
    rtmMain::DebugLog(u"weiter");
    EXPECT_EQ(log(), (std::vector<Text>{u"Größe 5 €", u"weiter"}));
    ground.system.folders.erase(FolderId::applicationData);
    rtmMain::DebugLog(u"kein Ordner");
    EXPECT_EQ(log().size(), 2u);
}

TEST_F(Start, StopMayRunTwice) {
    start();
    clsCommon().Debugging(true);
    int32 disposed = 0;
    rtmMain::holdSystemEvents([&] {
        ++disposed;
        throw std::runtime_error("nobody is to hear of it");
    });
    rtmMain::WMStop();
    EXPECT_EQ(log(), (std::vector<Text>{u"WMStop", u"Disposing", u"Ende Rtm 31.12.2024 18:05:09"}));
    files.put(logName, "");
    rtmMain::WMStop();
    EXPECT_EQ(log(), (std::vector<Text>{u"WMStop", u"Ende Rtm 31.12.2024 18:05:09"}));
    EXPECT_TOLD("1|yes|no", disposed, state().stopping, ground.ui.onNotice != nullptr);
    EXPECT_EQ(state().userDir, u"/home/t/.config/Tessarol") << "the state stays readable";
}

TEST_F(Start, NoticesRefreshWhatTheyConcern) {
    start();
    clsCommon().Debugging(true);
    using platform::Notice;
    ground.locale.items[platform::LocaleItem::dateMark] = u"-";
    ground.system.screen.fullX = 800;
    for (const auto& [notice, parameter, line, dateMark, width] :
         {std::tuple{Notice::sysColorChange, 1, u"SysColorChange 1", u".", 1920},
          {Notice::settingChange, 7, u"SettingChange 7", u".", 1920},
          {Notice::settingChange, 0, u"SettingChange 0", u"-", 1920},
          {Notice::settingChange, 42, u"SettingChange 42", u"-", 800},
          {Notice::displayChange, 32, u"DisplayChange 32", u"-", 1024},
          {Notice::timeChange, 0, u"TimeChange 0", u"-", 1024}}) {
        ground.ui.onNotice(notice, parameter);
        EXPECT_EQ(toUtf8(log().back()), toUtf8(line));
        EXPECT_EQ(state().locale.sepDate, dateMark) << toUtf8(line);
        EXPECT_EQ(clsCommon().DisplaySpalten(), width) << toUtf8(line);
        if (width == 800) ground.system.screen.fullX = 1024;
    }
    files.put(logName, "");
    ground.ui.onNotice(Notice::destroyed, 0);
    EXPECT_EQ(log(), (std::vector<Text>{u"WMStop", u"Ende Rtm 31-12-2024 18:05:09"}));
    EXPECT_FALSE(ground.ui.onNotice) << "nothing is heard any more";
}

TEST_F(Start, AGroundThatHearsNothingAndAnOldSystem) {
    ground.settings.user(u"Debug", u"1");
    ground.ui.hears = false;
    ground.system.os.extended = false;
    start();
    const auto lines = log();
    const auto has = [&](TextView line) { return std::count(lines.begin(), lines.end(), line) == 1; };
    EXPECT_TOLD("yes|yes|no", has(u"GetVersionEx OSVERSIONINFOEX:0") && has(u"GetVersionEx OSVERSIONINFO:1"),
                has(u"WMFormInstance: WMObject False"), ground.ui.onNotice != nullptr);
}

}  // namespace
}  // namespace tsRtm::test
