// The state and what is formed by it: locale texts, paths, stored numbers, clsCommon, clsStartObjects.
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/OSName.hpp"
#include "tsRtm/frame/clsCommon.hpp"
#include "tsRtm/frame/clsStartObjects.hpp"

namespace tsRtm::test {
namespace {

using platform::LocaleItem;
using rtmMain::state;

class Common : public ::testing::Test {
 protected:
    StartedLibrary library;
    TestGround& ground = library.ground;
    clsCommon common;
};

TEST_F(Common, DateAndTimeFollowTheLocale) {
    ground.clock.set(Date::of(2024, 3, 7, 9, 5, 59));
    EXPECT_EQ(common.TI_(), u"09:05");
    for (const auto& [form, text] : {std::pair{0, u"03.07.2024"}, std::pair{1, u"07.03.2024"},
                                     std::pair{2, u"2024.03.07"}, std::pair{3, u"03-07-2024"}}) {
        state().locale.dateForm = form;
        EXPECT_EQ(common.DA8(), text);
    }
    ground.locale = TestLocale::english();
    EXPECT_EQ(rtmMain::GeneralDate(Date::of(2024, 3, 7, 0, 5, 9)), u"03/07/2024 12:05:09 AM");
    EXPECT_EQ(rtmMain::GeneralDate(Date::of(2024, 3, 7, 13, 5, 9)), u"03/07/2024 1:05:09 PM");
}

TEST_F(Common, CurrencyChangedByTheClock) {
    ground.locale.items[LocaleItem::currencySymbol] = u"DM";
    rtmMain::notify(rtmMain::Notice::settingChange, 0);
    ground.clock.set(Date::of(2002, 1, 1));
    EXPECT_EQ(common.CurrName(), u"EUR");
    ground.clock.set(Date::of(2001, 12, 31, 23, 59, 58));
    EXPECT_EQ(common.CurrName(), u"EUR") << "kept until a notice";
    rtmMain::notify(rtmMain::Notice::timeChange, 0);
    EXPECT_EQ(common.CurrName(), u"DM");
    ground.locale.items[LocaleItem::currencySymbol] = u"€";
    ground.clock.set(Date::of(2024, 1, 1));
    rtmMain::notify(rtmMain::Notice::settingChange, 0);
    EXPECT_EQ(common.CurrName(), u"€");
}

TEST_F(Common, LocaleItemsEndAtTheirNul) {
    ground.locale.items[LocaleItem::decimalMark] = Text(u",\0x", 3);
    ground.locale.items[LocaleItem::countryName] = Text(400, u'x');
    rtmMain::ReadLocaleInfos();
    EXPECT_EQ(common.Sep_Dec(), u",");
    EXPECT_EQ(common.CountryName().size(), 255u);
    EXPECT_EQ(common.LastChar(), u"Ž");
}

TEST_F(Common, StoppedIsReadOnceAndWrittenWhileEnabled) {
    common.Stopped(true);
    EXPECT_FALSE(common.Stopped());
    common.StoppedEnabled(true);
    common.Stopped(true);
    EXPECT_TRUE(common.Stopped());
    EXPECT_FALSE(common.Stopped());
    common.Stopped(true);
    common.StoppedEnabled(true);
    EXPECT_FALSE(common.Stopped()) << "writing StoppedEnabled clears it";
}

TEST_F(Common, BundeslandOutsideItsRangeIsIgnored) {
    common.Bundesland(BAYERN);
    common.Bundesland(static_cast<Bundeslaender>(17));
    common.Bundesland(static_cast<Bundeslaender>(-1));
    EXPECT_EQ(common.Bundesland(), BAYERN);
    common.Bundesland(static_cast<Bundeslaender>(0));
    EXPECT_EQ(common.Bundesland(), 0);
}

TEST_F(Common, RightsByFamilyAndVersion) {
    ground.system.elevation = 3;
    struct Case {
        int32 platform, major;
        bool admin;
        int32 elevation;
    };
    for (const auto& [family, major, admin, elevation] :
         {Case{1, 4, true, 1}, Case{2, 4, false, 1}, Case{2, 5, true, 1}, Case{2, 6, true, 3}}) {
        ground.system.admin = true;
        state().os.platformId = family;
        state().os.major = major;
        EXPECT_EQ(common.IsUserAdmin(), admin) << family << " " << major;
        EXPECT_EQ(common.ElevationType(), elevation) << family << " " << major;
    }
}

TEST_F(Common, TempFolderIsKeptFromItsFirstRead) {
    ground.system.temp = Text(u"/tmp/\0rest", 10);
    EXPECT_EQ(common.TempDir(), u"/tmp/");
    ground.system.temp = u"/anders/";
    EXPECT_EQ(common.TempDir(), u"/tmp/");
}

TEST_F(Common, HostIsTheRunningProgram) {
    EXPECT_EQ(common.RTMApp()->Name(), u"Anwendung.exe");
    EXPECT_EQ(common.RTMApp()->Path(), u"/opt/host");
}

TEST(OSName, OfTheFamilyAndOthers) {
    struct Case {
        int32 family, major, minor, product;
        TextView name;
    };
    for (const auto& [family, major, minor, product, name] :
         {Case{1, 4, 10, 1, u"Windows Typ 1 - Version 4.10"}, Case{2, 4, 0, 1, u"Windows NT 4.0"},
          Case{2, 4, 0, 3, u"Windows NT Server 4.0"}, Case{2, 5, 1, 3, u"Windows .NET Server"},
          Case{2, 5, 2, 1, u"Windows XP Professional x64 Edition"},
          Case{2, 6, 1, 2, u"Windows Server 2008 R2"}, Case{2, 6, 4, 1, u"Windows 10"},
          Case{2, 6, 5, 1, u"Windows Version 6.5"}, Case{2, 10, 0, 3, u"Windows Server Version 10.0"}}) {
        platform::OsVersion os;
        os.platformId = family;
        os.major = major;
        os.minor = minor;
        os.productType = product;
        EXPECT_EQ(osName(os), name);
    }
}

TEST_F(Common, PathsAreJoinedAndBounded) {
    using rtmMain::JoinPath;
    EXPECT_EQ(JoinPath({u"/a", u"", u"b"}), u"/a/b");
    EXPECT_EQ(JoinPath({u"", u"b"}), u"b");
    EXPECT_EQ(JoinPath({u"/a/", u"/b", u"c"}), u"/a/b/c");
    EXPECT_EQ(JoinPath({}), u"");
    const Text longPart(250, u'x');
    EXPECT_EQ(JoinPath({u"/a", longPart, u"12345", u"1"}), u"/a/" + longPart + u"/12345")
        << "259 characters fit";
    EXPECT_EQ(JoinPath({u"/a", longPart, u"123456", u"1"}), u"/a/" + longPart + u"/1")
        << "what does not is left out";
    ground.system.delimiter = u'\\';
    EXPECT_EQ(JoinPath({u"C:", u"b"}), u"C:\\b");
    EXPECT_EQ(rtmMain::PathDelimiter(), u"\\");
}

TEST(Folders, AreMadeWhereTheParentAllowsIt) {
    TestGround ground;
    MemoryFiles files;
    StartedLibrary library(ground, files);
    files.put(u"/p/datei", "");
    std::vector<Text> asked;
    bool allowed = false;
    ground.system.access = [&](TextView path, int32 mask) {
        EXPECT_EQ(mask, 4);
        asked.emplace_back(path);
        return allowed;
    };
    EXPECT_FALSE(rtmMain::EnsureFolder(u""));
    EXPECT_FALSE(rtmMain::EnsureFolder(u"/p/neu"));
    EXPECT_FALSE(files.exists(u"/p/neu"));
    allowed = true;
    EXPECT_TRUE(rtmMain::EnsureFolder(u"/p/neu"));
    EXPECT_TRUE(rtmMain::EnsureFolder(u"/p/neu/x/"));
    EXPECT_EQ(asked, (std::vector<Text>{u"/p/", u"/p/", u"/p/neu/"}));
    EXPECT_FALSE(rtmMain::EnsureFolder(u"/p/datei")) << "a file is no folder";
    EXPECT_FALSE(rtmMain::EnsureFolder(u"/fehlt/neu"));
}

TEST(NumberCode, FormsOfTheEdges) {
    struct Case {
        int32 value;
        TextView text;
    };
    for (const auto& [value, text] :
         {Case{0, u"0"}, Case{99999, u"99999"}, Case{100000, u"!!,>o"}, Case{830583, u"!!~~~"},
          Case{830584, u"!\"!!!"}, Case{1171123439, u"/~~~~"}, Case{1171123440, u":!!!!"},
          Case{std::numeric_limits<int32>::max(), u"FPP}d"},
          Case{std::numeric_limits<int32>::min(), u"K!!!!"}}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(toUtf8(rtmMain::EncodeNumber(value)), toUtf8(text));
        EXPECT_EQ(rtmMain::DecodeNumber(text), value);
    }
}

TEST(NumberCode, EveryNumberComesBackInFiveColumnsWithoutALeadingDigit) {
    std::mt19937 random(20240601);
    const auto check = [](int32 value) {
        const Text text = rtmMain::EncodeNumber(value);
        ASSERT_EQ(rtmMain::DecodeNumber(text), value) << toUtf8(text);
        ASSERT_LE(text.size(), 5u);
        if (value < 0 || value > 99999) {
            ASSERT_FALSE(IstZiffern(text.substr(0, 1))) << value;
        }
    };
    for (int32 near = -2000; near <= 2000; ++near) {
        check(near);
        check(100000 + near);
        check(near <= 0 ? std::numeric_limits<int32>::max() + near
                        : std::numeric_limits<int32>::min() + near);
    }
    for (int32 i = 0; i < 200000; ++i) check(static_cast<int32>(static_cast<uint32>(random())));
}

TEST(NumberCode, UnreadableTextsGiveZero) {
    for (const TextView text : {u"", u"     ", u"12a", u"1,5", u"!~~~~~", u"FPP}e", u"ä!!!!", u"G!!!!"})
        EXPECT_EQ(rtmMain::DecodeNumber(text), 0) << toUtf8(text);
    EXPECT_EQ(rtmMain::DecodeNumber(u"   42"), 42);
    EXPECT_EQ(rtmMain::DecodeNumber(u"42   "), 42);
    EXPECT_EQ(rtmMain::DecodeNumber(u"!!,>o   "), 100000) << "a blank ends the number";
}

TEST(StartObjects, KeepOrderAndAlwaysAnswerFalse) {
    clsStartObjects list;
    const auto object = std::make_shared<clsHostApp>();
    EXPECT_EQ(list.Add(10), 1);
    EXPECT_EQ(list.Add(20, std::shared_ptr<Object>(object), true), 2);
    EXPECT_EQ(list.Add(5, u"vorn", false, true), 1);
    EXPECT_EQ(list.ProgID(1), 5);
    EXPECT_EQ(list.ProgID(3), 20);
    EXPECT_EQ(list.Waiting(3), -1);
    EXPECT_EQ(std::get<std::shared_ptr<Object>>(list.Args(3)), object);
    EXPECT_FALSE(list.Remove(0));
    EXPECT_FALSE(list.Remove(4));
    EXPECT_EQ(list.Count(), 3);
    EXPECT_FALSE(list.Remove(1));
    EXPECT_EQ(list.ProgID(1), 10);
    EXPECT_EQ(list.ProgID(3), 0);
    EXPECT_TRUE(list.Args(-1).isEmpty());
}

}  // namespace
}  // namespace tsRtm::test
