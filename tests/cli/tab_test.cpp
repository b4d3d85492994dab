// Lists, tables and input shortcuts by the command line.
#include "tests/cli/Tool.hpp"
#include "tests/support/Table.hpp"

namespace tsRtm::test {
namespace {

using Tab = Tool;

TEST_F(Tab, EachFormIsMadeChangedAndRead) {
    using Row = std::tuple<std::string, TextView, const char*>;
    for (const auto& [form, commands, entries] :
         {Row{"L.txt", u"add weg|add Müller|add neu --before 1|delete 2", R"(["neu","Müller"])"},
          Row{"T.txt --types TLD", u"add weg 1 2,5|add Müller 7 12,50|add neu 8 --before 1|delete 2",
              R"([["neu",8,0],["Müller",7,12.5]])"},
          Row{"V.txt --rows", u"add weg|delete 1|add neu 'a\nb'|add Müller",
              R"([["neu","a\rb"],["Müller"]])"},
          Row{"Tabelle.iom --shortcuts",
              u"add weg x|add mfg 'Mit freundlichen Grüßen'|add neu y --before 1|delete 2|"
              u"set 1 '^M' --column 2",
              R"([["neu","^M"],["mfg","Mit freundlichen Grüßen"]])"}})
        for (const std::string more : {"", " --encrypted", " --wipe"}) {
            for (const auto& command : split(commands, u"|")) {
                const auto blank = command.find(u' ');
                ok("tab " + toUtf8(command.substr(0, blank)) + " " + form + more +
                   toUtf8(command.substr(blank)));
            }
            const auto listed = json("tab list " + form + (more == " --wipe" ? "" : more));
            EXPECT_EQ(listed["entries"], parsed(entries)) << form << more;
            EXPECT_TRUE(listed["whole"] == true && listed["count"] == 2) << form << more;
            std::filesystem::remove(path(form.substr(0, form.find(' '))));
        }
    EXPECT_EQ(json("tab add L.txt neu")["nr"], 1);
}

TEST_F(Tab, ReadingShowsOneCellOrAll) {
    write("T", "a\r\n1\r\n2.5\r\nb\r\n3\r\n4\r\nrest\r\n");
    prints("tab get T --types TLD 2", "b\n3\n4,00\n");
    prints("tab get T --types TLD 1 3", "2,50\n");
    EXPECT_EQ(json("tab get T --types TLD 1 2"), 1);
    const auto table = ok("tab list T --types TLD --limit 1");
    EXPECT_EQ(table.out, "  Nr  1  2     3\n   1  a  1  2,50\n");
    EXPECT_HOLDS(table.err, "belong to no row");
    EXPECT_EQ(json("tab list T")["count"], 7);
    write("G", "1e300\r\n");
    EXPECT_EQ(json("tab get G --types D 1 1"), 1e300);
}

TEST_F(Tab, WhatTheFileCannotHoldIsRefusedAndNothingChanges) {
    const std::string table = "a\r\n1\r\nb\r\n2\r\n";
    const std::string rows = "1#\r\na\r\n";
    write("T", table);
    write("V", rows);
    write("torn", table + "c\r\n");
    write("damaged", "0#\r\n");
    refusedEach(
        "tab ", 1,
        "list Nirgends -> no such file | list . -> is a folder | list damaged --rows -> sind ab Satz 1 nicht "
        "im richtigen Format | add damaged --rows x -> sind ab Satz 1 nicht im richtigen Format | "
        "get T 5 -> no entry 5 in 'T': it has 1 to 4 | get T --columns 2 1 3 -> no column 3: entry 1 has 1 "
        "to 2 | set T --types TL 3 x -> no entry 3 | set T --types TL 1 x --column 3 -> no column 3 | "
        "set T --types TL 1 zwei --column 2 -> no whole number | set T --types TL 1 2147483648 --column 2 -> "
        "no whole number | add T --types TD x 1.2.3 -> is no number | "
        "add T --columns 2 a b c -> 3 values, but there are 2 columns | add T a b -> an entry of a list is "
        "one value | add T --columns 2 'a\nb' -> line break | add T --columns 2 '\x1A' -> end-of-file mark | "
        "add T --columns 2 Łódź -> 'Ł' is not in code page 1252 | add neu --encrypted 😀 -> '😀' is not in "
        "code page 1252 | add T --shortcuts 'zu lang' x -> is no key | add V --rows 'a`b' -> grave accent | "
        "add V --rows x --before 1 -> at the end only | delete T --columns 2 1 3 -> no entry 3 | delete torn "
        "--columns 2 1 -> belong to no row | list T --columns 1 --types TT -> 2 letters for 1 columns");
    EXPECT_EQ(read("T") + read("V") + read("torn") + read("damaged"), table + rows + table + "c\r\n0#\r\n");
    EXPECT_FALSE(exists("neu"));
}

TEST_F(Tab, ExpandTriesTheShortcuts) {
    ok("tab add Tabelle.iom --shortcuts mfg 'Mit freundlichen Grüßen'");
    prints("tab expand mfg --folder .", "Mit freundlichen Grüßen\n");
    EXPECT_EQ(json("tab expand '#D' --folder .")["replaced"], true);
    EXPECT_EQ(json("tab expand '#X' --folder .")["text"], "#X");
    refused("tab expand MFG --folder .", 1, "is no shortcut");
}

TEST_F(Tab, WrongUsageIsStatusTwo) {
    refusedEach(
        "tab ", 2,
        "-> subcommand | list -> FILE is required | list F --types XY -> letters L, D and T | list F "
        "--columns 0 -> range | list F --rows --columns 2 -> --columns | get F x -> NR = x | add F -> VALUE");
    shows("tab --help", "tsrtm tab add");
}

}  // namespace
}  // namespace tsRtm::test
