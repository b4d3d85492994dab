// Rows and named properties of records by the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

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
