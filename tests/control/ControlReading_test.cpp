// Reading structure files: every form, what follows from them, and what must not be believed.
#include <gtest/gtest.h>

#include "tests/control/ControlTest.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::test {
namespace {

using ControlReading = FieldsTest;
using Numbers = std::vector<int32>;

TEST_F(ControlReading, TheExampleGivesItsStructure) {
    const auto control = openedText(kExample);
    ASSERT_TRUE(control);
    EXPECT_TRUE(control->IstAnsi());
    EXPECT_FALSE(control->IstUnicode());
    EXPECT_EQ(control->Typ(), ControlTyp_DB);
    EXPECT_EQ(control->DBDir(), u"/daten/Kunden.DBD");
    EXPECT_EQ(control->DBName(), u"/daten/Kunden");
    EXPECT_EQ(control->Name(), u"Control");
    const Numbers sizes = {control->Felder(),     control->Seiten(),           control->MaxRecords(),
                           control->SatzLaenge(), control->GesamtSatzLaenge(), control->PointerLaenge()};
    EXPECT_EQ(sizes, (Numbers{3, 1, 1000, 23, 24, 0}));
    EXPECT_EQ(control->Indizes(), 1);
    EXPECT_EQ(control->Index(1), 1);
    for (const auto& [index, component] : {std::pair{1, 4}, {1, 0}, {0, 1}, {2, 1}})
        EXPECT_EQ(control->Index(index, component), 0);
    EXPECT_EQ(control->FeldNummer(u"name"), 1);
    EXPECT_EQ(control->FeldNummer(u"Betrag"), -1);
    EXPECT_EQ((Numbers{control->IndexNr(1), control->IndexNr(u"Name"), control->IndexNr(2)}),
              (Numbers{1, 1, 0}));

    const auto amount = control->Feld(2);
    const Numbers line = {amount->NachKomma(), amount->Zeile(), amount->Spalte(), amount->Laenge(),
                          amount->Typ()};
    EXPECT_EQ(line, (Numbers{2, 2, 1, 10, 5}));
    EXPECT_EQ(amount->Position(), 8);
    EXPECT_EQ(amount->DBFeld(), 2);
    EXPECT_TRUE(control->field(1).IstIndexFeld());
    EXPECT_FALSE(amount->IstIndexFeld());
    EXPECT_EQ(control->MemoFeld(1), 3);
    EXPECT_EQ(control->MemoFeld(2), 0);
    EXPECT_THROW(control->Feld(4), Failure);
    EXPECT_THROW(control->Feld(0), Failure);
    EXPECT_TRUE(shown().empty());
}

// The same field in each form of head, encoding and line end.
TEST_F(ControlReading, EveryFormReadsTheSame) {
    const Bytes line = "0,1,1,8,1,";
    const Bytes ansi = line + "\"Fu\xDF \xFC\"";
    const Bytes utf8 = line + "\"Fu\xC3\x9F \xC3\xBC\"";
    const Bytes tail = "\r\n9,100,1\r\n1,0,0";
    struct Row {
        const char* what;
        Bytes bytes;
        bool passed;  // NichtAnsi as handed in
        bool ansi, unicode;
    };
    const Row rows[] = {
        {"plain count, DOS", "1\r\n" + line + "\"Fu\xE1 \x81\"" + tail, true, false, false},
        {"plain count, taken as Ansi", "1\r\n" + ansi + tail, false, true, false},
        {"version 0", "TS0,1\r\n" + ansi + tail, true, true, false},
        {"version 1, lower case", "ts1,1\r\n" + ansi + tail + "\r\n0\r\n", true, true, false},
        {"version 1, LF", "TS1,1\n" + ansi + "\n9,100,1\n1,0,0\n0\n", true, true, false},
        {"version 1, CR", "TS1,1\r" + ansi + "\r9,100,1\r1,0,0\r0", true, true, false},
        {"version 2 with its mark", "\xEF\xBB\xBFTS2,1\r\n" + utf8 + tail, true, true, true},
        {"version 2 without", "TS2,1\r\n" + utf8 + tail, true, true, true},
        {"no quotes", "TS1,1\r\n" + line + "  Fu\xDF \xFC  " + tail, true, true, false},
        {"comments", "TS1,1\r\n\r\n  ' Hinweis, 1,2\r\n   \r\n" + ansi + tail, true, true, false},
        {"three lines", "TS1,1\r\n" + line + "\"F_\"\r\n  \"u\xDF_\"\r\n\" \xFC\"" + tail, true, true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        write(u"Control.tsd", row.bytes);
        const auto control = opened(u"Control.tsd", row.passed);
        ASSERT_TRUE(control);
        ASSERT_EQ(control->Felder(), 1);
        EXPECT_EQ(control->field(1).Titel(), u"Fuß ü");
        EXPECT_EQ(control->IstAnsi(), row.ansi);
        EXPECT_EQ(control->IstUnicode(), row.unicode);
        EXPECT_EQ(control->MaxRecords(), 100);
        EXPECT_EQ(control->Index(1), 1);
    }
}

TEST_F(ControlReading, HeadsThatSayLittle) {
    EXPECT_EQ(openedText("TS1,0\r\n")->Felder(), 0);
    EXPECT_EQ(openedText("TS1,0")->Felder(), 0);
    EXPECT_EQ(openedText("Hallo\r\n")->Felder(), 0);
    const auto withoutLimits = openedText("TS1,1\r\n0,1,1,8,1,\"A\"\r\n\r\n");
    ASSERT_TRUE(withoutLimits);
    EXPECT_EQ(withoutLimits->MaxRecords(), 0);
    EXPECT_EQ(withoutLimits->Indizes(), 0);
    EXPECT_FALSE(openedText("TS3,0\r\n")) << "a version of the future";
    EXPECT_TRUE(shown().empty());
}

TEST_F(ControlReading, FieldsFallIntoTheirLists) {
    for (const TextView name : {u"KetteCtl.002", u"KetteCtl.003"})
        write(name, "TS1,1\r\n0,1,1,4,1,\"K\"\r\n0,50,0\r\n");
    const auto control = openedText(
        "TS1,9\r\n"
        "0,1,1,60,22,\"Memo\"\r\n"
        "0,2,1,5,38,\"Kette\"\r\n"
        "16,3,1,10,255,\"Verdeckte Kette\"\r\n"
        "0,4,1,7,254,\"Ohne Kette\"\r\n"
        "0,5,1,90,102,\"Bild\"\r\n"
        "0,6,1,40,86,\"Eigenschaften\"\r\n"
        "1,7,1,6,253,\"Autowert mit Nachkomma\"\r\n"
        "0,8,1,6,253,\"Autowert\"\r\n"
        "0,9,1,3,1025,\"Unicode\"\r\n"
        "1,32768,1\r\n"
        "4,8,0\r\n");
    ASSERT_TRUE(control);
    const auto field = [&](int32 n) -> const TSIO& { return control->field(n); };
    EXPECT_EQ(control->AnzahlMemos(), 2);
    EXPECT_EQ(control->Memo(1)->Breit(), 60);
    EXPECT_EQ(control->Memo(2), nullptr);
    EXPECT_EQ(control->AnzahlKetten(), 2);
    const Numbers lists = {control->MemoFeld(2), control->PropFeld(), control->KetteFeld(2),
                           control->BlobFeld(1), control->AutowertFeld()};
    EXPECT_EQ(lists, (Numbers{6, 6, 3, 5, 8}));
    EXPECT_TRUE(field(3).IsKette());
    EXPECT_EQ(field(3).Typ(), 255);
    EXPECT_FALSE(field(4).IsKette());
    EXPECT_EQ((Numbers{field(1).Laenge(), field(5).Laenge()}), (Numbers{5, 5})) << "columns of pointers";
    EXPECT_TRUE(control->HatUnicodeFelder());
    EXPECT_EQ(field(9).Position(), 5 + 5 + 10 + 7 + 5 + 5 + 6 + 6);
    EXPECT_EQ(control->SatzLaenge(), 49 + 2 * 3);
    EXPECT_EQ((Numbers{control->Seiten(), field(2).Seite(), field(9).Seite()}), (Numbers{2, 1, 2}));
    // The autowert field had no index of its own.
    ASSERT_EQ(control->Indizes(), 2);
    EXPECT_EQ(control->Index(2), 8);

    const auto chain = control->Kette(3);
    ASSERT_TRUE(chain);
    EXPECT_EQ(chain, control->Kette(3)) << "opened once";
    EXPECT_EQ(chain->Typ(), ControlTyp_Kette);
    const Numbers numbers = {chain->Anker(), chain->VorLaenge(), chain->PointerLaenge(),
                             chain->GesamtSatzLaenge(), chain->MaxRecords()};
    EXPECT_EQ(numbers, (Numbers{3, 10, 5, 14, 50}));
    EXPECT_EQ(control->Kette(2)->PointerLaenge(), 5);
    EXPECT_EQ(control->Kette(4), nullptr);
    EXPECT_EQ(control->Kette(99), nullptr);
    EXPECT_TRUE(shown().empty());
}

TEST_F(ControlReading, FaultsOfTheStructureAreShownAndReadingGoesOn) {
    const auto control = openedText(
        "TS1,4\r\n"
        "0,1,1,8,1,\"A@@7NAME\"\r\n"
        "0,1,1,8,1,\"B@@7name\"\r\n"
        "0,1,1,5,38,\"C@@7KETTE\"\r\n"
        "0,1,1,5,1,\"D\"\r\n"
        "0,100,4\r\n"
        "NAME,0,0\r\n"
        "1,2,0\r\n"
        "FEHLT,5,-1\r\n"
        "4,0,0\r\n");
    ASSERT_TRUE(control);
    EXPECT_EQ(control->FeldNummer(u"NAME"), 1) << "the first entry stays";
    EXPECT_EQ(control->Indizes(), 4);
    EXPECT_EQ(control->Index(2, 2), 2);
    EXPECT_EQ(control->Index(4), 4);
    for (const auto component : {1, 2, 3}) EXPECT_EQ(control->Index(3, component), 0);
    const Text dir = u" von /daten/Kunden.DBD";
    const Text fault = u"Konfigurationsfehler|";
    const Text wrong = fault + u"Falscher Index in Control.tsd" + dir;
    EXPECT_EQ(
        shown(),
        (std::vector<Text>{
            u"clsControl.Oeffne|In der Datenbank \"/daten/Kunden.DBD\" fehlt die Datei "
            u"\"KetteCtl.003\".\r\n\r\nBitte setzen Sie sich mit der Hotline in Verbindung, da Sie nicht "
            u"auf alle Daten der Datenbank zugreifen können.",
            fault + u"Doppelter Name in Control" + dir + u" bei Feld 2",
            fault + u"Doppelte Indizes in Control.tsd" + dir, wrong, wrong, wrong}));
}

TEST_F(ControlReading, IndexesChangeInMemory) {
    const auto control = openedText(kExample);
    ASSERT_TRUE(control);
    EXPECT_TRUE(control->IndexHinzu(2, 1));
    for (const auto& [first, second, third] : {std::tuple{0, 0, 0}, {4, 0, 0}, {1, -1, 0}, {1, 0, 4}})
        EXPECT_FALSE(control->IndexHinzu(first, second, third));
    EXPECT_EQ(control->Indizes(), 2);
    EXPECT_FALSE(control->IndexWeg(0));
    EXPECT_FALSE(control->IndexWeg(3));
    EXPECT_TRUE(control->IndexWeg(1));
    EXPECT_EQ(control->Index(1), 2);
    EXPECT_EQ(read(u"Control.tsd"), kExample);
}

// Each of these ends in a refusal or in an object within its bounds.
TEST_F(ControlReading, HostileFilesAreRefused) {
    const auto repeated = [](Bytes piece, int count) {
        Bytes all;
        while (count-- > 0) all += piece;
        return all;
    };
    const std::pair<const char*, Bytes> rows[] = {
        {"empty", ""},
        {"huge count", "TS1,2147483647\r\n0,1,1,8,1,\"A\"\r\n"},
        {"one field too many", "TS1,10000\r\n" + repeated("0,1,1,1,1,A\r\n", 10000)},
        {"count beyond all numbers", "TS1,9e300\r\n"},
        {"negative count", "TS1,-1\r\n"},
        {"ends among the fields", "TS1,2\r\n0,1,1,8,1,\"A\"\r\n"},
        {"negative length", "TS1,1\r\n0,1,1,-8,1,\"A\"\r\n"},
        {"length beyond a record", "TS1,1\r\n0,1,1,32768,1,\"A\"\r\n"},
        {"endless continuation", "TS1,1\r\n0,1,1,8,1,\"A_\"\r\n" + repeated("\"_\"\r\n", 50000)},
        {"indexes that are not there", "TS1,1\r\n0,1,1,8,1,\"A\"\r\n9,1,2147483647\r\n1,0,0\r\n"},
        {"more indexes than fields can be", "TS1,1\r\n0,1,1,8,1,\"A\"\r\n9,1,10000\r\n"},
        {"binary", Bytes("\0\xFF\x01,5\n\0\0\0\x80", 11)},
        {"32-bit text", Bytes("\xFF\xFE\0\0T\0\0\0", 8)},
    };
    for (const auto& [what, bytes] : rows) EXPECT_FALSE(openedText(bytes)) << what;
    EXPECT_FALSE(opened(u"Fehlt.tsd"));
    EXPECT_FALSE(std::make_shared<clsControl>(topic)->Oeffne(kDir)) << "a folder";
    EXPECT_TRUE(shown().empty());

    // A memo states the length of its blocks, which do not lie in the record.
    ASSERT_TRUE(openedText("TS1,1\r\n0,1,1,40000,22,\"A\"\r\n"));
    const auto widest = openedText("TS1,9999\r\n" + repeated("0,1,1,32767,1025,A\r\n", 9999));
    ASSERT_TRUE(widest);
    EXPECT_EQ(widest->SatzLaenge(), 9999 * 32767 * 2);
}

}  // namespace
}  // namespace tsRtm::test
