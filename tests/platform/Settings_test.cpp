// The settings store: two processes, damage, case.
#include <gtest/gtest.h>

#include <fstream>

#include "tests/support/ChildProcess.hpp"
#include "tests/support/TempFolder.hpp"
#include "tsRtm/platform/posix/PosixSettings.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;
using Texts = std::vector<Text>;

constexpr auto kUser = HKeys::currentUser;
constexpr TextView kRoot = u"Software\\Tessarol";

class SettingsStore : public testing::Test {
 protected:
    posix::PosixSettings make() const {
        return {(folder.path() / "nutzer/tessarol").string(), (folder.path() / "maschine").string()};
    }
    std::filesystem::path userFile() const { return folder.path() / "nutzer/tessarol/currentUser.sqlite"; }

    TempFolder folder;
};

TEST_F(SettingsStore, KeepsValuesByHiveKeyAndNameIgnoringCase) {
    auto settings = make();
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(userFile())) << "reading made a store";
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::none);
    ASSERT_EQ(settings.set(HKeys::localMachine, kRoot, u"Debug", u"0"), SystemError::none);
    EXPECT_EQ(settings.get(kUser, u"\\SOFTWARE\\tessarol\\", u"DEBUG"), u"-1");
    EXPECT_EQ(settings.get(HKeys::localMachine, kRoot, u"Debug"), u"0");
    EXPECT_EQ(settings.get(HKeys::classesRoot, kRoot, u"Debug"), std::nullopt);
    ASSERT_EQ(settings.set(kUser, kRoot, u"debug", u"neu"), SystemError::none);
    EXPECT_EQ(settings.names(kUser, kRoot), Texts{u"Debug"}) << "another case is the same value";
    EXPECT_EQ(make().get(kUser, kRoot, u"Debug"), u"neu");
}

TEST_F(SettingsStore, KeepsOddTextsAsTheyAre) {
    auto settings = make();
    const Text values[] = {u"",        Text(1, u'\0'),     Text(u"a\0b", 3), u"'; DROP TABLE settings; --",
                           u"Größe €", Text(100'000, u'ä')};
    for (const auto& value : values) {
        ASSERT_EQ(settings.set(kUser, kRoot, u"Wert", value), SystemError::none);
        EXPECT_EQ(settings.get(kUser, kRoot, u"Wert"), value);
    }
}

TEST_F(SettingsStore, ListsNamesAndKeysRightBelow) {
    auto settings = make();
    for (const TextView key :
         {u"Software\\Tessarol\\Zeta", u"Software\\Tessarol\\alpha\\tief", u"Software\\TESSAROL\\Alpha",
          u"Software\\Tessarolo\\fremd", u"Software\\Tessarol"})
        for (const TextView name : {u"b", u"A"})
            ASSERT_EQ(settings.set(kUser, key, name, u"x"), SystemError::none);
    EXPECT_EQ(settings.names(kUser, kRoot), (Texts{u"A", u"b"}));
    const auto keys = settings.keys(kUser, kRoot);
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_TRUE(equalIgnoringCase(keys[0], u"alpha"));
    EXPECT_EQ(keys[1], u"Zeta");
    EXPECT_EQ(settings.keys(kUser, u""), Texts{u"Software"});
    ASSERT_EQ(settings.remove(kUser, kRoot, u"a"), SystemError::none);
    ASSERT_EQ(settings.remove(kUser, kRoot, u"fehlt"), SystemError::none);
    EXPECT_EQ(settings.names(kUser, kRoot), Texts{u"b"});
}

TEST_F(SettingsStore, TwoProcessesWriteAtOnceAndReadTheNewest) {
    constexpr int kValues = 20;
    const auto write = [&](char16_t who) {
        auto settings = make();
        for (int i = 0; i < kValues; ++i)
            if (failed(settings.set(kUser, kRoot, who + toText(i), toText(i)))) return 1;
        return 0;
    };
    ChildProcess other([&](ChildProcess::Line& line) {
        line.say('S');
        if (write(u'k') != 0) return 1;
        line.say('F');
        auto settings = make();
        if (line.hear() != 'N' || settings.get(kUser, kRoot, u"Neu") != u"1") return 2;
        line.say('G');
        return line.hear() == 'N' && settings.get(kUser, kRoot, u"Neu") == u"2" ? 0 : 3;
    });
    ASSERT_EQ(other.line().hear(), 'S');
    EXPECT_EQ(write(u'p'), 0);
    ASSERT_EQ(other.line().hear(), 'F');
    auto settings = make();
    EXPECT_EQ(settings.names(kUser, kRoot).size(), 2u * kValues);
    ASSERT_EQ(settings.set(kUser, kRoot, u"Neu", u"1"), SystemError::none);
    other.line().say('N');
    ASSERT_EQ(other.line().hear(), 'G');
    ASSERT_EQ(settings.set(kUser, kRoot, u"Neu", u"2"), SystemError::none);
    other.line().say('N');
    EXPECT_EQ(other.wait(), 0);
}

TEST_F(SettingsStore, DamagedStoreReadsEmptyAndRefusesWrites) {
    std::filesystem::create_directories(userFile().parent_path());
    const std::string rubbish(5000, 'x');
    std::ofstream(userFile()) << rubbish;
    auto settings = make();
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), std::nullopt);
    EXPECT_TRUE(settings.names(kUser, kRoot).empty());
    EXPECT_TRUE(settings.keys(kUser, kRoot).empty());
    EXPECT_NE(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::none);
    EXPECT_EQ(std::filesystem::file_size(userFile()), rubbish.size());
    std::filesystem::remove(userFile());
    EXPECT_EQ(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::none)
        << "the damaged store stayed open";
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), u"-1");
}

TEST_F(SettingsStore, MachineStoreIsForAllToReadAndTheUsersOwnForNobodyElse) {
    auto settings = make();
    ASSERT_EQ(settings.set(HKeys::localMachine, kRoot, u"RunTimeDir", u"/opt"), SystemError::none);
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", u"0"), SystemError::none);
    const auto others = [&](const char* entry) {
        return std::filesystem::status(folder.path() / entry).permissions() &
               std::filesystem::perms::others_all;
    };
    EXPECT_EQ(others("maschine"), std::filesystem::perms::others_read | std::filesystem::perms::others_exec);
    EXPECT_EQ(others("maschine/localMachine.sqlite"), std::filesystem::perms::others_read);
    EXPECT_EQ(others("nutzer/tessarol"), std::filesystem::perms::none);
}

TEST_F(SettingsStore, StoreThatCannotBeMadeGivesAnError) {
    std::ofstream(folder.path() / "nutzer") << "no folder";
    EXPECT_EQ(make().set(kUser, kRoot, u"Debug", u"-1"), SystemError::accessDenied);
}

}  // namespace
}  // namespace tsRtm::test
