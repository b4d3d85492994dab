// The state and what is formed by it: locale texts, paths, stored numbers, clsCommon, clsStartObjects.
#include <limits>
#include <random>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/clsCommon.hpp"
#include "tsRtm/frame/clsStartObjects.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/runtime/OSName.hpp"
#include "tsRtm/frame/text/NumberCode.hpp"

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
    constexpr const char16_t* kForms[] = {u"03.07.2024", u"07.03.2024", u"2024.03.07", u"03-07-2024"};
    for (int32 form = 0; form < 4; ++form) {
        state().locale.dateForm = form;
        EXPECT_EQ(common.DA8(), kForms[form]);
    }
    ground.locale.items[LocaleItem::dateMark] = u"/";
    for (const auto form : {LocaleItem::dateForm, LocaleItem::timeForm}) ground.locale.items[form] = u"0";
    EXPECT_EQ(rtmMain::GeneralDate(Date::of(2024, 3, 7, 0, 5, 9)), u"03/07/2024 12:05:09 AM");
    EXPECT_EQ(rtmMain::GeneralDate(Date::of(2024, 3, 7, 13, 5, 9)), u"03/07/2024 1:05:09 PM");
}

TEST_F(Common, CurrencyChangedByTheClock) {
    ground.locale.items[LocaleItem::currencySymbol] = u"DM";
    rtmMain::ReadLocaleInfos();
    ground.clock.set(Date::of(2002, 1, 1));
    EXPECT_EQ(common.CurrName(), u"EUR");
    ground.clock.set(Date::of(2001, 12, 31, 23, 59, 58));
    EXPECT_EQ(common.CurrName(), u"EUR") << "kept until a notice";
    rtmMain::notify(platform::Notice::timeChange, 0);
    EXPECT_EQ(common.CurrName(), u"DM");
}

TEST_F(Common, LocaleItemsEndAtTheirNul) {
    ground.locale.items[LocaleItem::decimalMark] = Text(u",\0x", 3);
    ground.locale.items[LocaleItem::countryName] = Text(400, u'x');
    rtmMain::ReadLocaleInfos();
    EXPECT_TOLD(",|255|Ž", common.Sep_Dec(), common.CountryName().size(), common.LastChar());
}

TEST_F(Common, EachItemOfLocaleAndScreenHasItsPlace) {
    int32 value = 40;
    for (const auto item : {LocaleItem::country, LocaleItem::currencyDigits, LocaleItem::dateForm,
                            LocaleItem::calendarType, LocaleItem::firstDayOfWeek, LocaleItem::firstWeekOfYear,
                            LocaleItem::currencyForm, LocaleItem::timeForm})
        ground.locale.items[item] = toText(++value);
    ground.locale.items[LocaleItem::thousandsMark] = u"'";
    rtmMain::ReadLocaleInfos();
    const auto& locale = state().locale;
    EXPECT_TOLD("41|42|43|44|45|46|47|48|'", locale.country, locale.currDigits, locale.dateForm,
                locale.calendarType, locale.firstDayOfWeek, locale.firstWeekOfYear, locale.currForm,
                locale.timeForm, locale.sep1000);
    auto& asked = ground.system.screen;
    std::tie(asked.twipsPerPixelX, asked.twipsPerPixelY, asked.borderX, asked.borderY, asked.edgeX,
             asked.edgeY) = std::tuple(10, 20, 1, 2, 3, 5);
    std::tie(asked.virtualLeft, asked.virtualTop, asked.virtualWidth, asked.virtualHeight) =
        std::tuple(-100, -7, 300, 400);
    rtmMain::ReadSystemMetrics();
    const auto& screen = state().screen;
    EXPECT_TOLD("40|140|-1000|-140|2000|7860", screen.frameXTwips, screen.frameYTwips,
                screen.virtualLeftTwips, screen.virtualTopTwips, screen.virtualRightTwips,
                screen.virtualBottomTwips);
}

TEST_F(Common, WritingHasItsConditions) {
    common.Stopped(true);
    EXPECT_FALSE(common.Stopped()) << "not enabled";
    common.StoppedEnabled(true);
    common.Stopped(true);
    EXPECT_TOLD("yes|no", common.Stopped(), common.Stopped()) << "reading clears it";
    common.Stopped(true);
    common.StoppedEnabled(true);
    EXPECT_FALSE(common.Stopped()) << "and so does writing StoppedEnabled";
    for (const int32 value : {int32{BAYERN}, 17, -1}) common.Bundesland(static_cast<Bundeslaender>(value));
    EXPECT_EQ(common.Bundesland(), BAYERN);
}

TEST_F(Common, RightsByFamilyAndVersion) {
    ground.system.elevation = 3;
    ground.system.admin = true;
    for (const auto& [family, major, admin, elevation] :
         {std::tuple{1, 4, true, 1}, {2, 4, false, 1}, {2, 5, true, 1}, {2, 6, true, 3}}) {
        state().os.platformId = family;
        state().os.major = major;
        EXPECT_EQ(common.IsUserAdmin(), admin) << family << " " << major;
        EXPECT_EQ(common.ElevationType(), elevation) << family << " " << major;
    }
}

TEST_F(Common, WhatIsAskedOnceAndWhatEachTime) {
    ground.system.temp = Text(u"/tmp/\0rest", 10);
    EXPECT_EQ(common.TempDir(), u"/tmp/");
    ground.system.temp = u"/anders/";
    EXPECT_EQ(common.TempDir(), u"/tmp/");
    EXPECT_EQ(common.RTMApp()->Name() + u" " + common.RTMApp()->Path(), u"Anwendung.exe /opt/host");

    ground.system.screen.workLeft = 60;
    ground.system.workAreas[5] = {1920, 0, 3200, 1024};
    for (const auto& [window, edges] :
         {std::pair{0, "900|0|28800|16200"}, {4, "900|0|28800|16200"}, {5, "28800|0|48000|15360"}}) {
        const auto [left, top, right, bottom] = rtmMain::WorkArea(window);  // of 4 the ground knows nothing
        EXPECT_TOLD(edges, left, top, right, bottom);
    }
}

TEST(OSName, OfTheFamilyAndOthers) {
    const auto name = [](int32 family, int32 major, int32 minor, int32 product) {
        return osName({family, major, minor, product, true, {}});
    };
    EXPECT_TOLD("Windows Typ 1 - Version 4.10|Windows NT Server 4.0|Windows 10|Windows Server Version 10.0",
                name(1, 4, 10, 1), name(2, 4, 0, 3), name(2, 6, 4, 1), name(2, 10, 0, 3));
}

TEST_F(Common, PathsAreJoinedAndBounded) {
    using rtmMain::JoinPath;
    const Text joined[] = {JoinPath({u"/a", u"", u"b"}), JoinPath({u"", u"b"}),
                           JoinPath({u"/a/", u"/b", u"c"})};
    EXPECT_TOLD("/a/b,b,/a/b/c", std::span(joined));
    const Text longPart(250, u'x');
    EXPECT_EQ(JoinPath({u"/a", longPart, u"12345", u"1"}), u"/a/" + longPart + u"/12345")
        << "259 characters fit";
    EXPECT_EQ(JoinPath({u"/a", longPart, u"123456", u"1"}), u"/a/" + longPart + u"/1")
        << "the rest is left out";
    ground.system.delimiter = u'\\';
    EXPECT_EQ(JoinPath({u"C:", u"b"}), u"C:\\b");
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
    EXPECT_TOLD("no|no|no", rtmMain::EnsureFolder(u""), rtmMain::EnsureFolder(u"/p/neu"),
                files.exists(u"/p/neu"));
    allowed = true;
    EXPECT_TRUE(rtmMain::EnsureFolder(u"/p/neu"));
    EXPECT_TRUE(rtmMain::EnsureFolder(u"/p/neu/x/"));
    EXPECT_EQ(asked, (std::vector<Text>{u"/p/", u"/p/", u"/p/neu/"}));
    EXPECT_FALSE(rtmMain::EnsureFolder(u"/p/datei")) << "a file is no folder";
    EXPECT_FALSE(rtmMain::EnsureFolder(u"/fehlt/neu"));
}

TEST(NumberCode, EveryNumberComesBackInFiveColumnsWithoutALeadingDigit) {
    constexpr int32 kLargest = std::numeric_limits<int32>::max(), kLeast = std::numeric_limits<int32>::min();
    for (const auto& [value, text] :
         {std::pair{0, u"0"}, std::pair{99999, u"99999"}, std::pair{100000, u"!!,>o"},
          std::pair{830584, u"!\"!!!"}, std::pair{1171123439, u"/~~~~"}, std::pair{1171123440, u":!!!!"},
          std::pair{kLargest, u"FPP}d"}, std::pair{kLeast, u"K!!!!"}})
        EXPECT_EQ(rtmMain::EncodeNumber(value), text) << value;
    std::mt19937 random(20240601);
    const auto check = [](int32 value) {
        const Text text = rtmMain::EncodeNumber(value);
        ASSERT_EQ(rtmMain::DecodeNumber(text), value) << toUtf8(text);
        ASSERT_LE(text.size(), 5u);
        ASSERT_TRUE((value >= 0 && value <= 99999) || !IstZiffern(text.substr(0, 1))) << value;
    };
    for (int32 near = 0; near <= 2000; ++near)
        for (const int32 value : {near, -near, 100000 + near, 100000 - near, kLargest - near, kLeast + near})
            check(value);
    for (int32 i = 0; i < 200000; ++i) check(static_cast<int32>(static_cast<uint32>(random())));

    for (const TextView text : {u"", u"     ", u"12a", u"1,5", u"!~~~~~", u"FPP}e", u"ä!!!!", u"G!!!!"})
        EXPECT_EQ(rtmMain::DecodeNumber(text), 0) << toUtf8(text);
    EXPECT_EQ(rtmMain::DecodeNumber(u"   42"), 42);
    EXPECT_EQ(rtmMain::DecodeNumber(u"!!,>o   "), 100000) << "a blank ends the number";
}

TEST(StartObjects, KeepOrderAndAlwaysAnswerFalse) {
    clsStartObjects list;
    const auto object = std::make_shared<clsHostApp>();
    EXPECT_TOLD("1|2|1", list.Add(10), list.Add(20, std::shared_ptr<Object>(object), true),
                list.Add(5, u"vorn", false, true));
    EXPECT_TOLD("5|20|-1", list.ProgID(1), list.ProgID(3), list.Waiting(3));
    EXPECT_EQ(std::get<std::shared_ptr<Object>>(list.Args(3)), object);
    // The last one was there.
    EXPECT_TOLD("no|no|no|2|10|0|yes", list.Remove(0), list.Remove(4), list.Remove(1), list.Count(),
                list.ProgID(1), list.ProgID(3), list.Args(-1).isEmpty());
}

}  // namespace
}  // namespace tsRtm::test
