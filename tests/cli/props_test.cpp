// Named properties of records by the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

TEST_F(Tool, SetsAndShowsPropertiesOfRecords) {
    ok("db create P --field NAME:text:20 --field EIG:properties:60 --index NAME --max 1000");
    ok("db add P NAME=Abel");
    ok("db add P NAME=Berg");
    ok("db props set P 1 Farbe=grün Größe=5=6");
    ok("db props set P 1 FARBE=rot");
    ok("db props set P 2 farbe=blau");
    EXPECT_EQ(ok("db props list P 1").out, "Farbe=rot\nGröße=5=6\n");
    EXPECT_EQ(ok("db props list P 1 --json").json()["Größe"], "5=6");
    EXPECT_EQ(ok("db props get P 2 FARBE").out, "blau\n");
    EXPECT_EQ(ok("db props names P").out, "Farbe: 2\nGröße: 1\n");
    EXPECT_EQ(ok("db props names P --json").json()["Farbe"], 2);
    refused("db props set P 1 Farbe", 1, "KEY=VALUE");
    refused("db props set P 1 =x", 1, "Ungültige Eigenschaft");
    refused("db props list P 9", 1, "9");
    ok("db create Q --field NAME:text:20 --index NAME --max 1000");
    ok("db add Q NAME=Abel");
    refused("db props list Q 1", 1, "no field of properties");
}

}  // namespace
}  // namespace tsRtm::test
