#pragma once
// The options of the user interface: what each is stored as, and what holds where nothing is stored.
#include <array>
#include <cstddef>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

enum class OptionKind { flag, number, text };

// The key below the root.
enum class OptionPlace {
    application,  // of the user, named by App_ProgID
    internet,     // of the user, "Internet", the same for all applications
    machine,      // named by App_ProgID, for all users where the session is local
};

// What a flag is that is not stored.
enum class UnsetFlag { no, yes, bySystem };

// What becomes of the number read.
enum class NumberRule {
    asRead,
    barHeight,    // 1..3, else 1
    barWidth,     // 1000..9999 twips, else computed from the tool bar
    toolbarSize,  // 16..128 pixels in steps of 8; not stored: by the screen
    windowState,  // 0 or 2, else 0
};

struct OptionRule {
    TextView property;
    TextView name;  // of the value in the store; differs from the property's in places, and stays so
    OptionKind kind;
    OptionPlace place = OptionPlace::application;
    std::size_t characters = 2;  // read from the start of the stored text
    UnsetFlag unset = UnsetFlag::no;
    NumberRule number = NumberRule::asRead;
    bool twoLevels = false;  // looked for in the root, too, where the application has none
};

namespace optionTable {

using enum OptionKind;
using enum OptionPlace;
using enum UnsetFlag;
using enum NumberRule;
inline constexpr std::size_t all = TextView::npos;

// clang-format off
inline constexpr std::array rows{
    OptionRule{u"SignSilent",         u"SignSilent",         flag},
    OptionRule{u"UpdateStrategy",     u"Update",             number, internet},
    OptionRule{u"UpdateLastLook",     u"LastLook",           text,   internet,    all},
    OptionRule{u"AdresseMitAnrede",   u"AdresseMitAnrede",   flag},
    OptionRule{u"ShowAnimation",      u"Animate",            flag,   application, 2,   bySystem, asRead, true},
    OptionRule{u"ShowEndeDialog",     u"EndDialog",          flag,   application, 2,   yes},
    OptionRule{u"Schriftart",         u"EditFontName",       text,   application, all, no, asRead, true},
    OptionRule{u"SchriftGroesse",     u"EditFontSize",       text,   application, all, no, asRead, true},
    OptionRule{u"ExpertenModus",      u"Expertenmodus",      flag},
    OptionRule{u"PreviewWindowSize",  u"PreviewWindowMode",  number},
    OptionRule{u"PreviewZoom",        u"PreViewZoom",        number},
    OptionRule{u"Toolbar",            u"ToolBar",            flag,   application, 2,   yes},
    OptionRule{u"StatusBar",          u"StatusBar",          flag,   application, 2,   yes},
    OptionRule{u"ExpressBar",         u"ExpressBar",         flag,   application, 2,   yes},
    OptionRule{u"ExpressBarWidth",    u"ExpressBarWidth",    number, application, 5,   no, barWidth},
    OptionRule{u"ExpressBarHeight",   u"ExpressBarHeight",   number, application, 1,   no, barHeight},
    OptionRule{u"ExpressBarAuto",     u"ExpressBarAuto",     flag,   application, 2,   yes},
    OptionRule{u"ExpressBarStayOpen", u"ExpressBarStayOpen", flag},
    OptionRule{u"ExpressBarAnimate",  u"ExpressBarAnimate",  flag,   application, 2,   yes},
    OptionRule{u"ToolbarSize",        u"ToolBarSize",        number, application, 3,   no, toolbarSize},
    OptionRule{u"MDIChildWState",     u"MDIChildWState",     number, application, 1,   no, windowState},
    OptionRule{u"F11F12",             u"F11F12",             flag},
    OptionRule{u"WallPaper",          u"Wallpaper",          text,   application, all},
    OptionRule{u"TileWallPaper",      u"TileWallpaper",      number, application, 1},
    OptionRule{u"FreeItems",          u"FreeItems",          text,   application, all},
    OptionRule{u"Started",            u"Started",            text,   machine,     all},
    OptionRule{u"Ended",              u"Ended",              text,   machine,     all},
    OptionRule{u"Version",            u"Version",            text,   machine,     all},
    OptionRule{u"FastAddString",      u"FastAddString",      flag},
};
// clang-format on

// The row of a property; a name that has none does not compile.
consteval const OptionRule& of(TextView property) {
    for (const auto& row : rows)
        if (row.property == property) return row;
    throw "no such option";
}

}  // namespace optionTable
}  // namespace tsRtm
