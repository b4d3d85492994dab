// Values out of INI files: sections, keys, quotes, encodings, and files that are none.
#include "tsRtm/frame/options/IniFile.hpp"

#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/frame/OptionsTopic.hpp"
#include "tsRtm/frame/files/Encodings.hpp"

namespace tsRtm::test {
namespace {

class IniFile : public testing::Test {
 protected:
    void write(BytesView bytes) { files.put(u"a.ini", bytes); }
    Text value(TextView section, TextView key) { return OptionsTopic().INIGetValue(u"a.ini", section, key); }

    MemoryFiles files;
    TestGround ground;
    StartedLibrary library{ground, files};
};

constexpr BytesView kFile =
    "outside=0\r\n"
    "; [Eins]\r\n"
    "[Default]\n"
    "a=ohne Abschnitt\n"
    "[ Eins ]  \r\n"
    ";Farbe=nein\r\n"
    "  Farbe \t=\t rot = warm \r\n"
    "Farbe=blau\r\n"
    "leer=\r\n"
    "=namenlos\r\n"
    "kein Wert\r\n"
    "q=\" in Anf\xFChrung \"\r\n"
    "e='eins'\r\n"
    "halb=\"offen\r\n"
    "nur=\"\r\n"
    "beide=\"\"\r\n"
    "[Zwei\r\n"
    "noch=in Eins\r\n"
    "[Zwei]\r"
    "x=1\r"
    "[eins]\n"
    "sp\xE4t=nie\n"
    "[Drei]\n"
    "ende=ohne Zeilenende\x1A";

TEST_F(IniFile, ValuesBySectionAndKey) {
    write(kFile);
    for (const auto& [section, values] :
         table<2>(u"Eins>Farbe:rot = warm| farbe:rot = warm|q: in Anführung "
                  u"|e:eins|halb:\"offen|nur:\"|noch:in Eins|a:|outside:|leer:|:|kein Wert:|beide:|spät:;"
                  u" EINS>FARBE:rot = warm;>a:ohne Abschnitt;Default>a:ohne "
                  u"Abschnitt;Zwei>x:1;drei>ENDE:ohne Zeilenende;Vier>x:",
                  u";", u">"))
        for (const auto& [key, text] : table<2>(values, u"|", u":"))
            EXPECT_EQ(value(section, key), text) << toUtf8(section) << '/' << toUtf8(key);
    EXPECT_EQ(iniValue(u"fehlt.ini", u"Eins", u"Farbe"), u"");
    EXPECT_EQ(iniValue(u"", u"Eins", u"Farbe"), u"");
    EXPECT_EQ(rtmMain::state().F, 0) << "a missing file is no failure";
}

TEST_F(IniFile, EncodingsByTheirMark) {
    const Text text = u"[Größe]\r\nMaß=«zehn»\r\n";
    for (const int32 encoding : {ANSI1252, UTF8, UTF16BE}) {
        write(Bytes(encodings::markBytes(encoding)) + encodings::encode(text, encoding));
        EXPECT_EQ(value(u"GRÖSSE", u"Maß") + value(u"grÖße", u"maß"), u"«zehn»") << encoding;
    }
}

TEST_F(IniFile, HostileFilesGiveNothingOrWhatStandsThere) {
    write("");
    EXPECT_EQ(value(u"A", u"b"), u"");
    write(Bytes(200'000, '\0'));
    EXPECT_EQ(value(u"A", u"b"), u"");
    write(Bytes("\0[A]\0\n[A]\nb\0=x\nb=vor\0hinter\n", 28));
    EXPECT_EQ(value(u"A", u"b"), u"vor") << "a NUL ends a value";
    write("[A]\nb=" + Bytes(1'200'000, 'x') + "\nc=danach");
    EXPECT_EQ(value(u"A", u"b").size(), kLongestIniValue);
    EXPECT_EQ(value(u"A", u"c"), u"danach");
    Bytes many = "[A]\n";
    for (int i = 0; i < 100'000; ++i) many += "k" + std::to_string(i) + "=" + std::to_string(i) + "\r\n";
    write(many);
    EXPECT_EQ(value(u"A", u"K99999"), u"99999") << "lines across the blocks that are read";
    EXPECT_EQ(value(u"A", u"k10922"), u"10922");
}

}  // namespace
}  // namespace tsRtm::test
