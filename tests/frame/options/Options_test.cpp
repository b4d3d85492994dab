// The options of the user interface: names, defaults, limits, levels and places.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/options/clsTSOptions.hpp"

namespace tsRtm::test {
namespace {

using platform::HKeys;

class Options : public testing::Test {
 protected:
    void SetUp() override { rtmMain::state().appProgID = u"Anwendung"; }
    void restart() {
        library.restart();
        SetUp();
    }
    void store(TextView name, TextView value, TextView key = u"\\Anwendung",
               HKeys hive = HKeys::currentUser) {
        ASSERT_EQ(ground.settings.set(hive, u"Software\\Tessarol" + Text(key), name, value),
                  platform::SystemError::none);
    }
    std::optional<Text> stored(TextView name, TextView key = u"\\Anwendung",
                               HKeys hive = HKeys::currentUser) {
        return ground.settings.get(hive, u"Software\\Tessarol" + Text(key), name);
    }

    TestGround ground;
    StartedLibrary library{ground};
};

struct Flag {
    bool (clsTSOptions::*read)() const;
    void (clsTSOptions::*write)(bool);
    TextView name;
    bool unset;
};
#define TSRTM_FLAG(property, name, unset) \
    { &clsTSOptions::property, &clsTSOptions::property, name, unset }

TEST_F(Options, FlagsHaveTheirNamesAndDefaults) {
    const Flag flags[] = {
        TSRTM_FLAG(SignSilent, u"SignSilent", false),
        TSRTM_FLAG(AdresseMitAnrede, u"AdresseMitAnrede", false),
        TSRTM_FLAG(ShowAnimation, u"Animate", true),
        TSRTM_FLAG(ShowEndeDialog, u"EndDialog", true),
        TSRTM_FLAG(ExpertenModus, u"Expertenmodus", false),
        TSRTM_FLAG(Toolbar, u"ToolBar", true),
        TSRTM_FLAG(StatusBar, u"StatusBar", true),
        TSRTM_FLAG(ExpressBar, u"ExpressBar", true),
        TSRTM_FLAG(ExpressBarAuto, u"ExpressBarAuto", true),
        TSRTM_FLAG(ExpressBarStayOpen, u"ExpressBarStayOpen", false),
        TSRTM_FLAG(ExpressBarAnimate, u"ExpressBarAnimate", true),
        TSRTM_FLAG(F11F12, u"F11F12", false),
        TSRTM_FLAG(FastAddString, u"FastAddString", false),
    };
    clsTSOptions options;
    for (const auto& flag : flags) {
        SCOPED_TRACE(toUtf8(flag.name));
        EXPECT_EQ((options.*flag.read)(), flag.unset);
        (options.*flag.write)(!flag.unset);
        EXPECT_EQ(stored(flag.name), flag.unset ? u"0" : u"-1");
        EXPECT_EQ((options.*flag.read)(), !flag.unset);
        for (const auto& [text, value] :
             {std::pair{u"FALSCH", false}, {u"wahr", true}, {u"x", false}, {u"001", false}, {u"-1", true}}) {
            store(flag.name, text);
            EXPECT_EQ((options.*flag.read)(), value) << toUtf8(text);
        }
        store(flag.name, Text(1, u'\0'));
        EXPECT_EQ((options.*flag.read)(), flag.unset) << "empty is as not stored";
    }
}

TEST_F(Options, TextsHaveTheirNamesAndPlaces) {
    struct {
        Text (clsTSOptions::*read)() const;
        void (clsTSOptions::*write)(TextView);
        TextView name;
        TextView key;
        HKeys hive;
    } const texts[] = {
        {&clsTSOptions::UpdateLastLook, &clsTSOptions::UpdateLastLook, u"LastLook", u"\\Internet",
         HKeys::currentUser},
        {&clsTSOptions::Schriftart, &clsTSOptions::Schriftart, u"EditFontName", u"\\Anwendung",
         HKeys::currentUser},
        {&clsTSOptions::SchriftGroesse, &clsTSOptions::SchriftGroesse, u"EditFontSize", u"\\Anwendung",
         HKeys::currentUser},
        {&clsTSOptions::WallPaper, &clsTSOptions::WallPaper, u"Wallpaper", u"\\Anwendung",
         HKeys::currentUser},
        {&clsTSOptions::FreeItems, &clsTSOptions::FreeItems, u"FreeItems", u"\\Anwendung",
         HKeys::currentUser},
        {&clsTSOptions::Started, &clsTSOptions::Started, u"Started", u"\\Anwendung", HKeys::localMachine},
        {&clsTSOptions::Ended, &clsTSOptions::Ended, u"Ended", u"\\Anwendung", HKeys::localMachine},
        {&clsTSOptions::Version, &clsTSOptions::Version, u"Version", u"\\Anwendung", HKeys::localMachine},
    };
    clsTSOptions options;
    for (const auto& text : texts) {
        SCOPED_TRACE(toUtf8(text.name));
        EXPECT_EQ((options.*text.read)(), u"");
        (options.*text.write)(u"Größe 12");
        EXPECT_EQ(stored(text.name, text.key, text.hive), u"Größe 12");
        EXPECT_EQ((options.*text.read)(), u"Größe 12");
        (options.*text.write)(u"");
        EXPECT_EQ((options.*text.read)(), u"");
    }
}

TEST_F(Options, NumbersReadTheirFirstCharactersWithinTheirLimits) {
    struct {
        int32 (clsTSOptions::*read)() const;
        TextView name;
        TextView text;
        int32 value;
    } const cases[] = {
        {&clsTSOptions::ExpressBarHeight, u"ExpressBarHeight", u"", 1},
        {&clsTSOptions::ExpressBarHeight, u"ExpressBarHeight", u"3", 3},
        {&clsTSOptions::ExpressBarHeight, u"ExpressBarHeight", u"5", 1},
        {&clsTSOptions::ExpressBarHeight, u"ExpressBarHeight", u"27", 2},
        {&clsTSOptions::ExpressBarWidth, u"ExpressBarWidth", u"1000", 1000},
        {&clsTSOptions::ExpressBarWidth, u"ExpressBarWidth", u"9999", 9999},
        // 24 pixels, 2 frames of 2 + 1 + 2 pixels, and the margin
        {&clsTSOptions::ExpressBarWidth, u"ExpressBarWidth", u"", 24 * 15 + 10 * 15 + 300},
        {&clsTSOptions::ExpressBarWidth, u"ExpressBarWidth", u"999", 810},
        {&clsTSOptions::ExpressBarWidth, u"ExpressBarWidth", u"10000", 810},
        {&clsTSOptions::ExpressBarWidth, u"ExpressBarWidth", u"123456", 810},
        {&clsTSOptions::ToolbarSize, u"ToolBarSize", u"20", 16},
        {&clsTSOptions::ToolbarSize, u"ToolBarSize", u"100", 96},
        {&clsTSOptions::ToolbarSize, u"ToolBarSize", u"140", 128},
        {&clsTSOptions::ToolbarSize, u"ToolBarSize", u"0481", 48},
        {&clsTSOptions::ToolbarSize, u"ToolBarSize", u"-9", 16},
        {&clsTSOptions::ToolbarSize, u"ToolBarSize", u"x", 16},
        {&clsTSOptions::MDIChildWState, u"MDIChildWState", u"", 0},
        {&clsTSOptions::MDIChildWState, u"MDIChildWState", u"1", 0},
        {&clsTSOptions::MDIChildWState, u"MDIChildWState", u"2", 2},
        {&clsTSOptions::MDIChildWState, u"MDIChildWState", u"3", 0},
        {&clsTSOptions::TileWallPaper, u"TileWallpaper", u"7", 7},
        {&clsTSOptions::TileWallPaper, u"TileWallpaper", u"12", 1},
    };
    const clsTSOptions options;
    for (const auto& c : cases) {
        store(c.name, c.text);
        EXPECT_EQ((options.*c.read)(), c.value) << toUtf8(c.name) << " " << toUtf8(c.text);
    }
    store(u"PreViewZoom", u"2");
    store(u"PreviewWindowMode", u"1");
    store(u"Update", u"31", u"\\Internet");
    EXPECT_EQ(options.PreviewZoom(), zoomVergroessert);
    EXPECT_EQ(options.PreviewWindowSize(), viewMaximiert);
    EXPECT_EQ(static_cast<int32>(options.UpdateStrategy()), 31) << "two characters";
}

TEST_F(Options, NumbersAreWrittenAsTheyAre) {
    clsTSOptions options;
    options.ExpressBarWidth(5);
    options.ExpressBarHeight(3);
    options.ToolbarSize(33);
    options.MDIChildWState(2);
    options.TileWallPaper(1);
    options.UpdateStrategy(upAlways);
    options.PreviewZoom(zoomFensterbreite);
    options.PreviewWindowSize(viewMaximiert);
    EXPECT_EQ(stored(u"ExpressBarWidth"), u"5");
    EXPECT_EQ(stored(u"ToolBarSize"), u"33");
    EXPECT_EQ(options.ToolbarSize(), 32);
    EXPECT_EQ(options.ExpressBarHeight(), 3);
    EXPECT_EQ(options.MDIChildWState(), 2);
    EXPECT_EQ(options.TileWallPaper(), 1);
    EXPECT_EQ(options.PreviewZoom(), zoomFensterbreite);
    EXPECT_EQ(options.PreviewWindowSize(), viewMaximiert);
    EXPECT_EQ(stored(u"Update", u"\\Internet"), u"3");
    rtmMain::state().appProgID = u"Andere";
    EXPECT_EQ(options.UpdateStrategy(), upAlways) << "one for all applications";
    EXPECT_EQ(options.ExpressBarHeight(), 1) << "each application has its own";
}

TEST_F(Options, ToolbarGrowsWithTheResolution) {
    for (const auto& [twips, pixels] : {std::pair{9, 64}, {10, 48}, {11, 48}, {12, 32}, {14, 32}, {15, 16}}) {
        ground.system.metrics.twipsPerPixelX = twips;
        restart();
        EXPECT_EQ(clsTSOptions().ToolbarSize(), pixels) << twips;
        EXPECT_EQ(clsTSOptions().ExpressBarWidth(), pixels * twips * 3 / 2 + 10 * twips + 300) << twips;
    }
}

TEST_F(Options, GlobalSettingServesApplicationsWithoutOneOfTheirOwn) {
    clsTSOptions options;
    store(u"EditFontName", u"Arial", u"");
    store(u"EditFontSize", u"11", u"");
    store(u"Animate", u"0", u"");
    store(u"EndDialog", u"0", u"");
    EXPECT_EQ(options.Schriftart(), u"Arial");
    EXPECT_EQ(options.SchriftGroesse(), u"11");
    EXPECT_FALSE(options.ShowAnimation());
    EXPECT_TRUE(options.ShowEndeDialog()) << "has one level";
    options.Schriftart(u"Courier");
    options.ShowAnimation(true);
    EXPECT_EQ(options.Schriftart(), u"Courier");
    EXPECT_TRUE(options.ShowAnimation());
    EXPECT_EQ(stored(u"EditFontName", u""), u"Arial") << "written to the application alone";
    rtmMain::state().appProgID.clear();
    EXPECT_EQ(options.Schriftart(), u"Arial");
    EXPECT_FALSE(options.ShowEndeDialog()) << "without an id the root is the application's key";
}

TEST_F(Options, OldSystemsAndRemoteSessionsKeepToTheUser) {
    struct {
        int32 platform, major, minor;
        bool remote;
        bool animated;
        HKeys hive;
    } const cases[] = {
        {2, 6, 4, false, true, HKeys::localMachine},  {2, 5, 0, false, true, HKeys::localMachine},
        {2, 5, 0, true, true, HKeys::currentUser},    {2, 4, 99, false, false, HKeys::currentUser},
        {1, 4, 90, false, false, HKeys::currentUser}, {1, 4, 91, false, true, HKeys::localMachine},
    };
    for (const auto& c : cases) {
        ground.system.os.platformId = c.platform;
        ground.system.os.major = c.major;
        ground.system.os.minor = c.minor;
        ground.system.remote = c.remote;
        restart();
        clsTSOptions options;
        EXPECT_EQ(options.ShowAnimation(), c.animated) << c.platform << ' ' << c.major << ' ' << c.minor;
        ground.system.remote = !c.remote;  // the place was chosen before
        options.Version(u"3.01");
        EXPECT_EQ(stored(u"Version", u"\\Anwendung", c.hive), u"3.01");
        static_cast<void>(ground.settings.removeKey(c.hive, u"Software"));
    }
}

TEST_F(Options, FormOfAddressStaysForThePrinting) {
    clsTSOptions options;
    options.AdresseMitAnrede(true);
    EXPECT_FALSE(rtmMain::state().adresseMitAnrede) << "only reading tells";
    EXPECT_TRUE(options.AdresseMitAnrede());
    EXPECT_TRUE(rtmMain::state().adresseMitAnrede);
}

TEST_F(Options, TheTableTellsOfEach) {
    clsTSOptions options;
    for (const auto& rule : optionTable::rows) {
        const Text nothing = options.effective(rule);
        store(rule.name, rule.kind == OptionKind::flag ? u"FALSCH" : u"2", u"\\" + clsTSOptions::subkey(rule),
              static_cast<HKeys>(static_cast<uint32>(options.hive(rule))));
        EXPECT_EQ(options.stored(rule), rule.kind == OptionKind::flag ? u"0" : u"2") << toUtf8(rule.name);
        EXPECT_TRUE(rule.kind != OptionKind::flag || nothing == u"-1" || nothing == u"0");
    }
    EXPECT_EQ(options.effective(optionTable::of(u"ToolbarSize")), u"16");
    EXPECT_EQ(options.effective(optionTable::of(u"Toolbar")), u"0");
    EXPECT_EQ(options.effective(optionTable::of(u"Version")), u"2");
}

}  // namespace
}  // namespace tsRtm::test
