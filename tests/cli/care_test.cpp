// What those who look after a database ask of it: figures, copies, another form, what others do.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

class Care : public Tool {
 protected:
    Care() {
        ok("db create P --field NAME:text:20 --field NOTIZ:memo:60 --index NAME --max 1000");
        for (const char* name : {"Abel", "Berg", "Cohn", "Dorn"})
            ok(std::string("db add P NAME=") + name + " NOTIZ=von" + name);
        ok("db delete P 2");
    }
    nlohmann::json stats() { return json("db stats P"); }
};

TEST_F(Care, TellsWhatAReorganisationGains) {
    const auto before = stats();
    EXPECT_EQ(before["data"]["records"], 4);
    EXPECT_EQ(before["data"]["deleted"], 1);
    EXPECT_EQ(before["memos"][0]["bytes"], 4 * 128);
    EXPECT_EQ(before["memos"][0]["deleted"], 128);
    ok("db memo set P 1 NOTIZ kurz");
    EXPECT_EQ(stats()["memos"][0]["free"], 128);
    EXPECT_EQ(stats()["memos"][0]["gain"], 256);
    shows("db stats P", "a reorganisation would gain 282 bytes");
    ok("db rebuild P");
    EXPECT_EQ(stats()["gain"], 0);
    EXPECT_EQ(stats()["memos"][0]["bytes"], 3 * 128);
    ok("db create B --structure P --max 100000");
    ok("db add B NAME=x");
    EXPECT_EQ(json("db stats B")["indexes"][0]["levels"], 1);
}

TEST_F(Care, CopiesAreOfOneMomentAndSound) {
    ok("db backup P kopie");
    EXPECT_EQ(ok("db dump kopie").out, ok("db dump P").out);
    EXPECT_EQ(read("kopie.DBD/Count.tsd").find_first_of("+*"), std::string::npos);
    shows("db verify kopie", "sound");
    refused("db backup P kopie", 1, "is there already");
    refused("db verify P", 1, "no backup.json");
    // A byte of a memo, then of a record, then a file.
    auto memo = read("kopie.DBD/Memo-000.002");
    memo[10] ^= 1;
    write("kopie.DBD/Memo-000.002", memo);
    EXPECT_EQ(run("db verify kopie").out, "Memo-000.002: its content has changed\n");
    EXPECT_EQ(run("db verify kopie --json").status, 1);
    std::filesystem::remove(path("kopie.DBD/Stand.tsd"));
    EXPECT_HOLDS(run("db verify kopie").out, "Stand.tsd: is missing");
    // A copy is a database like any other.
    ok("db add kopie NAME=Neu");
    prints("db check kopie", "sound\n");
}

TEST_F(Care, BringsADatabaseIntoAnotherForm) {
    ok("db add P NAME=Öl");
    const auto before = ok("db dump P").out;
    ok("db convert P --to unicode");
    EXPECT_EQ(json("db info P")["form"], "unicode");
    EXPECT_EQ(ok("db dump P").out.substr(before.find('\n')), before.substr(before.find('\n')));
    ok("db add P NAME=Łódź");
    EXPECT_EQ(run("db convert P --to ansi").status, 1);
    shows("db list P", "Łódź");
    ok("db convert P --to ansi --lossy");
    shows("db list P", "?ód?");
    EXPECT_EQ(json("db info P")["form"], "ansi");
    prints("db check P", "sound\n");
    EXPECT_EQ(run("db convert P --to dos").status, 2);
}

// One looks on while another one changes a record until he is seen.
TEST_F(Care, ShowsWhatOthersChange) {
    const std::string work = "(" + start("db watch P --limit 1 --json") + " >'" + path("seen") +
                             "') & p=$!; n=0; " + "while kill -0 $p 2>/dev/null; do n=$((n+1)); (" +
                             start("db set P 3 NAME=n$n") + "); done; wait $p";
    ASSERT_EQ(std::system(work.c_str()), 0);
    const auto seen = nlohmann::json::parse(read("seen"));
    EXPECT_EQ(seen["event"], "changed");
    EXPECT_EQ(seen["record"]["nr"], 3);
    // Without an end of its own: what it says until it is stopped, or until the database has gone.
    const auto watched = [&](const std::string& name, const std::string& meanwhile) {
        const std::string watch =
            "timeout 20 sh -c \"" + start("db watch " + name) + "\" 2>'" + path("seen") + "'";
        static_cast<void>(std::system(("rm -f '" + path("seen") + "'; " + watch + " & p=$!; until [ -s '" +
                                       path("seen") + "' ]; do sleep 0.05; done; " + meanwhile + "; wait $p")
                                          .c_str()));
        return read("seen");
    };
    // Where single fields are in UTF-16 there is no record behind the last one, either.
    ok("db create U --field NAME:1025:4 --max 10");
    EXPECT_EQ(watched("U", "kill $p"), "watching 0 records of 'U'\n");
    EXPECT_EQ(watched("P", "mv '" + path("P.DBD") + "' '" + path("Q.DBD") + "'"),
              "watching 4 records of 'P'\ntsrtm: 'P' was moved, removed or replaced\n");
}

}  // namespace
}  // namespace tsRtm::test
