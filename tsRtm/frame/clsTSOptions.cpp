#include "tsRtm/frame/clsTSOptions.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/options/OptionRules.hpp"
#include "tsRtm/frame/options/Registry.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/state/SystemKinds.hpp"

namespace tsRtm {

namespace {

using optionTable::of;

constexpr TextView internetKey = u"Internet";

constexpr int32 lastOf9x = 490;  // major * 100 + minor
constexpr int32 windows2000 = 500;

constexpr int32 smallestTool = 16, largestTool = 128, toolStep = 8;  // pixels
constexpr int32 narrowestBar = 1000, widestBar = 9999;               // twips
constexpr int32 barMargin = 300;                                     // twips
constexpr int32 innerFrame = 2;                                      // pixels
constexpr int32 highestBar = 3;
constexpr int32 maximised = 2;

bool modernSystem() noexcept {
    const auto& os = rtmMain::state().os;
    const int32 version = os.major * 100 + os.minor;
    return (os.platformId == systemKind::ntFamily && version >= windows2000) ||
           (os.platformId == systemKind::win9x && version > lastOf9x);
}

bool whenUnset(UnsetFlag rule) noexcept {
    return rule == UnsetFlag::yes || (rule == UnsetFlag::bySystem && modernSystem());
}

// The finer the screen, the larger the pictures.
int32 toolSizeByScreen() noexcept {
    const int32 twips = rtmMain::state().screen.twipsPerPixelX;
    if (twips < 10) return 64;
    if (twips < 12) return 48;
    return twips < 15 ? 32 : 16;
}

int32 toolSize(TextView stored, int32 number) noexcept {
    const int32 wanted = stored.empty() ? toolSizeByScreen() : number;
    return std::clamp(wanted, smallestTool, largestTool) / toolStep * toolStep;
}

// Room for one and a half pictures between frames.
int32 barWidthFor(int32 toolbarSize) noexcept {
    const auto& screen = rtmMain::state().screen;
    const int32 twips = screen.twipsPerPixelX;
    return toolbarSize * twips * 3 / 2 + 2 * (screen.edgeX + screen.borderX + innerFrame) * twips + barMargin;
}

}  // namespace

clsTSOptions::clsTSOptions() {
    rtmMain::ensureStarted();
    const bool forAllUsers = modernSystem() && !rtmMain::system().user.isRemoteSession();
    machineHive_ = forAllUsers ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

HKeys clsTSOptions::hive(const OptionRule& rule) const noexcept {
    return rule.place == OptionPlace::machine ? machineHive_ : HKEY_CURRENT_USER;
}

Text clsTSOptions::subkey(const OptionRule& rule) {
    return rule.place == OptionPlace::internet ? Text(internetKey) : rtmMain::state().appProgID;
}

Text clsTSOptions::stored(const OptionRule& rule) const {
    Text own = registry::read(hive(rule), registry::pathOf(subkey(rule)), rule.name);
    if (!own.empty() || !rule.twoLevels) return own;
    return registry::read(hive(rule), registry::kRoot, rule.name);
}

bool clsTSOptions::flag(const OptionRule& rule) const {
    const Text text = stored(rule);
    if (text.empty()) return whenUnset(rule.unset);
    return Val(TextView(text).substr(0, rule.characters)) != 0;
}

int32 clsTSOptions::number(const OptionRule& rule) const {
    const Text text = stored(rule);
    // Only so many characters count: a width of "10000" reads as it stands and is too wide.
    const int32 read = rtmMain::SwitchValue(text, rule.characters);
    switch (rule.number) {
        case NumberRule::barHeight:
            return read >= 1 && read <= highestBar ? read : 1;
        case NumberRule::barWidth:
            return read >= narrowestBar && read <= widestBar ? read : barWidthFor(ToolbarSize());
        case NumberRule::toolbarSize:
            return toolSize(text, read);
        case NumberRule::windowState:
            return read == maximised ? maximised : 0;
        case NumberRule::asRead:
            break;
    }
    return read;
}

Text clsTSOptions::effective(const OptionRule& rule) const {
    if (rule.kind == OptionKind::flag) return flag(rule) ? u"-1" : u"0";
    return rule.kind == OptionKind::number ? toText(number(rule)) : stored(rule);
}

void clsTSOptions::write(const OptionRule& rule, TextView value) const {
    registry::write(hive(rule), registry::pathOf(subkey(rule)), rule.name, value);
}

void clsTSOptions::writeFlag(const OptionRule& rule, bool value) const { write(rule, value ? u"-1" : u"0"); }

void clsTSOptions::writeNumber(const OptionRule& rule, int32 value) const { write(rule, toText(value)); }

bool clsTSOptions::AdresseMitAnrede() const {
    rtmMain::state().adresseMitAnrede = flag(of(u"AdresseMitAnrede"));
    return *rtmMain::state().adresseMitAnrede;
}

// Flags, numbers and texts as the table tells.
bool clsTSOptions::SignSilent() const { return flag(of(u"SignSilent")); }
bool clsTSOptions::ShowAnimation() const { return flag(of(u"ShowAnimation")); }
bool clsTSOptions::ShowEndeDialog() const { return flag(of(u"ShowEndeDialog")); }
bool clsTSOptions::ExpertenModus() const { return flag(of(u"ExpertenModus")); }
bool clsTSOptions::Toolbar() const { return flag(of(u"Toolbar")); }
bool clsTSOptions::StatusBar() const { return flag(of(u"StatusBar")); }
bool clsTSOptions::ExpressBar() const { return flag(of(u"ExpressBar")); }
bool clsTSOptions::ExpressBarAuto() const { return flag(of(u"ExpressBarAuto")); }
bool clsTSOptions::ExpressBarStayOpen() const { return flag(of(u"ExpressBarStayOpen")); }
bool clsTSOptions::ExpressBarAnimate() const { return flag(of(u"ExpressBarAnimate")); }
bool clsTSOptions::F11F12() const { return flag(of(u"F11F12")); }
bool clsTSOptions::FastAddString() const { return flag(of(u"FastAddString")); }

void clsTSOptions::SignSilent(bool value) { writeFlag(of(u"SignSilent"), value); }
void clsTSOptions::AdresseMitAnrede(bool value) { writeFlag(of(u"AdresseMitAnrede"), value); }
void clsTSOptions::ShowAnimation(bool value) { writeFlag(of(u"ShowAnimation"), value); }
void clsTSOptions::ShowEndeDialog(bool value) { writeFlag(of(u"ShowEndeDialog"), value); }
void clsTSOptions::ExpertenModus(bool value) { writeFlag(of(u"ExpertenModus"), value); }
void clsTSOptions::Toolbar(bool value) { writeFlag(of(u"Toolbar"), value); }
void clsTSOptions::StatusBar(bool value) { writeFlag(of(u"StatusBar"), value); }
void clsTSOptions::ExpressBar(bool value) { writeFlag(of(u"ExpressBar"), value); }
void clsTSOptions::ExpressBarAuto(bool value) { writeFlag(of(u"ExpressBarAuto"), value); }
void clsTSOptions::ExpressBarStayOpen(bool value) { writeFlag(of(u"ExpressBarStayOpen"), value); }
void clsTSOptions::ExpressBarAnimate(bool value) { writeFlag(of(u"ExpressBarAnimate"), value); }
void clsTSOptions::F11F12(bool value) { writeFlag(of(u"F11F12"), value); }
void clsTSOptions::FastAddString(bool value) { writeFlag(of(u"FastAddString"), value); }

int32 clsTSOptions::ExpressBarWidth() const { return number(of(u"ExpressBarWidth")); }
int32 clsTSOptions::ExpressBarHeight() const { return number(of(u"ExpressBarHeight")); }
int32 clsTSOptions::ToolbarSize() const { return number(of(u"ToolbarSize")); }
int32 clsTSOptions::MDIChildWState() const { return number(of(u"MDIChildWState")); }
int32 clsTSOptions::TileWallPaper() const { return number(of(u"TileWallPaper")); }
eUpdateStrategy clsTSOptions::UpdateStrategy() const {
    return static_cast<eUpdateStrategy>(number(of(u"UpdateStrategy")));
}
ePreviewSize clsTSOptions::PreviewWindowSize() const {
    return static_cast<ePreviewSize>(number(of(u"PreviewWindowSize")));
}
ePreviewZoom clsTSOptions::PreviewZoom() const {
    return static_cast<ePreviewZoom>(number(of(u"PreviewZoom")));
}

void clsTSOptions::ExpressBarWidth(int32 value) { writeNumber(of(u"ExpressBarWidth"), value); }
void clsTSOptions::ExpressBarHeight(int32 value) { writeNumber(of(u"ExpressBarHeight"), value); }
void clsTSOptions::ToolbarSize(int32 value) { writeNumber(of(u"ToolbarSize"), value); }
void clsTSOptions::MDIChildWState(int32 value) { writeNumber(of(u"MDIChildWState"), value); }
void clsTSOptions::TileWallPaper(int32 value) { writeNumber(of(u"TileWallPaper"), value); }
void clsTSOptions::UpdateStrategy(eUpdateStrategy value) { writeNumber(of(u"UpdateStrategy"), value); }
void clsTSOptions::PreviewWindowSize(ePreviewSize value) { writeNumber(of(u"PreviewWindowSize"), value); }
void clsTSOptions::PreviewZoom(ePreviewZoom value) { writeNumber(of(u"PreviewZoom"), value); }

Text clsTSOptions::UpdateLastLook() const { return stored(of(u"UpdateLastLook")); }
Text clsTSOptions::Schriftart() const { return stored(of(u"Schriftart")); }
Text clsTSOptions::SchriftGroesse() const { return stored(of(u"SchriftGroesse")); }
Text clsTSOptions::WallPaper() const { return stored(of(u"WallPaper")); }
Text clsTSOptions::FreeItems() const { return stored(of(u"FreeItems")); }
Text clsTSOptions::Started() const { return stored(of(u"Started")); }
Text clsTSOptions::Ended() const { return stored(of(u"Ended")); }
Text clsTSOptions::Version() const { return stored(of(u"Version")); }

void clsTSOptions::UpdateLastLook(TextView value) { write(of(u"UpdateLastLook"), value); }
void clsTSOptions::Schriftart(TextView value) { write(of(u"Schriftart"), value); }
void clsTSOptions::SchriftGroesse(TextView value) { write(of(u"SchriftGroesse"), value); }
void clsTSOptions::WallPaper(TextView value) { write(of(u"WallPaper"), value); }
void clsTSOptions::FreeItems(TextView value) { write(of(u"FreeItems"), value); }
void clsTSOptions::Started(TextView value) { write(of(u"Started"), value); }
void clsTSOptions::Ended(TextView value) { write(of(u"Ended"), value); }
void clsTSOptions::Version(TextView value) { write(of(u"Version"), value); }

}  // namespace tsRtm
