// tsrtm hash and tsrtm date; the library's texts and RTF.
#include "tests/cli/Tool.hpp"
#include "tests/support/Table.hpp"

namespace tsRtm::test {
namespace {

using Services = Tool;

const std::string kOfAbc = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

TEST_F(Services, HashesFilesAsTheSumToolsWriteThem) {
    write("eins", "abc");
    write("zwei.bin", std::string(70000, '\0'));
    EXPECT_EQ(ok("hash eins").out, kOfAbc + "  eins\n");
    EXPECT_EQ(run("hash - eins", path("eins")).out, kOfAbc + "  -\n" + kOfAbc + "  eins\n");
    EXPECT_EQ(std::system(("cd '" + path("") + "' && sha256sum eins zwei.bin >summen").c_str()), 0);
    EXPECT_EQ(ok("hash eins zwei.bin").out, read("summen"));
    EXPECT_EQ(json("hash --algorithm md4 eins"), parsed(R"({"algorithm":"md4","files":[{"file":"eins",
                                        "hash":"a448017aaf21d8525fc10ae87aa6729d"}]})"));
}

TEST_F(Services, HashesTextsInTheirForms) {
    for (const auto& [options, hash] : {std::pair{"abc", "900150983cd24fb0d6963f7d28e17f72\n"},
                                        {"abc --form base64", "kAFQmDzST7DWlj99KOF/cg==\n"},
                                        {"abc --form short", "kAFQmDzST7DWlj99KOF/cg\n"},
                                        {"ä --encoding 1252", "c15bcc5577f9fade4b4a3256190a59b0\n"},
                                        {"ä", "8419b71c87a225a2c70b50486fbee545\n"}})
        prints(std::string("hash --algorithm md5 --text ") + options, hash);
}

TEST_F(Services, HashRefusesWhatItCannotRead) {
    refusedEach("hash ", 1,
                "fehlt -> no such file | . -> folder | --text Łódź --encoding 1252 -> 1252 lacks");
    refusedEach("hash ", 2,
                "-> hash --help | --text a eins -> hash --help | eins --algorithm crc -> crc | eins "
                "--encoding 850 -> --text");
}

TEST_F(Services, ADateInAllItsForms) {
    const auto forms = parsed(R"({"local":"31.12.2024","words":"31. Dezember 2024",
        "digits":"31122024","sort":"20241231","iso":"2024-12-31","weekday":1,"weekdayName":"Dienstag","week":1,
        "dayOfYear":366,"daysInMonth":31,"dayNumber":2460676,"bankDay":728640,"serial":45657,
        "julianCalendar":"18.12.2024"})");
    for (const char* expression : {"31.12.2024", "31.12.24", "2024-12-31", "31122024", "311224", "20241231",
                                   "J2460676", "j2460676", "1.1.2025 -1d", "01.01.2025-1"})
        EXPECT_EQ(ok(std::string("date --json ") + expression).json(), forms) << expression;
    for (const char* shown : {"31.12.2024\n", "Dienstag\n", "J2460676\n", "728640 (30/360)\n"})
        shows("date 20241231", shown);
    EXPECT_EQ(ok("date").out, ok("date heute").out);
    EXPECT_EQ(ok("date -3d").out, ok("date heute - 3 tage").out);
}

TEST_F(Services, DatesAreReckonedWith) {
    for (const auto& [expression, iso] :
         table<2>(u"31.01.2024 +1m=2024-02-29; 31.01.2024 + 1 Monat + 1 tag=2024-03-01; 29.02.2024 "
                  u"+1y=2025-02-28; 29.02.2024 -4j=2020-02-29; 30.12.2023 -30d=2023-11-30; "
                  u"2024-12-31-30d=2024-12-01; 01.01.2024 +2w=2024-01-15; 30.01.2024 +30b=2024-02-29; "
                  u"31.01.2024 +360 banktage=2025-01-30; 4.10.1582 +1=1582-10-15; 20121112=2012-11-12; "
                  u"12131112=1213-11-12; 2.1.0101 -1d=0101-01-01",
                  u"; "))
        EXPECT_EQ(json("date " + toUtf8(expression))["iso"], toUtf8(iso)) << toUtf8(expression);
    const auto span = json("date 31.01.2024 .. 2024-12-31");
    EXPECT_TRUE(span["days"] == 335 && span["bankDays"] == 330) << span;
    prints("date 31.12.2024 bis 31.01.2024 +1w",
           "from             31.12.2024 Dienstag\nto               07.02.2024 Mittwoch\n"
           "days             -328\nbank days        -323 (30/360)\n");
}

TEST_F(Services, DatesThatAreNoneAreRefusedWithAReason) {
    refusedEach("date ", 1,
                "31.02.2024 -> there is no 31.2.2024 | 2023-02-29 -> there is no 29.2.2023 | 32132024 -> "
                "there is no | 10.10.1582 -> never was | 10.09.1582 +1m -> never was | 11121112 -> two ways "
                "| 01.01.0050 -> 101 to 9999 | "
                "31.12.9999 +1d -> 101 to 9999 | J1 -> 101 to 9999 | 01.01.2024 +9999999y -> 101 to 9999 | "
                "01.01.2024 -9999999b -> 101 to 9999 | morgen -> begins with no date | 1.1.2024 +2x -> 'x' "
                "is no unit | 1.1.2024 + -> a number is missing | "
                "1.2.2024-1.1.2024 -> between two dates write .. | 1.1.2024 2.1.2024 -> between two dates "
                "write .. | 1.1.2024 .. -> a date is missing");
    refused("date --wrong", 2, "date --help");
}

// What the user's locale says changes the local form and nothing else.
TEST_F(Services, DatesAreReckonedAlikeInEveryLocale) {
    for (const auto& [locale, local] : {std::pair{"en_US", "12/31/2024"}, {"sv_SE", "2024-12-31"}}) {
        const std::string command =
            start("date 30.12.2024 +1d --json")
                .replace(start("").find("LC_ALL=C"), 8, "LC_ALL=" + std::string(locale));
        ASSERT_EQ(std::system((command + " >'" + path("out") + "'").c_str()), 0);
        const auto forms = nlohmann::json::parse(read("out"));
        EXPECT_TRUE(forms["local"] == local && forms["sort"] == "20241231" && forms["dayNumber"] == 2460676)
            << forms;
    }
}

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
