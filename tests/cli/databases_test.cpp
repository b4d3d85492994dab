// Making, changing and reading databases by the command line, with the rows and properties of their records.
#include <sys/stat.h>

#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Databases = Tool;

TEST_F(Databases, CreateWritesTheStructureAndTellsIt) {
    makePersons();
    auto info = json("db info P");
    EXPECT_EQ(nlohmann::json({info["records"], info["max"], info["trees"], info["indexes"]}),
              parsed(R"([0, 1000, false, [["NAME"],["ORT","NAME"],["TAG"]]])"));
    const auto fields = json("db fields P")["fields"];
    EXPECT_EQ(nlohmann::json({fields[2]["type"], fields[2]["decimals"]}), parsed(R"(["number", 2])"));
    // The same structure again, from the file of the first.
    ok("db create Q --structure P.DBD/Control.tsd --max 40000");
    EXPECT_EQ(json("db fields Q")["fields"], fields);
    EXPECT_EQ(json("db info Q")["trees"], true);
}

TEST_F(Databases, CreateRefusesAStructureThatWouldNotWork) {
    refusedEach("db create X --max 9 --field ", 1,
                "A:foo:3 -> no type 'foo' | A:text -> length is missing | A:text:0 -> length '0' | "
                "A:text:99999 -> length '99999' | A:text:3 --field a:text:3 -> already | "
                "A:text:3 --index B -> no field 'B' | A:text:3 --index A --index A -> another index | A:memo "
                "--index A -> no order | 7:text:3 -> field's number | 'A\"B:text:3' -> a name has | Ł:text:3 "
                "-> --form unicode");
    EXPECT_FALSE(exists("X.DBD"));
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
        const auto dump = json("db dump P");
        EXPECT_EQ(dump["indexes"], parsed(R"([{"field":1,"order":[5,4,3,2,1]},{"field":2,"order":[2,5,3,1,4]},
                                              {"field":4,"order":[4,5,1,3,2]}])"))
            << more;
        EXPECT_EQ(dump["records"][1]["fields"],
                  parsed(R"({"NAME":"Müller","ORT":"Ahlen","BETRAG":"","TAG":"01022025"})"));
        for (const auto& [range, listed] :
             {std::pair{"ORT --from Bonn --to Bonn --descending --limit 2", "1 3 "},
              {"TAG --from 01.01.2025 --to 31.01.2025", "3 "}})
            EXPECT_EQ(numbers(std::string("db list P --index ") + range), listed);
        std::filesystem::remove_all(path("P.DBD"));
    }
}

TEST_F(Databases, GotoTellsPositionAndWhetherItIsTheKey) {
    makePersonsNamed({"Abel", "Berg", "Zorn"});
    using Row = std::tuple<const char*, int, bool>;
    for (const auto& [key, position, exact] :
         {Row{"Berg", 2, true}, Row{"Bau", 2, false}, Row{"Zz", 4, false}}) {
        const auto at = json(std::string("db goto P ") + key);
        EXPECT_TRUE(at["position"] == position && at["exact"] == exact &&
                    at["record"].is_null() == (position == 4))
            << at;
    }
    EXPECT_EQ(json("db goto P '#3'")["record"]["fields"]["NAME"], "Zorn");
}

TEST_F(Databases, ValuesThatDoNotFitAreRefusedWithAReason) {
    makePersons();
    ok("db add P NAME=Abel BETRAG=1.234,50");
    const auto before = json("db dump P");
    for (const char* command : {"db set P 1 ", "db add P "})
        refusedEach(command, 1,
                    "NAME=123456789012345678901 -> 21 characters, the field has 20 | NAME=Łódź -> 'Ł' is not "
                    "in code page 1252 | NAME=😀 -> '😀' is not in code page 1252 | BETRAG=zwölf -> is no "
                    "number | BETRAG=1.23.45 -> is no number | "
                    "BETRAG=1,234 -> more decimals | BETRAG=12345678901 -> 11 characters | TAG=30.02.2024 -> "
                    "is no date | TAG=2024-13-01 -> is no date | TAG=morgen -> is no date | FOO=1 -> no "
                    "field 'FOO' | NAME=a name=b -> given twice | NAME -> not of the form");
    EXPECT_EQ(json("db dump P"), before);
    EXPECT_EQ(json("db get P 1")["fields"]["BETRAG"], "1234.50");
}

// A structure whose head is a plain count has its texts and records in code page 850.
TEST_F(Databases, ADosDatabaseIsReadAndKeptInItsCodePage) {
    ok("db create D --field NAME:text:8 --index NAME --max 100");
    const std::string made = read("D.DBD/Control.tsd");
    ASSERT_EQ(made.substr(0, 4), "TS1,");
    write("D.DBD/Control.tsd", made.substr(4));
    ok("db add D NAME=Müller");
    EXPECT_EQ(read("D.DBD/Data.tsd"), " M\x81ller  ");
    EXPECT_EQ(json("db info D")["form"], "dos");
    EXPECT_EQ(json("db get D 1")["fields"]["NAME"], "Müller");
    refused("db set D 1 NAME=a€b", 1, "'€' is not in code page 850");
    EXPECT_EQ(read("D.DBD/Data.tsd"), " M\x81ller  ");
    prints("db check D", "sound\n");
}

TEST_F(Databases, DeletedRecordsStayButDoNotShow) {
    makePersonsNamed({"Abel", "Berg"});
    ok("db delete P 1");
    EXPECT_EQ(numbers("db list P") + "," + numbers("db find P abel"), "2 ,");
    EXPECT_EQ(json("db list P --deleted")["records"][0]["deleted"], true);
    refused("db set P 1 NAME=A", 1, "undelete");
    refused("db set P 9 NAME=A", 1, "it has 1 to 2");
    ok("db undelete P 1 2");
    EXPECT_EQ(numbers("db find P ABE") + "," + numbers("db find P e"), "1 ,1 2 ");
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
    EXPECT_EQ(json("db dump P")["indexes"][0]["order"], nlohmann::json({2, 1}));
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
    prints("db pack P --memos", "packed: 1 deleted records gone, 2 kept\n");
    EXPECT_EQ(json("db get P 2")["fields"]["NAME"], "Cohn");
    ok("db index drop P TAG");
    ok("db index add P BETRAG NAME");
    refusedEach("db ", 1, "index add P NAME ->  | index drop P TAG -> no index begins with | zap P -> --yes");
    EXPECT_EQ(json("db info P")["indexes"][2], parsed(R"(["BETRAG","NAME"])"));
    prints("db rebuild P", "rebuilt: 2 records\n");
    prints("db zap P --yes", "emptied: 2 records gone\n");
    ok("db add P NAME=Neu");
    prints("db check P", "sound\n");
}

TEST_F(Databases, WrongUsageIsStatusTwo) {
    makePersons();
    refusedEach(
        "", 2,
        "-> subcommand is required | db nope -> 'nope' | db list -> DB is required | db get P x -> NR = x | "
        "db list P --limit 0 -> 1 or more | db create X --field A:text:3 -> --max | db create X --max 3 -> "
        "--field | db import P f --encoding klingon -> --encoding | completion tcsh -> tcsh");
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
    EXPECT_EQ(completed("tsrtm co", 1) + completed("tsrtm db un", 2), "completion\nundelete\n");
    EXPECT_EQ(completed("tsrtm db list P --desc", 4) + completed("tsrtm banks import --rep", 3),
              "--descending\n--replace\n");
}

class ChainTool : public Tool {
 protected:
    ChainTool() {
        std::filesystem::create_directory(path("P.DBD"));
        write(
            "P.DBD/Control.tsd",
            "TS1,2\r\n0,1,1,8,1,\"Name@@7NAME\"\r\n0,2,1,8,38,\"Posten@@7POS\"\r\n1,100,1\r\n1,0,0\r\n0\r\n");
        write("P.DBD/KetteCtl.002",
              "TS1,2\r\n0,1,1,6,1,\"Text@@7TEXT\"\r\n2,2,1,8,5,\"Preis@@7PREIS\"\r\n15,100,0\r\n0\r\n");
        ok("db add P NAME=Abel");
    }
    nlohmann::json rows() { return json("db chain list P 1 POS")["rows"]; }
};

TEST_F(ChainTool, AddsWritesAndShowsRows) {
    EXPECT_TRUE(rows().empty());
    ok("db chain add P 1 POS TEXT=Müll PREIS=12,50");
    ok("db chain add P 1 pos PREIS=1 --head");
    const auto added = parsed(R"([["","1"],["Müll","12.50"]])");
    EXPECT_EQ(rows(), added);
    EXPECT_EQ(json("db dump P")["records"][0]["chains"]["POS"], added);
    shows("db chain list P 1 POS", "Müll");
    for (const auto& [file, now] :
         {std::pair{R"([["a","3"],["b"]])", R"([["a","3"],["b",""]])"}, {"[]", "[]"}}) {
        write("rows.json", file);
        ok("db chain write P 1 POS rows.json");
        EXPECT_EQ(rows(), parsed(now));
    }
    ok("db check P");
}

TEST_F(ChainTool, RefusesWhatDoesNotFit) {
    ok("db chain add P 1 POS TEXT=a");
    refusedEach("db chain add P ", 1,
                "1 NAME TEXT=a -> NAME is no chain | 2 POS TEXT=a -> no record 2 | 1 POS NAME=a -> no field "
                "'NAME' | 1 POS TEXT=abcdefg -> TEXT | 1 POS PREIS=x -> PREIS");
    for (const char* content : {"{", "[1]", "[[1]]", R"([["a","1","x"]])", R"([["abcdefg"]])"}) {
        write("rows.json", content);
        EXPECT_EQ(run("db chain write P 1 POS rows.json").status, 1) << content;
    }
    EXPECT_EQ(rows(), parsed(R"([["a",""]])"));
}

TEST_F(Tool, SetsAndShowsPropertiesOfRecords) {
    ok("db create P --field NAME:text:20 --field EIG:properties:60 --index NAME --max 1000");
    for (const char* name : {"Abel", "Berg"}) ok(std::string("db add P NAME=") + name);
    ok("db props set P 1 Farbe=grün Größe=5=6");
    ok("db props set P 1 FARBE=rot");
    ok("db props set P 2 farbe=blau");
    prints("db props list P 1", "Farbe=rot\nGröße=5=6\n");
    EXPECT_EQ(json("db props list P 1")["Größe"], "5=6");
    prints("db props get P 2 FARBE", "blau\n");
    prints("db props names P", "Farbe: 2\nGröße: 1\n");
    EXPECT_EQ(json("db props names P")["Farbe"], 2);
    refusedEach("db props ", 1,
                "set P 1 Farbe -> KEY=VALUE | set P 1 =x -> Ungültige Eigenschaft | list P 9 -> 9");
    ok("db create Q --field NAME:text:20 --index NAME --max 1000");
    ok("db add Q NAME=Abel");
    refused("db props list Q 1", 1, "no field of properties");
}

}  // namespace
}  // namespace tsRtm::test
