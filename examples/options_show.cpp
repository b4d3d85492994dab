// The settings of an application, in a store of this program's own in FOLDER.
//
//     options_show FOLDER
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "tsRtm/tsRtm.hpp"

using namespace tsRtm;

namespace {

void show(const char* what, const Text& value) { std::cout << what << toUtf8(value) << '\n'; }
void show(const char* what, bool value) { std::cout << what << (value ? "yes" : "no") << '\n'; }

}  // namespace

int main(int argc, char** argv) {
    // Where the settings of a user lie; before the library starts.
    const auto folder = std::filesystem::absolute(argc > 1 ? argv[1] : "settings");
    std::filesystem::remove_all(folder);
    ::setenv("XDG_CONFIG_HOME", folder.c_str(), 1);

    clsRtm rtm;
    rtm.Common().App_ProgID(u"Kanzlei");
    const auto options = rtm.TSOptions();

    // Options of the user interface have defaults and limits.
    show("end dialog, not stored:      ", options->ShowEndeDialog());
    options->ShowEndeDialog(false);
    show("end dialog, stored as false: ", options->ShowEndeDialog());
    options->ToolbarSize(100);
    show("tool bar of 100 pixels:      ", toText(options->ToolbarSize()));

    // A value in the root serves all applications that have none of their own.
    rtm.RegSchreiben(HKEY_CURRENT_USER, u"", u"EditFontName", u"Arial");
    show("font of all applications:    ", options->Schriftart());
    options->Schriftart(u"Courier New");
    show("font of this one:            ", options->Schriftart());

    // Anything else is a text below the root; flags are "-1" and "0".
    rtm.RegSchreiben(HKEY_CURRENT_USER, u"Kanzlei", u"PrintAdrSchuldner", u"Wahr");
    show("a flag as it is stored:      ", rtm.RegLesen(HKEY_CURRENT_USER, u"Kanzlei", u"PrintAdrSchuldner"));
    show("the same as a flag:          ", rtm.BoolOption(u"Kanzlei", u"PrintAdrSchuldner"));
    rtm.LongOption(u"Kanzlei", u"LetzteNummer", 4711);
    show("a number:                    ", toText(rtm.LongOption(u"Kanzlei", u"LetzteNummer")));

    rtm.RegLoeschen(HKEY_CURRENT_USER, u"Kanzlei");
    show("font after deleting the key: ", options->Schriftart());
    return options->ShowEndeDialog() && options->Schriftart() == u"Arial" ? 0 : 1;
}
