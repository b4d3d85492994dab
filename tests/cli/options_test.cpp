// Settings by the command line.
#include "tests/cli/Tool.hpp"

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
    struct {
        const char* command;
        platform::HKeys hive;
        TextView key, name, text;
    } const cases[] = {
        {"NetWait 10", kUser, u"", u"NetWait", u"10"},
        {"debug on", kUser, u"", u"Debug", u"-1"},
        {"Schriftart 'Liberation Sans'", kUser, u"", u"EditFontName", u"Liberation Sans"},
        {"Schriftart Größe --app Kanzlei", kUser, u"\\Kanzlei", u"EditFontName", u"Größe"},
        {"ShowEndeDialog false --app Kanzlei", kUser, u"\\Kanzlei", u"EndDialog", u"0"},
        {"ENDDIALOG Wahr --app Kanzlei", kUser, u"\\Kanzlei", u"EndDialog", u"-1"},
        {"Toolbar -1 --app ''", kUser, u"", u"ToolBar", u"-1"},
        {"ToolbarSize 032 --app Kanzlei", kUser, u"\\Kanzlei", u"ToolBarSize", u"32"},
        {"UpdateStrategy 3", kUser, u"\\Internet", u"Update", u"3"},
        {"UpdateStrategy 2 --app Kanzlei", kUser, u"\\Internet", u"Update", u"2"},
        {"RunTimeDir /srv/p/", kMachine, u"", u"RunTimeDir", u"/srv/p/"},
        {"Version 3.01 --app Kanzlei --machine", kMachine, u"\\Kanzlei", u"Version", u"3.01"},
        {"PrintAdrSchuldner FALSCH --app Kanzlei", kUser, u"\\Kanzlei", u"PrintAdrSchuldner", u"0"},
        {"Frei '' --machine", kMachine, u"", u"Frei", TextView(u"\0", 1)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ok(std::string("options set ") + c.command).out, "");
        EXPECT_EQ(stored(c.hive, c.key, c.name), c.text) << c.command;
    }
    EXPECT_EQ(ok("options get NetWait").out, "10\n");
    EXPECT_EQ(ok("options get Animate").out, "true\n") << "a default";
    EXPECT_EQ(ok("options get Schriftart --app Andere").out, "Liberation Sans\n");
    EXPECT_EQ(ok("options get Version --app Kanzlei --machine").out, "3.01\n");
    EXPECT_EQ(option("--app Kanzlei", "ShowEndeDialog"),
              nlohmann::json::parse(R"({"option":"ShowEndeDialog","value":true,"type":"flag",
                  "from":"application","stored":"-1","name":"EndDialog",
                  "key":"Software\\Tessarol\\Kanzlei","hive":"user"})"));
    EXPECT_EQ(option("--app Andere", "Schriftart")["from"], "all applications");
    EXPECT_EQ(option("--app Andere", "ToolbarSize")["stored"], nullptr);
    EXPECT_EQ(option("--app Kanzlei", "PrintAdrSchuldner")["value"], "0");
    EXPECT_EQ(option("--machine", "RunTimeDir")["from"], "machine");
    EXPECT_EQ(option("--machine", "NetWait"), nullptr);
    EXPECT_NE(ok("options list").out.find("--app 'Kanzlei'"), std::string::npos);
}

TEST_F(Options, AreDeletedSoThatTheDefaultHoldsAgain) {
    ok("options set NetWait 10");
    ok("options delete netwait");
    EXPECT_EQ(ok("options get NetWait --json").json()["from"], "default");
    refused("options delete NetWait", 1, "no value 'NetWait'");
    ok("options set Toolbar false --app Kanzlei");
    ok("options set F11F12 true --app Kanzlei");
    ok("options set Frei 1");
    ok("options delete --all --app Kanzlei");
    EXPECT_EQ(option("--app Kanzlei", "F11F12")["value"], false);
    EXPECT_EQ(ok("options get Frei").out, "1\n") << "the root stays";
}

TEST_F(Options, WrongOnesAreRefusedAndChangeNothing) {
    for (const auto& [command, status, tells] : {std::tuple{"set NetWait 0", 1, "from 1 to 999"},
                                                 {"set NetWait zehn", 1, "is a number"},
                                                 {"set ToolbarSize 20 --app K", 1, "steps of 8"},
                                                 {"set ExpressBarWidth 10000 --app K", 1, "1000 to 9999"},
                                                 {"set Toolbar vielleicht --app K", 1, "true or false"},
                                                 {"set Toolbar true", 1, "--app ID"},
                                                 {"set Toolbar true --machine --app K", 1, "--machine"},
                                                 {"set '' x", 1, "has a name"},
                                                 {"get Unbekannt", 1, "no value 'Unbekannt'"},
                                                 {"delete --all", 1, "--app ID"},
                                                 {"delete --all --app '\\'", 1, "--app ID"},
                                                 {"delete X --all --app K", 1, "not both"},
                                                 {"delete", 2, "NAME or --all"},
                                                 {"set NetWait", 2, "VALUE"},
                                                 {"list --foo", 2, "--foo"}})
        refused(std::string("options ") + command, status, tells);
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
