// The options of the user interface: names, defaults, limits, levels and places.
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/clsTSOptions.hpp"
#include "tsRtm/frame/options/OptionRules.hpp"

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

// A property that goes by the row of its own name.
template <class Value, class Argument = Value>
struct Property {
    Value (clsTSOptions::*read)() const;
    void (clsTSOptions::*write)(Argument);
    const OptionRule& rule;
};
template <class Value, class Argument>
Property(Value (clsTSOptions::*)() const, void (clsTSOptions::*)(Argument), const OptionRule&)
    -> Property<Value, Argument>;
#define TSRTM_PROPERTY(name) \
    Property { &clsTSOptions::name, &clsTSOptions::name, optionTable::of(u## #name) }

TEST_F(Options, EachPropertyReadsAndWritesItsOwnRow) {
    clsTSOptions options;
    const auto keeps = [&](const auto& property, auto value, TextView text) {
        SCOPED_TRACE(toUtf8(property.rule.property));
        EXPECT_EQ(options.stored(property.rule), u"");
        (options.*property.write)(value);
        EXPECT_EQ(options.stored(property.rule), text);
        EXPECT_EQ((options.*property.read)(), value);
    };
    for (const auto& flag :
         {TSRTM_PROPERTY(SignSilent), TSRTM_PROPERTY(AdresseMitAnrede), TSRTM_PROPERTY(ShowAnimation),
          TSRTM_PROPERTY(ShowEndeDialog), TSRTM_PROPERTY(ExpertenModus), TSRTM_PROPERTY(Toolbar),
          TSRTM_PROPERTY(StatusBar), TSRTM_PROPERTY(ExpressBar), TSRTM_PROPERTY(ExpressBarAuto),
          TSRTM_PROPERTY(ExpressBarStayOpen), TSRTM_PROPERTY(ExpressBarAnimate), TSRTM_PROPERTY(F11F12),
          TSRTM_PROPERTY(FastAddString)}) {
        const bool unset = flag.rule.unset != UnsetFlag::no;
        EXPECT_EQ((options.*flag.read)(), unset) << toUtf8(flag.rule.property);
        keeps(flag, !unset, unset ? u"0" : u"-1");
    }
    for (const auto& number :
         {TSRTM_PROPERTY(ExpressBarWidth), TSRTM_PROPERTY(ExpressBarHeight), TSRTM_PROPERTY(ToolbarSize),
          TSRTM_PROPERTY(MDIChildWState), TSRTM_PROPERTY(TileWallPaper)}) {
        const int32 value = number.rule.characters == 5 ? 1234 : number.rule.characters == 3 ? 48 : 2;
        keeps(number, value, toText(value));
    }
    keeps(TSRTM_PROPERTY(UpdateStrategy), upAlways, u"3");
    keeps(TSRTM_PROPERTY(PreviewZoom), zoomFensterbreite, toText(zoomFensterbreite));
    keeps(TSRTM_PROPERTY(PreviewWindowSize), viewMaximiert, u"1");
    for (const auto& text :
         {TSRTM_PROPERTY(UpdateLastLook), TSRTM_PROPERTY(Schriftart), TSRTM_PROPERTY(SchriftGroesse),
          TSRTM_PROPERTY(WallPaper), TSRTM_PROPERTY(FreeItems), TSRTM_PROPERTY(Started),
          TSRTM_PROPERTY(Ended), TSRTM_PROPERTY(Version)})
        keeps(text, TextView(u"Größe 12"), u"Größe 12");
    EXPECT_TOLD("Größe 12|Größe 12|Größe 12", stored(u"Wallpaper"), stored(u"LastLook", u"\\Internet"),
                stored(u"Started", u"\\Anwendung", HKeys::localMachine));
    rtmMain::state().appProgID = u"Andere";
    EXPECT_EQ(options.UpdateStrategy(), upAlways) << "one for all applications";
    EXPECT_EQ(options.ExpressBarHeight(), 1) << "each application has its own";
}

TEST_F(Options, StoredTextsReadByKindAndWithinLimits) {
    using optionTable::of;
    // 24 pixels, 2 frames of 2 + 1 + 2 pixels, and the margin are 810 twips. "*" is a text that is there and
    // empty: as not stored.
    const std::pair<OptionRule, TextView> rows[] = {
        {of(u"SignSilent"), u"FALSCH=0|wahr=-1|x=0|001=0|-1=-1"},
        {of(u"Toolbar"), u"0=0|*=-1"},
        {of(u"ExpressBarHeight"), u"=1|3=3|5=1|27=2"},
        {of(u"ExpressBarWidth"), u"1000=1000|9999=9999|999=810|10000=810"},
        {of(u"ToolbarSize"), u"20=16|140=128|0481=48|-9=16|x=16"},
        {of(u"MDIChildWState"), u"=0|1=0|2=2|3=0"},
        {of(u"TileWallPaper"), u"7=7|12=1"},
        {of(u"PreviewZoom"), u"2=2|312=31"},
        {of(u"WallPaper"), u" Größe 12= Größe 12"}};
    const clsTSOptions options;
    for (const auto& [rule, texts] : rows)
        for (const auto& [text, value] : table<2>(texts, u"|")) {
            store(rule.name, text == u"*" ? Text(1, u'\0') : text);
            EXPECT_EQ(options.effective(rule), value) << toUtf8(rule.name) << " " << toUtf8(text);
        }
}

TEST_F(Options, ToolbarGrowsWithTheResolution) {
    for (const auto& [twips, pixels] : {std::pair{9, 64}, {10, 48}, {11, 48}, {12, 32}, {14, 32}, {15, 16}}) {
        ground.system.screen.twipsPerPixelX = twips;
        restart();
        EXPECT_EQ(clsTSOptions().ToolbarSize(), pixels) << twips;
        EXPECT_EQ(clsTSOptions().ExpressBarWidth(), pixels * twips * 3 / 2 + 10 * twips + 300) << twips;
    }
}

TEST_F(Options, GlobalSettingServesApplicationsWithoutOneOfTheirOwn) {
    clsTSOptions options;
    for (const auto& [name, value] : table<2>(u"EditFontName=Arial EditFontSize=11 Animate=0 EndDialog=0"))
        store(name, value, u"");
    EXPECT_TOLD("Arial|11|no|yes", options.Schriftart(), options.SchriftGroesse(), options.ShowAnimation(),
                options.ShowEndeDialog())
        << "the last has one level";
    options.Schriftart(u"Courier");
    options.ShowAnimation(true);
    EXPECT_TOLD("Courier|yes|Arial", options.Schriftart(), options.ShowAnimation(),
                stored(u"EditFontName", u""))
        << "written to the application alone";
    rtmMain::state().appProgID.clear();
    EXPECT_TOLD("Arial|no", options.Schriftart(), options.ShowEndeDialog())
        << "without an id the root is the application's key";
}

TEST_F(Options, OldSystemsAndRemoteSessionsKeepToTheUser) {
    auto& os = ground.system.os;
    using Row = std::tuple<int32, int32, int32, bool, bool, HKeys>;
    for (const auto& [platform, major, minor, remote, animated, hive] :
         {Row{2, 6, 4, false, true, HKeys::localMachine}, Row{2, 5, 0, false, true, HKeys::localMachine},
          Row{2, 5, 0, true, true, HKeys::currentUser}, Row{2, 4, 99, false, false, HKeys::currentUser},
          Row{1, 4, 90, false, false, HKeys::currentUser}, Row{1, 4, 91, false, true, HKeys::localMachine}}) {
        std::tie(os.platformId, os.major, os.minor, ground.system.remote) =
            std::tuple(platform, major, minor, remote);
        restart();
        clsTSOptions options;
        EXPECT_EQ(options.ShowAnimation(), animated) << platform << ' ' << major << ' ' << minor;
        ground.system.remote = !remote;  // the place was chosen before
        options.Version(u"3.01");
        EXPECT_EQ(stored(u"Version", u"\\Anwendung", hive), u"3.01");
        static_cast<void>(ground.settings.removeKey(hive, u"Software"));
    }
}

TEST_F(Options, FormOfAddressStaysForThePrinting) {
    clsTSOptions options;
    options.AdresseMitAnrede(true);
    EXPECT_FALSE(rtmMain::state().adresseMitAnrede) << "only reading tells";
    EXPECT_TRUE(options.AdresseMitAnrede());
    EXPECT_EQ(rtmMain::state().adresseMitAnrede, true);
}

}  // namespace
}  // namespace tsRtm::test
