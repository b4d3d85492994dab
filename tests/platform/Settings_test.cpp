// The settings store: what every one keeps to; on disk also two processes, damage, locks and rights.
#include "tsRtm/platform/Settings.hpp"

#include <sqlite3.h>
#include <sys/stat.h>

#include "tests/support/ChildProcess.hpp"
#include "tests/support/TempFolder.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/platform/posix/PosixSettings.hpp"

namespace tsRtm::test {
namespace {

using namespace platform;
using Texts = std::vector<Text>;

constexpr auto kUser = HKeys::currentUser;
constexpr TextView kRoot = u"Software\\Tessarol";

struct OnDisk {
    TempFolder folder;
    posix::PosixSettings settings{folder.path() / "nutzer", folder.path() / "maschine"};
};
struct InMemory {
    TestSettings settings;
};

template <class Ground>
class SettingsContract : public testing::Test {
 protected:
    void keep(HKeys hive, TextView key, TextView name, TextView value) {
        ASSERT_EQ(store().set(hive, key, name, value), SystemError::none);
    }
    auto& store() { return ground_.settings; }

 private:
    Ground ground_;
};
using Grounds = testing::Types<OnDisk, InMemory>;
TYPED_TEST_SUITE(SettingsContract, Grounds);

TYPED_TEST(SettingsContract, KeepsValuesByHiveKeyAndNameIgnoringCase) {
    auto& settings = this->store();
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), std::nullopt);
    EXPECT_EQ(settings.check(kUser), SystemError::none) << "nothing stored yet is sound";
    this->keep(kUser, kRoot, u"Debug", u"-1");
    this->keep(HKeys::localMachine, kRoot, u"Debug", u"0");
    EXPECT_TOLD("-1|0|-", settings.get(kUser, u"\\SOFTWARE\\tessarol\\", u"DEBUG"),
                settings.get(HKeys::localMachine, kRoot, u"Debug"),
                settings.get(HKeys::classesRoot, kRoot, u"Debug"));
    this->keep(kUser, kRoot, u"debug", u"neu");
    EXPECT_EQ(settings.names(kUser, kRoot), Texts{u"Debug"}) << "another case is the same value";
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), u"neu");
    EXPECT_EQ(settings.check(kUser), SystemError::none);
    EXPECT_TRUE(settings.mayAccess(kUser, kRoot, true));
}

TYPED_TEST(SettingsContract, KeepsOddTextsAsTheyAre) {
    for (const auto& value : {Text(), Text(1, u'\0'), Text(u"a\0b", 3), Text(u"'; DROP TABLE settings; --"),
                              Text(u"Größe €"), Text(100'000, u'ä')}) {
        this->keep(kUser, value + u"\\K", value, value);
        EXPECT_TRUE(this->store().get(kUser, value + u"\\K", value) == value) << value.size();
    }
}

TYPED_TEST(SettingsContract, ReplacesOnlyWhatIsStillAsExpected) {
    this->keep(kUser, kRoot, u"Alt", u"WAHR");
    using Row = std::tuple<TextView, TextView, TextView, std::optional<Text>>;
    for (const auto& [name, expected, value, now] :
         {Row{u"Alt", u"FALSCH", u"0", u"WAHR"}, Row{u"Alt", u"WAHR", u"-1", u"-1"},
          Row{u"Neu", u"", u"-1", std::nullopt}}) {
        EXPECT_EQ(this->store().replace(kUser, kRoot, name, expected, value), SystemError::none);
        EXPECT_EQ(this->store().get(kUser, kRoot, name), now);
    }
}

TYPED_TEST(SettingsContract, ListsNamesAndKeysRightBelowAndRemoves) {
    auto& settings = this->store();
    for (const TextView key :
         {u"Software\\Tessarol\\Zeta", u"Software\\Tessarol\\alpha\\tief", u"Software\\TESSAROL\\Alpha",
          u"Software\\Tessarolo\\fremd", u"Software\\Tessarol"})
        for (const TextView name : {u"b", u"A"}) this->keep(kUser, key, name, u"x");
    EXPECT_EQ(settings.names(kUser, kRoot), (Texts{u"A", u"b"}));
    const auto keys = settings.keys(kUser, kRoot);
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_TRUE(equalIgnoringCase(keys[0], u"alpha"));
    EXPECT_EQ(keys[1], u"Zeta");
    EXPECT_EQ(settings.keys(kUser, u""), Texts{u"Software"});
    EXPECT_EQ(settings.remove(kUser, kRoot, u"a"), SystemError::none);
    EXPECT_EQ(settings.remove(kUser, kRoot, u"fehlt"), SystemError::none);
    EXPECT_EQ(settings.names(kUser, kRoot), Texts{u"b"});

    EXPECT_EQ(settings.removeKey(kUser, u"\\software\\tessarol\\ALPHA"), SystemError::none);
    EXPECT_EQ(settings.keys(kUser, kRoot), Texts{u"Zeta"}) << "the key below it went, too";
    EXPECT_EQ(settings.removeKey(kUser, u"\\"), SystemError::invalidParameter);
    EXPECT_EQ(settings.removeKey(kUser, kRoot), SystemError::none);
    EXPECT_EQ(settings.keys(kUser, u"Software"), Texts{u"Tessarolo"}) << "a longer name is another key";
}

class SettingsOnDisk : public testing::Test {
 protected:
    // Each is as another program: it opens the files anew. None waits.
    posix::PosixSettings make(std::chrono::milliseconds patience = std::chrono::milliseconds(0)) const {
        return {folder.path() / "nutzer/tessarol", folder.path() / "maschine", patience};
    }
    std::filesystem::path userFile() const { return folder.path() / "nutzer/tessarol/currentUser.sqlite"; }
    void expectNothingReadable(posix::PosixSettings& settings, SystemError why) const {
        EXPECT_TOLD("-||", settings.get(kUser, kRoot, u"Debug"), settings.names(kUser, kRoot),
                    settings.keys(kUser, kRoot));
        EXPECT_EQ(settings.check(kUser), why);
    }

    TempFolder folder;
};

TEST_F(SettingsOnDisk, ReadingMakesNoStoreAndOneThatCannotBeMadeIsAnError) {
    auto settings = make();
    expectNothingReadable(settings, SystemError::none);
    EXPECT_EQ(settings.remove(kUser, kRoot, u"Debug"), SystemError::none);
    EXPECT_EQ(settings.removeKey(kUser, kRoot), SystemError::none);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "nutzer"));
    EXPECT_EQ(settings.location(kUser), fromUtf8(userFile().string()));
    std::ofstream(folder.path() / "nutzer") << "no folder";
    EXPECT_EQ(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::accessDenied);
    expectNothingReadable(settings, SystemError::none);
}

TEST_F(SettingsOnDisk, TwoProcessesWriteOneValueAndNoneIsRefused) {
    constexpr int kValues = 50;
    const auto write = [&](char16_t who) {
        auto settings = make(posix::PosixSettings::kPatience);
        for (int i = 0; i < kValues; ++i) {
            if (failed(settings.set(kUser, kRoot, u"Gemeinsam", who + toText(i)))) return 1;
            const auto read = settings.get(kUser, kRoot, u"Gemeinsam").value_or(u"-");
            if (read != who + toText(i) && (read.front() == who || read.front() == u'-')) return 2;
        }
        return 0;
    };
    ChildProcess other([&](ChildProcess::Line& line) {
        line.say('S');
        return write(u'k');
    });
    ASSERT_EQ(other.line().hear(), 'S');
    EXPECT_EQ(write(u'p'), 0);
    EXPECT_EQ(other.wait(), 0);
    const auto last = make().get(kUser, kRoot, u"Gemeinsam").value_or(u"");
    EXPECT_TRUE(last == u"k49" || last == u"p49") << toUtf8(last);
}

// An empty file is a store to be; of a whole one with a damaged page what can still be read is not taken
// away.
TEST_F(SettingsOnDisk, WhatIsNoDatabaseStaysAsItIs) {
    std::filesystem::create_directories(userFile().parent_path());
    std::ofstream(userFile()).close();
    auto settings = make();
    expectNothingReadable(settings, SystemError::none);
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", Text(20'000, u'x')), SystemError::none);
    const std::string whole = contentOf(userFile());
    for (const auto& damaged : {std::string(5000, 'x'), whole.substr(0, 4096) + std::string(4096, 'x')}) {
        std::ofstream(userFile(), std::ios::binary) << damaged;
        expectNothingReadable(settings, SystemError::readFault);
        EXPECT_EQ(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::readFault);
        EXPECT_EQ(settings.removeKey(kUser, kRoot), SystemError::readFault);
        EXPECT_EQ(contentOf(userFile()), damaged);
    }
    std::filesystem::remove(userFile());
    EXPECT_EQ(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::none)
        << "the damaged store stayed open";
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), u"-1");
}

TEST_F(SettingsOnDisk, AnotherFileInItsPlaceIsSeen) {
    auto settings = make();
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", u"alt"), SystemError::none);
    const std::string saved = contentOf(userFile());
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", u"neu"), SystemError::none);
    std::filesystem::remove(userFile());
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), std::nullopt);
    std::ofstream(userFile(), std::ios::binary) << saved;
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), u"alt");
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", u"neuer"), SystemError::none);
    EXPECT_EQ(make().get(kUser, kRoot, u"Debug"), u"neuer") << "written into the file that is gone";
}

TEST_F(SettingsOnDisk, ALockedStoreReadsEmptyAndRefusesWritesUntilItIsFree) {
    auto settings = make(std::chrono::milliseconds(5));
    ASSERT_EQ(settings.set(kUser, kRoot, u"Debug", u"-1"), SystemError::none);
    sqlite3* holder = nullptr;
    ASSERT_EQ(::sqlite3_open(userFile().c_str(), &holder), SQLITE_OK);
    ASSERT_EQ(::sqlite3_exec(holder, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    expectNothingReadable(settings, SystemError::lockViolation);
    EXPECT_EQ(settings.set(kUser, kRoot, u"Debug", u"0"), SystemError::lockViolation);
    ASSERT_EQ(::sqlite3_exec(holder, "COMMIT", nullptr, nullptr, nullptr), SQLITE_OK);
    ::sqlite3_close(holder);
    EXPECT_EQ(settings.get(kUser, kRoot, u"Debug"), u"-1");
    EXPECT_EQ(settings.set(kUser, kRoot, u"Debug", u"0"), SystemError::none);
}

TEST_F(SettingsOnDisk, MachineStoreIsForAllToReadAndTheUsersOwnForNobodyElse) {
    auto settings = make();
    const auto mask = ::umask(077);  // an administrator's, who thinks of his own files
    const auto stored = {settings.set(HKeys::localMachine, kRoot, u"RunTimeDir", u"/opt"),
                         settings.set(kUser, kRoot, u"Debug", u"0")};
    ::umask(mask);
    for (const auto error : stored) ASSERT_EQ(error, SystemError::none);
    const auto others = [&](const char* entry) {
        return std::filesystem::status(folder.path() / entry).permissions() &
               std::filesystem::perms::others_all;
    };
    EXPECT_EQ(others("maschine"), std::filesystem::perms::others_read | std::filesystem::perms::others_exec);
    EXPECT_EQ(others("maschine/localMachine.sqlite"), std::filesystem::perms::others_read);
    EXPECT_EQ(others("nutzer/tessarol"), std::filesystem::perms::none);
}

}  // namespace
}  // namespace tsRtm::test
