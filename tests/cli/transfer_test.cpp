// CSV files and bank code files by the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Transfer = Tool;

const std::string kBanks = "banks import '" TSRTM_TEST_DATA "/banks-sample.txt' ";

constexpr const char* kRows =
    "NAME,Ort,BETRAG,4\r\n"
    "Zorn,\"Bad \"\"Ems\"\", Kurhaus\",\"1.234,50\",31.12.2024\r\n"
    "\"ein Name mit mehr als zwanzig Zeichen\",Bonn,1,\r\n"
    "Abel,Köln,drei,\r\n"
    "Berg,,,30.02.2024\r\n"
    "zu,wenig\r\n"
    "\"zwei\nZeilen\",Ulm,-3,2024-02-29\r\n"
    "\"offen,Ulm,1,\r\n"
    "Łoś,Ulm,1,\r\n"
    "letzte,,,\r\n";

TEST_F(Transfer, ImportKeepsWhatFitsAndRejectsTheRest) {
    write("p.csv", kRows);
    std::string alone;
    for (const std::string how : {" --bulk", ""}) {
        makePersons();
        const Answer imported = run("db import P p.csv --rejects r.csv" + how);
        EXPECT_EQ(imported.status, 1);
        EXPECT_EQ(imported.out, "imported 3 rows\n");
        EXPECT_EQ(imported.err, "tsrtm: rejected 6 rows: see r.csv\n");
        const auto dump = ok("db dump P --json");
        const auto records = dump.json()["records"];
        EXPECT_EQ(
            records[0]["fields"],
            parsed(R"({"NAME":"Zorn","ORT":"Bad \"Ems\", Kurhaus","BETRAG":"1234.50","TAG":"31122024"})"));
        EXPECT_TRUE(records[1]["fields"]["NAME"] == "zwei\nZeilen" &&
                    records[2]["fields"]["NAME"] == "letzte");
        EXPECT_EQ(
            read("r.csv"),
            "line,reason,NAME,Ort,BETRAG,4\r\n"
            "3,\"NAME: 37 characters, the field has 20\",ein Name mit mehr als zwanzig Zeichen,Bonn,1,\r\n"
            "4,BETRAG: 'drei' is no number,Abel,Köln,drei,\r\n"
            "5,TAG: '30.02.2024' is no date,Berg,,,30.02.2024\r\n"
            "6,\"2 fields, the header line has 4\",zu,wenig\r\n"
            "9,a quote that is never closed,\"\"\"offen,Ulm,1,\"\r\n"
            "10,NAME: 'Ł' is not in code page 1252,Łoś,Ulm,1,\r\n");
        prints("db check P", "sound\n");
        // In bulk or one by one, the database is the same.
        EXPECT_TRUE(alone.empty() || dump.out == alone);
        alone = dump.out;
        std::filesystem::remove_all(path("P.DBD"));
    }
}

TEST_F(Transfer, WhatIsExportedImportsToTheSameDatabase) {
    write("p.csv", kRows);
    makePersons();
    run("db import P p.csv");
    for (const std::string encoding : {"utf8", "latin1", "1252", "850"}) {
        ok("db export P e.csv --index 0 --encoding " + encoding);
        ok("db create Q --structure P");
        ok("db import Q e.csv --encoding " + encoding);
        EXPECT_EQ(ok("db dump Q --json").out, ok("db dump P --json").out) << encoding;
        std::filesystem::remove_all(path("Q.DBD"));
    }
    prints("db export P --fields ORT,NAME --separator ';' --from l --to l", "ORT;NAME\r\n;letzte\r\n");
}

TEST_F(Transfer, AnExportThatWouldLoseACharacterLeavesNoFile) {
    ok("db create U --field A:text:9 --max 9 --form unicode");
    ok("db add U A=Łódź");
    refused("db export U u.csv --encoding 1252", 1, "record 1, A: 'Łódź' cannot be written in 1252");
    EXPECT_FALSE(exists("u.csv"));
    prints("db export U", "A\r\nŁódź\r\n");
}

TEST_F(Transfer, AHeaderLineThatDoesNotFitLoadsNothing) {
    makePersons();
    for (const auto& [content, tells] : {std::pair{"", "is empty"},
                                         {"NAME,FOO\r\na,b\r\n", "no field 'FOO'"},
                                         {"NAME,name\r\na,b\r\n", "two columns"},
                                         {"NAME;ORT\r\na;b\r\n", "--separator ';'"},
                                         {"NAME\tORT\r\na\tb\r\n", "--separator $'\\t'"},
                                         {"\"NAME\r\n", "never closed"}}) {
        write("h.csv", content);
        refused("db import P h.csv", 1, tells);
    }
    write("h.csv", "NAME,FOO\r\na,b\r\n");
    ok("db import P h.csv --ignore-unknown");
    EXPECT_EQ(json("db list P")["records"].size(), 1u);
    refused("db import P nothing.csv", 1, "no such file");
    refused("db import P h.csv --rejects h.csv --ignore-unknown", 1, "overwrite");
}

TEST_F(Transfer, RowsBeyondTheSizeAreRejected) {
    ok("db create F --field A:text:3 --index A --max 2");
    write("f.csv", "A\r\na\r\nb\r\nc\r\n");
    refused("db import F f.csv --bulk", 1, "rejected 1 row: see F.rejects.csv");
    EXPECT_HOLDS(read("F.rejects.csv"), "4,not stored: the database is full");
    prints("db check F", "sound\n");
    refused("db add F A=d", 1, "full");
}

TEST_F(Transfer, MemosAndBlobsComeAndGo) {
    std::filesystem::create_directory(path("M.DBD"));
    write("M.DBD/Control.tsd",
          "TS1,5\r\n0,1,1,20,1,\"Name@@7NAME\"\r\n0,1,1,60,22,\"Notiz@@7NOTIZ\"\r\n"
          "0,1,1,60,102,\"Bild@@7BILD\"\r\n0,1,1,8,38,\"Posten@@7POS\"\r\n0,1,1,60,86,\"E@@7EIGEN\"\r\n"
          "1,1000,1\r\n1,0,0\r\n0\r\n");
    write("M.DBD/KetteCtl.004",
          "TS1,4\r\n0,1,1,6,1,\"Text@@7TEXT\"\r\n2,2,1,8,5,\"Preis@@7PREIS\"\r\n"
          "0,3,1,60,22,\"Grund@@7GRUND\"\r\n0,4,1,60,102,\"Siegel@@7SIEGEL\"\r\n25,100,0\r\n0\r\n");
    write("brief.txt", "Grüße\naus Łódź\n");
    write("bild.bin", std::string("\0\xFF\x81\n", 4));
    ok("db add M NAME=Anna NOTIZ=kurz");
    ok("db add M NAME=Berta");
    ok("db memo set M 2 NOTIZ --file brief.txt");
    ok("db memo set M 1 BILD --file bild.bin");
    ok("db memo set M 1 EIGEN 'Farbe=grün\nGröße=5'");
    for (const auto* row : {"TEXT=Müll PREIS=12,50 GRUND='Abfuhr im Hof'", "TEXT=b SIEGEL=00ff81"})
        ok(std::string("db chain add M 2 POS ") + row);
    prints("db memo get M 2 NOTIZ", "Grüße\naus Łódź\n\n");
    ok("db memo get M 1 BILD --file zurueck.bin");
    EXPECT_EQ(read("zurueck.bin"), read("bild.bin"));
    prints("db memo export M NOTIZ texte", "exported 2 texts to texte\n");
    EXPECT_EQ(read("texte/2.txt"), read("brief.txt"));
    refusedEach("db memo ", 1,
                "get M 1 NAME -> neither a memo nor a blob | set M 1 BILD text -> use --file | set M 3 NOTIZ "
                "text -> 3");
    const auto dump = json("db dump M")["records"];
    EXPECT_EQ(dump[0]["blobs"]["BILD"], "00ff810a");
    EXPECT_EQ(dump[1]["memos"]["NOTIZ"], read("brief.txt"));

    EXPECT_EQ(dump[1]["chains"]["POS"],
              nlohmann::json::parse(R"([["Müll","12.50","Abfuhr im Hof",""],["b","","","00ff81"]])"));

    // Whole, as JSON lines; the texts without the blobs as CSV.
    ok("db export M m.jsonl");
    ok("db export M m.csv");
    write("schlecht.jsonl",
          "{\"fields\":{\"NAME\":\"Zorn\"}}\n[1]\n{\"fields\":{\"NAME\":7}}\n{\"blobs\":{\"BILD\":\"0\"}}\n"
          "{\"fields\":{\"NAME\":\"Y\"},\"chains\":{\"POS\":[[\"a\"],[\"b\",\"no number\"]]}}\n");
    for (const std::string how : {"", " --bulk"}) {
        ok("db create N --structure M");
        ok("db import N m.jsonl" + how);
        const auto records = json("db dump N")["records"];
        for (const auto* part : {"memos", "blobs", "chains"})
            for (const std::size_t n : {0U, 1U}) EXPECT_EQ(records[n][part], dump[n][part]) << part << how;
        refused("db import N schlecht.jsonl" + how, 1, "rejected 4 rows: see N.rejects.csv");
        ok("db import N m.csv" + how);
        EXPECT_EQ(ok("db memo get N 5 NOTIZ").out, ok("db memo get M 2 NOTIZ").out);
        prints("db check N", "sound\n");
        std::filesystem::remove_all(path("N.DBD"));
    }
    EXPECT_HOLDS(run("db find M 'kein Treffer'").err, "nothing in 'M'");
}

TEST_F(Transfer, SerialNumbersGoOn) {
    ok("db create S --field NR:autowert:6 --field A:text:3 --max 99");
    ok("db add S A=x");
    write("s.csv", "A\r\ny\r\nz\r\n");
    ok("db import S s.csv --bulk");
    ok("db add S A=w");
    ok("db import S s.csv");
    const auto records = json("db dump S")["records"];
    for (std::size_t i = 0; i < records.size(); ++i)
        EXPECT_EQ(records[i]["fields"]["NR"], "00000" + std::to_string(i + 1));
    EXPECT_EQ(records.size(), 6u);
}

TEST_F(Transfer, BanksAreFoundByCodeBicAndPlace) {
    EXPECT_EQ(ok(kBanks + "Banken").out, "imported 36 banks; left out 4 other offices\n");
    prints("db check Banken", "sound\n");
    const auto codes = [&](const std::string& key) {
        std::string out;
        const auto found = ok("banks find '" + key + "' --json").json();
        for (const auto& bank : found["records"]) out += bank["fields"]["BLZ"].get<std::string>() + " ";
        return out;
    };
    // "Dortmund" has eight letters, but is no BIC.
    for (const auto& [key, found] :
         {std::pair{"12350072", "12350072 "}, std::pair{"22", "22137054 22755570 22956253 "},
          std::pair{"BSPKDE3X", "33850571 12350072 "}, std::pair{"bspkde3x36x", "12350072 "},
          std::pair{"Berlin P", "18636374 "}, std::pair{"Dortmund", "42254674 44416089 45697803 "},
          std::pair{"köln", "33850571 32619431 "}})
        EXPECT_EQ(codes(key), found) << key;
    EXPECT_HOLDS(ok("banks find 22 --limit 2").err, "more banks");
    EXPECT_EQ(ok("banks find 22 --limit 3").err, "");
    refusedEach("banks find ", 1, "99 -> no bank | 22 --db Nirgends -> tsrtm banks import");
    refused(kBanks + "Banken", 1, "--replace");
    ok(kBanks + "Banken --replace");
}

TEST_F(Transfer, ABadFileNeverTakesThePlaceOfARegister) {
    ok(kBanks + "Banken");
    write("bad.txt", "no bank\n" + std::string(5000, 'x'));
    refused("banks import bad.txt Banken --replace", 1, "no bank code file");
    EXPECT_EQ(json("db info Banken")["records"], 36);
    makePersons();
    refused(kBanks + "P --replace", 1, "another database");
    refused("banks find 1 --db P", 1, "no bank register");
}

}  // namespace
}  // namespace tsRtm::test
