// Making, changing and reading databases by the command line.
#include <sys/stat.h>

#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Databases = Tool;

TEST_F(Databases, CreateWritesTheStructureAndTellsIt) {
    makePersons();
    const auto info = ok("db info P --json").json();
    EXPECT_EQ(info["records"], 0);
    EXPECT_EQ(info["max"], 1000);
    EXPECT_EQ(info["trees"], false);
    EXPECT_EQ(info["indexes"], nlohmann::json::parse(R"([["NAME"],["ORT","NAME"],["TAG"]])"));
    const auto fields = ok("db fields P --json").json()["fields"];
    EXPECT_EQ(fields[2]["type"], "number");
    EXPECT_EQ(fields[2]["decimals"], 2);
    // The same structure again, from the file of the first.
    ok("db create Q --structure P.DBD/Control.tsd --max 40000");
    EXPECT_EQ(ok("db fields Q --json").out, ok("db fields P --json").out);
    EXPECT_EQ(ok("db info Q --json").json()["trees"], true);
}

TEST_F(Databases, CreateRefusesAStructureThatWouldNotWork) {
    for (const auto& [arguments, tells] : {std::pair{"--field A:foo:3", "no type 'foo'"},
                                           {"--field A:text", "length is missing"},
                                           {"--field A:text:0", "length '0'"},
                                           {"--field A:text:99999", "length '99999'"},
                                           {"--field A:text:3 --field a:text:3", "already"},
                                           {"--field A:text:3 --index B", "no field 'B'"},
                                           {"--field A:text:3 --index A --index A", "another index"},
                                           {"--field A:memo --index A", "no order"},
                                           {"--field 7:text:3", "field's number"},
                                           {"--field 'A\"B:text:3'", "a name has"},
                                           {"--field Ł:text:3", "--form unicode"}}) {
        refused(std::string("db create X --max 9 ") + arguments, 1, tells);
        EXPECT_FALSE(exists("X.DBD")) << arguments;
    }
    makePersons();
    refused("db create P --field A:text:3 --max 9", 1, "already");
}

TEST_F(Databases, AddedRecordsComeInTheOrderOfEachIndex) {
    for (const char* more : {"--max 1000", "--max 100000"}) {
        makePersons(more);
        for (const char* person :
             {"NAME=Zorn ORT=Bonn TAG=2024-12-31", "NAME=Müller ORT=Ahlen TAG=01.02.2025",
              "NAME=muller ORT=Bonn TAG=2.1.2025", "NAME=Maier-Abt ORT=Ulm", "NAME=Abel ORT=Bonn"})
            ok(std::string("db add P ") + person);
        const auto dump = ok("db dump P --json").json();
        EXPECT_EQ(dump["indexes"],
                  nlohmann::json::parse(R"([{"field":1,"order":[5,4,3,2,1]},{"field":2,"order":[2,5,3,1,4]},
                                            {"field":4,"order":[4,5,1,3,2]}])"))
            << more;
        EXPECT_EQ(dump["records"][1]["fields"],
                  nlohmann::json::parse(R"({"NAME":"Müller","ORT":"Ahlen","BETRAG":"","TAG":"01022025"})"));
        const auto listed = [&](const std::string& range) {
            std::string numbers;
            const auto found = ok("db list P --json --index " + range).json();
            for (const auto& record : found["records"]) numbers += record["nr"].dump() + " ";
            return numbers;
        };
        EXPECT_EQ(listed("ORT --from Bonn --to Bonn --descending --limit 2"), "1 3 ");
        EXPECT_EQ(listed("TAG --from 01.01.2025 --to 31.01.2025"), "3 ");
        std::filesystem::remove_all(path("P.DBD"));
    }
}

TEST_F(Databases, GotoTellsPositionAndWhetherItIsTheKey) {
    makePersonsNamed({"Abel", "Berg", "Zorn"});
    const auto at = [&](const std::string& key) { return ok("db goto P '" + key + "' --json").json(); };
    EXPECT_EQ(at("Berg")["position"], 2);
    EXPECT_EQ(at("Berg")["exact"], true);
    EXPECT_EQ(at("Bau")["position"], 2);
    EXPECT_EQ(at("Bau")["exact"], false);
    EXPECT_EQ(at("#3")["record"]["fields"]["NAME"], "Zorn");
    EXPECT_EQ(at("Zz")["position"], 4);
    EXPECT_TRUE(at("Zz")["record"].is_null());
}

TEST_F(Databases, ValuesThatDoNotFitAreRefusedWithAReason) {
    makePersons();
    ok("db add P NAME=Abel BETRAG=1.234,50");
    const std::string before = ok("db dump P --json").out;
    for (const auto& [value, tells] :
         {std::pair{"NAME=123456789012345678901", "21 characters, the field has 20"},
          {"NAME=Łódź", "'Ł' is not in code page 1252"},
          {"NAME=😀", "'😀' is not in code page 1252"},
          {"BETRAG=zwölf", "is no number"},
          {"BETRAG=1.23.45", "is no number"},
          {"BETRAG=1,234", "more decimals"},
          {"BETRAG=12345678901", "11 characters"},
          {"TAG=30.02.2024", "is no date"},
          {"TAG=2024-13-01", "is no date"},
          {"TAG=morgen", "is no date"},
          {"FOO=1", "no field 'FOO'"},
          {"NAME=a' 'name=b", "given twice"},
          {"NAME", "not of the form"}}) {
        refused(std::string("db set P 1 '") + value + "'", 1, tells);
        refused(std::string("db add P '") + value + "'", 1, tells);
    }
    EXPECT_EQ(ok("db dump P --json").out, before);
    EXPECT_EQ(ok("db get P 1 --json").json()["fields"]["BETRAG"], "1234.50");
}

// A structure whose head is a plain count has its texts and records in code page 850.
TEST_F(Databases, ADosDatabaseIsReadAndKeptInItsCodePage) {
    ok("db create D --field NAME:text:8 --index NAME --max 100");
    const std::string made = read("D.DBD/Control.tsd");
    ASSERT_EQ(made.substr(0, 4), "TS1,");
    write("D.DBD/Control.tsd", made.substr(4));
    ok("db add D NAME=Müller");
    EXPECT_EQ(read("D.DBD/Data.tsd"), " M\x81ller  ");
    EXPECT_EQ(ok("db info D --json").json()["form"], "dos");
    EXPECT_EQ(ok("db get D 1 --json").json()["fields"]["NAME"], "Müller");
    refused("db set D 1 NAME=a€b", 1, "'€' is not in code page 850");
    EXPECT_EQ(read("D.DBD/Data.tsd"), " M\x81ller  ");
    EXPECT_EQ(ok("db check D").out, "sound\n");
}

TEST_F(Databases, DeletedRecordsStayButDoNotShow) {
    makePersonsNamed({"Abel", "Berg"});
    ok("db delete P 1");
    EXPECT_EQ(ok("db list P --json").json()["records"].size(), 1u);
    EXPECT_EQ(ok("db find P abel --json").json()["records"].size(), 0u);
    EXPECT_EQ(ok("db list P --json --deleted").json()["records"][0]["deleted"], true);
    refused("db set P 1 NAME=A", 1, "undelete");
    refused("db set P 9 NAME=A", 1, "it has 1 to 2");
    ok("db undelete P 1 2");
    EXPECT_EQ(ok("db find P ABE --json").json()["records"][0]["nr"], 1);
    EXPECT_EQ(ok("db find P e --json").json()["records"].size(), 2u);
}

// One user holds a record; another one can neither change nor lock it, and may go on with the others.
TEST_F(Databases, ALockKeepsOtherUsersOut) {
    makePersonsNamed({"Abel", "Berg"});
    ASSERT_EQ(::mkfifo(path("held").c_str(), 0600), 0);
    FILE* holder = ::popen((start("db lock P 1") + " >'" + path("held") + "'").c_str(), "w");
    ASSERT_NE(holder, nullptr);
    std::ifstream held(path("held"));  // waits until the other one says something, or ends
    std::string said;
    ASSERT_TRUE(std::getline(held, said) && said == "locked") << said;
    ok("db set P 2 NAME=Aal ort=Kiel");
    EXPECT_EQ(ok("db dump P --json").json()["indexes"][0]["order"], nlohmann::json({2, 1}));
    ok("db get P 1");
    refused("db delete P 1", 1, "locked by another user");
    refused("db sort P", 1, "somebody else has it open");
    std::fputs("\n", holder);
    EXPECT_EQ(::pclose(holder), 0);
    ok("db set P 1 NAME=Anders");
}

TEST_F(Databases, CheckFindsADamagedIndexAndRepairsIt) {
    for (const char* more : {"--max 1000", "--max 100000"}) {
        makePersonsNamed({"Abel", "Berg", "Zorn"}, more);
        // The first entry names record 3.
        std::string index = read("P.DBD/I001");
        index[std::string(more) == "--max 1000" ? 0 : 512 + 12] = 3;
        write("P.DBD/I001", index);
        const auto found = run("db check P --json");
        EXPECT_EQ(found.status, 1) << more;
        EXPECT_EQ(found.json()["sound"], false);
        EXPECT_FALSE(found.json()["findings"].empty());
        EXPECT_EQ(run("db check P --repair").status, 1);
        EXPECT_EQ(ok("db check P").out, "sound\n") << more;
        std::filesystem::remove_all(path("P.DBD"));
    }
}

TEST_F(Databases, WholeFilesAreMadeAnew) {
    makePersonsNamed({"Abel", "Berg", "Cohn"});
    ok("db delete P 2");
    refused("db pack Fehlt", 1, "no database");
    EXPECT_EQ(ok("db pack P --memos").out, "packed: 1 deleted records gone, 2 kept\n");
    EXPECT_EQ(ok("db get P 2 --json").json()["fields"]["NAME"], "Cohn");
    ok("db index drop P TAG");
    ok("db index add P BETRAG NAME");
    refused("db index add P NAME", 1, "");
    refused("db index drop P TAG", 1, "no index begins with");
    EXPECT_EQ(ok("db info P --json").json()["indexes"][2], nlohmann::json::parse(R"(["BETRAG","NAME"])"));
    EXPECT_EQ(ok("db rebuild P").out, "rebuilt: 2 records\n");
    refused("db zap P", 1, "--yes");
    EXPECT_EQ(ok("db zap P --yes").out, "emptied: 2 records gone\n");
    ok("db add P NAME=Neu");
    EXPECT_EQ(ok("db check P").out, "sound\n");
}

TEST_F(Databases, WrongUsageIsStatusTwo) {
    makePersons();
    for (const auto& [arguments, tells] : {std::pair{"", "subcommand is required"},
                                           {"db nope", "'nope'"},
                                           {"db list", "DB is required"},
                                           {"db get P x", "NR = x"},
                                           {"db list P --limit 0", "1 or more"},
                                           {"db create X --field A:text:3", "--max"},
                                           {"db create X --max 3", "--field"},
                                           {"db import P f --encoding klingon", "--encoding"},
                                           {"completion tcsh", "tcsh"}})
        refused(arguments, 2, tells);
    EXPECT_EQ(ok("db list --help").err, "");
    refused("db list Nirgends", 1, "no database 'Nirgends'");
}

TEST_F(Databases, CompletionKnowsCommandsAndOptions) {
    write("script", ok("completion bash").out);
    const auto completed = [&](const std::string& words, int at) {
        const std::string shell = "bash -c '. \"" + path("script") + "\"; COMP_WORDS=(" + words +
                                  "); COMP_CWORD=" + std::to_string(at) +
                                  "; _tsrtm; echo ${COMPREPLY[@]}' >'" + path("reply") + "'";
        return std::system(shell.c_str()) == 0 ? read("reply") : "";
    };
    EXPECT_EQ(completed("tsrtm co", 1), "completion\n");
    EXPECT_EQ(completed("tsrtm db un", 2), "undelete\n");
    EXPECT_EQ(completed("tsrtm db list P --desc", 4), "--descending\n");
    EXPECT_EQ(completed("tsrtm banks import --rep", 3), "--replace\n");
}

}  // namespace
}  // namespace tsRtm::test
