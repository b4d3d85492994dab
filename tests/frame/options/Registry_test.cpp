// The registry of the facade: short and long forms, flags of older releases, typed options, rights. Values
// out of INI files: sections, keys, quotes, encodings, and files that are none.
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/OptionsTopic.hpp"
#include "tsRtm/frame/clsTSOptions.hpp"
#include "tsRtm/frame/files/Encodings.hpp"
#include "tsRtm/frame/options/IniFile.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"

namespace tsRtm::test {
namespace {

constexpr auto kUser = platform::HKeys::currentUser;
constexpr TextView kRoot = u"Software\\Tessarol";

class Registry : public testing::Test {
 protected:
    std::optional<Text> stored(TextView key, TextView name) { return ground.settings.get(kUser, key, name); }
    void store(TextView key, TextView name, TextView value) {
        ASSERT_EQ(ground.settings.set(kUser, key, name, value), platform::SystemError::none);
    }

    TestGround ground;
    StartedLibrary library{ground};
    OptionsTopic rtm;
};

TEST_F(Registry, ShortFormsLieBelowTheRootAndLongOnesAnywhere) {
    for (const TextView subkey : {u"", u"X", u"\\X", u"X\\Y"}) {
        rtm.RegSchreiben(HKEY_CURRENT_USER, subkey, u"Wert", u"kurz");
        const Text path = Text(kRoot) + (subkey.empty() || subkey[0] == u'\\' ? u"" : u"\\") + Text(subkey);
        EXPECT_EQ(stored(path, u"Wert"), u"kurz");
        rtm.RegSchreibenEX(HKEY_CURRENT_USER, path, u"wert", u"lang");
        EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, subkey, u"Wert"), u"lang");
        EXPECT_EQ(rtm.RegLesenEx(HKEY_CURRENT_USER, path, u"WERT"), u"lang");
        EXPECT_EQ(rtm.RegLesen(HKEY_LOCAL_MACHINE, subkey, u"Wert"), u"") << "another hive";
    }
    const auto noHive = static_cast<HKeys>(7);
    rtm.RegSchreiben(noHive, u"", u"Wert", u"x");
    EXPECT_EQ(rtm.RegLesen(noHive, u"", u"Wert"), u"");
}

TEST_F(Registry, FlagWordsAreStoredAsNumbersAndEmptyTextsAsPresent) {
    for (const auto& [written, kept] : {std::pair<Text, Text>{u"Wahr", u"-1"},
                                        {u"TRUE", u"-1"},
                                        {u"falsch", u"0"},
                                        {u"Wahrheit", u"Wahrheit"},
                                        {u"", Text(1, u'\0')}}) {
        rtm.RegSchreiben(HKEY_CURRENT_USER, u"X", u"Y", written);
        EXPECT_EQ(stored(u"Software\\Tessarol\\X", u"Y"), kept);
        EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, u"X", u"Y"), written.empty() ? u"" : kept);
    }
    ground.system.os.platformId = 1;
    library.restart();
    rtm.RegSchreiben(HKEY_CURRENT_USER, u"X", u"Y", u"");
    EXPECT_EQ(stored(u"Software\\Tessarol\\X", u"Y"), u"");
}

TEST_F(Registry, FlagsOfOlderReleasesAreBroughtUpToDateAtTheFirstReading) {
    for (const auto& [old, now] : {std::pair<Text, Text>{u"WAHR", u"-1"}, {Text(u"Falsch\0", 7), u"0"}}) {
        store(kRoot, u"Alt", old);
        EXPECT_EQ(rtmMain::RegRaw(kUser, kRoot, u"Alt"), old.substr(0, old.find(u'\0')))
            << "the start changes nothing";
        ground.settings.readOnly = true;
        EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, u"", u"Alt"), old.substr(0, old.find(u'\0')))
            << "as it stands until it can be written";
        EXPECT_EQ(stored(kRoot, u"Alt"), old);
        ground.settings.readOnly = false;
        EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, u"", u"Alt"), now);
        EXPECT_EQ(stored(kRoot, u"Alt"), now);
    }
}

TEST_F(Registry, WhatAnotherProcessWritesMeanwhileIsNotTakenBack) {
    store(kRoot, u"Alt", u"WAHR");
    ground.settings.onGet = [&] { store(kRoot, u"Alt", u"0"); };
    EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, u"", u"Alt"), u"0");
    EXPECT_EQ(stored(kRoot, u"Alt"), u"0");
}

TEST_F(Registry, DeletesAValueOrAKeyWithAllBelow) {
    for (const TextView key : {u"A", u"A\\B", u"AB"})
        for (const TextView name : {u"x", u"y"}) rtm.RegSchreiben(HKEY_CURRENT_USER, key, name, u"1");
    rtm.RegLoeschen(HKEY_CURRENT_USER, u"A", u"X");
    rtm.RegLoeschen(HKEY_CURRENT_USER, u"A", u"fehlt");
    EXPECT_EQ(ground.settings.names(kUser, u"Software\\Tessarol\\A"), std::vector<Text>{u"y"});
    rtm.RegLoeschenEx(HKEY_CURRENT_USER, u"Software\\Tessarol\\A");
    EXPECT_EQ(ground.settings.keys(kUser, kRoot), std::vector<Text>{u"AB"});
    rtm.RegLoeschenEx(HKEY_CURRENT_USER, u"");
    EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, u"AB", u"x"), u"1") << "a hive stays";
    rtm.RegLoeschen(HKEY_CURRENT_USER, u"");
    EXPECT_TRUE(ground.settings.keys(kUser, u"Software").empty());
}

TEST_F(Registry, TypedOptionsReadNumbersByTheirOwnRules) {
    for (const auto& [text, told] :
         table<2>(u"=no|0;0=no|0;-1=yes|-1;001=no|1;WAHR=yes|-1;12abc=yes|0; 42 "
                  u"=yes|42;3,5=yes|4;2147483648=yes|0;-2147483648=yes|-2147483648",
                  u";")) {
        store(u"Software\\Tessarol\\X", u"Y", text);
        EXPECT_TOLD(toUtf8(told), rtm.BoolOption(u"X", u"Y"), rtm.LongOption(u"X", u"Y")) << toUtf8(text);
    }
    for (const bool flag : {true, false}) {
        rtm.BoolOption(u"X", u"Y", flag);
        EXPECT_EQ(stored(u"Software\\Tessarol\\X", u"Y"), flag ? u"-1" : u"0");
    }
    rtm.LongOption(u"X", u"Y", -70000);
    EXPECT_EQ(rtm.LongOption(u"X", u"Y"), -70000);
}

TEST_F(Registry, RightsFollowTheStore) {
    constexpr int32 reading = 0x120089, writing = 0x120116;
    rtmMain::state().appProgID = u"Anwendung";
    EXPECT_TRUE(rtm.HKLMRights());
    ground.settings.readOnly = true;
    EXPECT_FALSE(rtm.HKLMRights());
    EXPECT_TRUE(rtm.CheckRegistryAccess(HKEY_LOCAL_MACHINE, kRoot, reading));
    for (const int32 mask : {2, 4, 64, writing, writing | reading})
        EXPECT_FALSE(rtm.CheckRegistryAccess(HKEY_LOCAL_MACHINE, kRoot, mask)) << mask;
    EXPECT_FALSE(rtm.CheckRegistryAccess(static_cast<HKeys>(7), kRoot, reading));
    ground.system.os.platformId = 1;
    library.restart();
    EXPECT_TRUE(rtm.HKLMRights()) << "an old system has no rights to check";
}

TEST_F(Registry, ADamagedStoreMeansDefaultsAndNoFailure) {
    rtm.RegSchreiben(HKEY_CURRENT_USER, u"", u"NetWait", u"20");
    ground.settings.damaged = true;
    EXPECT_EQ(rtm.RegLesen(HKEY_CURRENT_USER, u"", u"NetWait"), u"");
    rtm.RegSchreiben(HKEY_CURRENT_USER, u"", u"NetWait", u"30");
    rtm.RegLoeschen(HKEY_CURRENT_USER, u"", u"NetWait");
    rtm.LongOption(u"", u"NetWait", 1);
    EXPECT_TOLD("no|yes|16", rtm.BoolOption(u"", u"Debug"), rtm.TSOptions()->ShowEndeDialog(),
                rtm.TSOptions()->ToolbarSize());
    ground.settings.damaged = false;
    EXPECT_EQ(rtm.LongOption(u"", u"NetWait"), 20);
}

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
