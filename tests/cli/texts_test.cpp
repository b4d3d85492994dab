// The library's texts and RTF by the command line.
#include "tests/cli/Tool.hpp"

namespace tsRtm::test {
namespace {

using Texts = Tool;

TEST_F(Texts, MessagesByNumberAndLanguage) {
    using Row = std::pair<const char*, const char*>;
    for (const auto& [arguments, out] :
         {Row{"msg 1", "Fehler\n"}, Row{"msg 76 3 9", "Seite 3/9\n"},
          Row{"msg 29 1 2", "Bitte Zahl zwischen 1 und 2 eingeben:\n"},
          Row{"msg 101 --language en", "Monday\n"}, Row{"msg 1 --captions --language fr", "&Annuler\n"},
          Row{"msg 113 --json", "{\"number\":113,\"text\":\"März\"}\n"}})
        EXPECT_EQ(ok(arguments).out, out) << arguments;
    const auto all = json("msg")["messages"];
    EXPECT_EQ(all.size(), 136u);
    EXPECT_EQ(all[0]["text"], "Fehler");
    EXPECT_EQ(ok("msg --captions --json --language nl").json()["messages"].size(), 45u);
    EXPECT_TRUE(ok("msg").out.starts_with(" Nr  Text\n  1  Fehler\n"));

    refusedEach("msg ", 1, "71 -> no message 71 | 1 --language en -> no message 1 in this language");
    refused("msg 1 --language xx", 2, "--language");
}

TEST_F(Texts, RtfToTextAndBack) {
    write("a.rtf",
          "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\b Gr\\'fc\xDF"
          "e\\b0\\par\r\nPreis \\u8364?5}");
    prints("rtf a.rtf", "Grüße\nPreis €5");
    write("m.txt", "\xEF\xBB\xBF.ZE\n~FTitel~F\n\n{Ł} 5 €\n");
    prints(
        "rtf m.txt --to-rtf --no-header",
        "{\\pard\\plain\\fs20 \\qc \\b Titel\\b0 \\par \\par \\{{\\uc1\\u321?}\\} 5 {\\uc1\\u8364?}\\par }");
    ok("rtf m.txt m.rtf --to-rtf");
    prints("rtf m.rtf", "Titel\n\n{Ł} 5 €\n");
    EXPECT_EQ(ok("rtf a.rtf --to-rtf").out, read("a.rtf"));
    write("d.txt", "\x84\xE1");
    prints("rtf d.txt --encoding 850", "äß");
    EXPECT_EQ(ok("rtf m.txt").out, read("m.txt").substr(3)) << "no RTF: as it is";

    refusedEach("rtf ", 1,
                "fehlt.rtf -> cannot read 'fehlt.rtf' | d.txt --encoding utf8 -> it is not in utf8 | a.rtf "
                "no/such/folder -> cannot write");
    refused("rtf a.rtf --no-header", 2, "--to-rtf");
}

}  // namespace
}  // namespace tsRtm::test
