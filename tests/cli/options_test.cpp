// Settings by the command line.
#include "tests/cli/Tool.hpp"
#include "tests/support/Table.hpp"

namespace tsRtm::test {
namespace {

constexpr auto kUser = platform::HKeys::currentUser;
constexpr auto kMachine = platform::HKeys::localMachine;

class Options : public Tool {
 protected:
    std::optional<Text> stored(platform::HKeys hive, TextView key, TextView name) const {
        platform::posix::PosixSettings settings(path("config/tessarol"), path("etc/tessarol"));
        return settings.get(hive, u"Software\\Tessarol" + Text(key), name);
    }
    nlohmann::json option(const std::string& arguments, const std::string& name) {
        const auto list = ok("options list --json " + arguments).json();
        for (const auto& one : list["options"])
            if (one["option"] == name) return one;
        return {};
    }
};

TEST_F(Options, AreStoredWhereTheLibraryReadsThem) {
    for (const auto& [command, key, name, text] :
         table<4>(u"NetWait 10==NetWait=10; debug on==Debug=-1; Schriftart 'Liberation "
                  u"Sans'==EditFontName=Liberation Sans; Schriftart Größe --app "
                  u"Kanzlei=\\Kanzlei=EditFontName=Größe; ShowEndeDialog false --app "
                  u"Kanzlei=\\Kanzlei=EndDialog=0; ENDDIALOG Wahr --app Kanzlei=\\Kanzlei=EndDialog=-1; "
                  u"Toolbar -1 --app ''==ToolBar=-1; ToolbarSize 032 --app Kanzlei=\\Kanzlei=ToolBarSize=32; "
                  u"UpdateStrategy 3=\\Internet=Update=3; UpdateStrategy 2 --app "
                  u"Kanzlei=\\Internet=Update=2; RunTimeDir /srv/p/=M=RunTimeDir=/srv/p/; Version 3.01 --app "
                  u"Kanzlei --machine=M\\Kanzlei=Version=3.01; PrintAdrSchuldner FALSCH --app "
                  u"Kanzlei=\\Kanzlei=PrintAdrSchuldner=0; Frei '' --machine=M=Frei=empty",
                  u"; ")) {
        const bool machine = key.starts_with(u'M');
        prints("options set " + toUtf8(command), "");
        EXPECT_EQ(stored(machine ? kMachine : kUser, TextView(key).substr(machine ? 1 : 0), name),
                  text == u"empty" ? Text(1, u'\0') : text)
            << toUtf8(command);
    }
    prints("options get NetWait", "10\n");
    prints("options get Animate", "true\n");  // a default
    prints("options get Schriftart --app Andere", "Liberation Sans\n");
    prints("options get Version --app Kanzlei --machine", "3.01\n");
    EXPECT_EQ(
        option("--app Kanzlei", "ShowEndeDialog"),
        parsed(R"({"option":"ShowEndeDialog","value":true,"type":"flag","from":"application","stored":"-1",
                  "name":"EndDialog","key":"Software\\Tessarol\\Kanzlei","hive":"user"})"));
    EXPECT_EQ(option("--app Andere", "Schriftart")["from"], "all applications");
    EXPECT_EQ(option("--app Andere", "ToolbarSize")["stored"], nullptr);
    EXPECT_EQ(option("--app Kanzlei", "PrintAdrSchuldner")["value"], "0");
    EXPECT_EQ(option("--machine", "RunTimeDir")["from"], "machine");
    EXPECT_EQ(option("--machine", "NetWait"), nullptr);
    shows("options list", "--app 'Kanzlei'");
}

TEST_F(Options, AreDeletedSoThatTheDefaultHoldsAgain) {
    ok("options set NetWait 10");
    ok("options delete netwait");
    EXPECT_EQ(json("options get NetWait")["from"], "default");
    refused("options delete NetWait", 1, "no value 'NetWait'");
    ok("options set Toolbar false --app Kanzlei");
    ok("options set F11F12 true --app Kanzlei");
    ok("options set Frei 1");
    ok("options delete --all --app Kanzlei");
    EXPECT_EQ(option("--app Kanzlei", "F11F12")["value"], false);
    EXPECT_EQ(ok("options get Frei").out, "1\n") << "the root stays";
}

TEST_F(Options, WrongOnesAreRefusedAndChangeNothing) {
    refusedEach(
        "options ", 1,
        "set NetWait 0 -> from 1 to 999 | set NetWait zehn -> is a number | set ToolbarSize 20 --app K -> "
        "steps of 8 | set ExpressBarWidth 10000 --app K -> 1000 to 9999 | "
        "set Toolbar vielleicht --app K -> true or false | set Toolbar true -> --app ID | set Toolbar true "
        "--machine --app K -> --machine | set '' x -> has a name | get Unbekannt -> no value 'Unbekannt' | "
        "delete --all -> --app ID | delete --all --app '\\' -> --app ID | delete X --all --app K -> not "
        "both");
    refusedEach("options ", 2, "delete -> NAME or --all | set NetWait -> VALUE | list --foo -> --foo");
    EXPECT_EQ(ok("options list --app K").out.find("application"), std::string::npos);
}

// The library goes on with its defaults; who looks after the machine is told.
TEST_F(Options, ADamagedStoreIsToldAndLeftAsItIs) {
    const std::string rubbish(3000, 'x');
    write("config/tessarol/currentUser.sqlite", rubbish);
    for (const char* command :
         {"list", "get NetWait", "set NetWait 3", "delete NetWait", "delete --all --app K"})
        refused(std::string("options ") + command, 1, "currentUser.sqlite: it is damaged");
    EXPECT_EQ(read("config/tessarol/currentUser.sqlite"), rubbish);
    ok("options list --machine");
    ok("db create P --field A:text:3 --max 9");
}

}  // namespace
}  // namespace tsRtm::test
