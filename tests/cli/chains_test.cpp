// Rows of records by the command line.
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
    nlohmann::json rows() { return ok("db chain list P 1 POS --json").json()["rows"]; }
};

TEST_F(ChainTool, AddsWritesAndShowsRows) {
    EXPECT_TRUE(rows().empty());
    ok("db chain add P 1 POS TEXT=Müll PREIS=12,50");
    ok("db chain add P 1 pos PREIS=1 --head");
    const auto added = nlohmann::json::parse(R"([["","1"],["Müll","12.50"]])");
    EXPECT_EQ(rows(), added);
    EXPECT_EQ(ok("db dump P --json").json()["records"][0]["chains"]["POS"], added);
    EXPECT_NE(ok("db chain list P 1 POS").out.find("Müll"), std::string::npos);
    write("rows.json", R"([["a","3"],["b"]])");
    ok("db chain write P 1 POS rows.json");
    EXPECT_EQ(rows(), nlohmann::json::parse(R"([["a","3"],["b",""]])"));
    write("rows.json", "[]");
    ok("db chain write P 1 POS rows.json");
    EXPECT_TRUE(rows().empty());
    ok("db check P");
}

TEST_F(ChainTool, RefusesWhatDoesNotFit) {
    ok("db chain add P 1 POS TEXT=a");
    refused("db chain add P 1 NAME TEXT=a", 1, "NAME is no chain");
    refused("db chain add P 2 POS TEXT=a", 1, "no record 2");
    refused("db chain add P 1 POS NAME=a", 1, "no field 'NAME'");
    refused("db chain add P 1 POS TEXT=abcdefg", 1, "TEXT");
    refused("db chain add P 1 POS PREIS=x", 1, "PREIS");
    for (const char* content : {"{", "[1]", "[[1]]", R"([["a","1","x"]])", R"([["abcdefg"]])"}) {
        write("rows.json", content);
        EXPECT_EQ(run("db chain write P 1 POS rows.json").status, 1) << content;
    }
    EXPECT_EQ(rows(), nlohmann::json::parse(R"([["a",""]])"));
}

}  // namespace
}  // namespace tsRtm::test
