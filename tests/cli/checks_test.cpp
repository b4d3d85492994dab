// Checks and payment files by the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

class Checks : public Tool {
 protected:
    void graded(const std::string& arguments, int grade, const std::string& tells) {
        const auto answer = run("check " + arguments);
        EXPECT_EQ(answer.status, grade) << arguments << '\n' << answer.err;
        EXPECT_HOLDS(answer.out, tells) << arguments;
    }
};

TEST_F(Checks, TheExitStatusIsTheGrade) {
    using Row = std::tuple<const char*, int, const char*>;
    for (const auto& [arguments, grade, tells] :
         {Row{"iban DE89370400440532013000", 0, "grade       ok\n"},
          Row{"iban DE88370400440532013000", 3, "\"89\" wären die passenden"},
          Row{"iban --error 'de89 3704 0044 0532 0130 00'", 4,
              "passes without blanks and in capitals: DE89370400440532013000\n"},
          Row{"bic DEUTDEFF", 0, "ok"}, Row{"blz 9", 3, "keine gültige Bankleitzahl"},
          Row{"konto 12345678901", 3, "Kontonummer"}, Row{"email a@b", 3, "Keine gültige eMail-Adresse"},
          Row{"egvp safe-sp1-1-1", 0, "ok"}, Row{"value 12,5 --min 13", 3, "Nur Werte von 13"},
          Row{"value '' --required --error", 4, "Es ist eine Eingabe notwendig"},
          Row{"date 25122024 --days workday --critical", 4, "Das Datum ist ein Feiertag (1. Weihnachtstag)"},
          Row{"date 31.02.24", 4, "no such day"}, Row{"date 29.02.24 --max 01032024", 0, "ok"}})
        graded(arguments, grade, tells);
    EXPECT_EQ(run("check iban X --json").json()["gradeName"], "warning");
    refused("check iban", 2, "VALUE or --file");
    refused("check date 01012024 --min 31.02.24", 1, "is no date");
}

TEST_F(Checks, AColumnOfAFileIsChecked) {
    write("k.csv", "Name;IBAN\nAda;DE89370400440532013000\n\nBo;DE1\n\"C\nD;\n");
    const auto answer = run("check iban --file k.csv --separator ';' --column iban --required");
    EXPECT_EQ(answer.status, 4);
    EXPECT_EQ(answer.out, "checked 4, failed 3: see k.csv.report.csv\n");
    const std::string report = read("k.csv.report.csv");
    EXPECT_HOLDS(report, "4,DE1,warning,", "5,,error,,no row: ", "6,,warning,\"Eine IBAN muss mindestens");
    refusedEach("check iban --file ", 1,
                "k.csv --column X -> has no column 'X' | k.csv --report k.csv -> overwrite | fehlt.csv -> no "
                "such file");
}

TEST_F(Checks, PaymentsAreWrittenAndShown) {
    std::filesystem::create_directory(path("bank"));
    write("h.csv", "BLZ,Kontonummer,Name1,PLZOrt\n37040044,532013000,Büro Müller,50667 Köln\n");
    const std::string columns = "BIC,IBAN,Betrag,Name1,Verwendungszweck\n";
    const std::string good = "BNPAFRPPXXX,FR1420041010050500013M02606,\"12,50\",Café Ada,Rechnung 17\n";
    write("a.csv", columns + good + "DEUTDEFFXXX,DE89370400440532013000,100,Bo,\n");
    const std::string dta = "dta write a.csv --header h.csv --out bank";
    const auto written = json(dta);
    EXPECT_EQ(nlohmann::json({written["transfers"], written["sum"], written["report"]}),
              parsed(R"([2, 112.5, ["line 2: Name1: left out: é"]])"));
    EXPECT_EQ(read("bank/DTAZV").size(), 512 + 2 * 768);

    for (const char* part :
         {"orderer     BUERO MUELLER, 50667 KOELN\n", "amount      12.500 EUR", "CAF ADA",
          "IBAN        FR1420041010050500013M02606\n", "2 transfers, 112 whole euros: right\n"})
        shows("dta show bank/DTAZV", part);
    EXPECT_EQ(json("dta show bank/DTAZV")["orders"][1]["Name1"], "BO");

    std::string bytes = read("bank/DTAZV");
    bytes[256 + 2 * 768 + 34] = '3';
    write("falsch", bytes);
    EXPECT_HOLDS(run("dta show falsch").err, "the totals do not fit: there are 2 transfers");
    bytes[300] = 'x';
    write("falsch", bytes);
    refused("dta show falsch", 1, "at byte 300");
    write("falsch", bytes.substr(1));
    refused("dta show falsch", 1, "bytes are not");

    refused(dta, 1, "--replace");
    shows(dta + " --name zwei", "is of today, too");
    for (const auto& [row, tells] :
         {std::pair{"DEUTDEFFXXX,DE89370400440532013000,\"12,05\",Bo,\n", "refused: Betrag: cents below ten"},
          {"DEUTDEFFXXX,DE89370400440532013000,0,Bo,\n", "refused: Betrag: not above 0"},
          {"DEUTDEFFXXX,DE89370400440532013000,1.234.5,Bo,\n", "is no amount"},
          {"DEUTDEFF,DE89370400440532013000,1,Bo,\n", "line 3: Fehler: EU-Standardueberweisung verlangt"}}) {
        write("b.csv", columns + good + row);
        const auto answer = run("dta write b.csv --header h.csv --out bank --name drei");
        EXPECT_EQ(answer.status, 1);
        EXPECT_HOLDS(answer.out, tells);
        EXPECT_FALSE(exists("bank/drei"));
    }
    write("h.csv", "BLZ,Kontonummer,Name1\n37040044,123456789012,Büro\n");
    EXPECT_HOLDS(run(dta + " --name drei").out, "more than 10 digits");
    ok(dta + " --name drei --as-is");
    EXPECT_EQ(read("bank/drei").substr(13, 10), "1234567890");
    refused("dta write h.csv --header h.csv --out bank --name vier", 1, "has no column 'BIC'");
}

}  // namespace
}  // namespace tsRtm::test
