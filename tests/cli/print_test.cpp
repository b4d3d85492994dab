// Paper by the command line: what comes out can be read again.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

class Printing : public Tool {
 protected:
    void SetUp() override {
#ifndef TSRTM_PAPER
        refused("printers", 1, "has no paper");
        GTEST_SKIP() << "this build has no paper";
#endif
        if (std::system("command -v pdftotext >/dev/null") != 0)
            GTEST_SKIP() << "poppler-utils is not installed";
    }
    // The text of a PDF, or what pdfinfo tells of it.
    std::string said(const std::string& program, const std::string& file) {
        EXPECT_EQ(std::system((program + " '" + path(file) + "' '" + path("said") + "' 2>/dev/null || " +
                               program + " '" + path(file) + "' >'" + path("said") + "'")
                                  .c_str()),
                  0)
            << file;
        return read("said");
    }
    std::string text(const std::string& file) { return said("pdftotext -layout", file); }
};

TEST_F(Printing, TextsAndTables) {
    std::string lines;
    for (int i = 1; i <= 150; ++i) lines += "Zeile " + std::to_string(i) + "\n";
    write("a.txt", lines + "\fSchluss Grüße €\n" + std::string(400, 'q') + "\n");
    ok("print text a.txt --to a.pdf");
    const auto all = text("a.pdf");
    EXPECT_HOLDS(all, "Zeile 1\n", "Zeile 150\n", "Schluss Grüße €", "Seite 1/4", "Seite 4/4");
    // A word that is wider than the page is cut, and nothing of it is lost.
    EXPECT_EQ(std::count(all.begin(), all.end(), 'q'), 400);
    // Whoever names a file means it, and nothing else is left.
    ok("print text a.txt --to a.pdf --landscape");
    EXPECT_FALSE(exists("a[2].pdf"));
    EXPECT_HOLDS(said("pdfinfo", "a.pdf"), "841.9 x 595.3");

    write("r.rtf", "{\\rtf1\\ansi\\b fett\\b0\\par normal\\par}");
    ok("print rtf r.rtf --to r.png");
    EXPECT_TRUE(read("r.png").starts_with("\x89PNG"));

    write("t.csv", "Name,Betrag\nMüller,1200.5\nMeier,-0.25\n");
    ok("print csv t.csv --to t.pdf --sum Betrag --pdfa");
    const auto table = text("t.pdf");
    EXPECT_HOLDS(table, "Müller", "1.200,50", "-0,25", "Summe", "1.200,25");

    refusedEach("print text ", 1,
                "a.txt --to nowhere -> is no printer | none.txt --to b.pdf -> none.txt | "
                "a.txt --to b.png --preview -> --preview is for");
    refused("print rtf a.txt --to b.pdf", 1, "is no RTF");
    refused("print text a.txt --to missing/deep/no.pdf --size 1", 2, "--size");
}

TEST_F(Printing, ListsAndLettersOfADatabase) {
    makePersons();
    for (int i = 1; i <= 70; ++i)
        ok("db add P NAME=Person" + std::to_string(100 + i) + " ORT=Köln BETRAG=" + std::to_string(i) + ".5");
    ok("print db P --to p.pdf --title 'Alle Personen' --fields NAME,ORT,BETRAG --from Person110");
    const auto list = text("p.pdf");
    EXPECT_HOLDS(list, "Alle Personen", "Person110", "Person170", "Seite 2/2", "Summe", "2.470,50");
    EXPECT_EQ(list.find("Person109"), std::string::npos);

    // The field's braces as word processors write them, with a format between two letters.
    write("l.rtf", "{\\rtf1\\ansi Guten Tag \\{NA{\\b ME\\}}, Betrag \\{BETRAG\\} in \\{ nichts \\}\\par}");
    ok("letters P --template l.rtf --to l.pdf --from Person101 --until Person103 --sender Kanzlei");
    const auto letters = text("l.pdf");
    EXPECT_HOLDS(letters, "Guten Tag Person101, Betrag 1.5 in { nichts }", "Guten Tag Person103", "Kanzlei");
    EXPECT_HOLDS(said("pdfinfo", "l.pdf"), "Pages:           3");
    write("bad.rtf", "{\\rtf1 \\{NAMME\\}}");
    refused("letters P --template bad.rtf --to b.pdf", 1, "NAMME");
    refused("letters P --template l.rtf --to b.pdf --from Z", 1, "no record");
    EXPECT_FALSE(exists("b.pdf"));
}

}  // namespace
}  // namespace tsRtm::test
