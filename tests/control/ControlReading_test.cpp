// Reading structure files: every form, what follows from them, and what must not be believed.
#include "tests/control/ControlTest.hpp"
#include "tsRtm/control/clsMasken.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm::test {
namespace {

using namespace std::string_literals;

using ControlReading = FieldsTest;

TEST_F(ControlReading, TheExampleGivesItsStructure) {
    const auto control = structure(kExample);
    EXPECT_TOLD("yes|no|/daten/Kunden.DBD|/daten/Kunden|Control", control->IstAnsi(), control->IstUnicode(),
                control->DBDir(), control->DBName(), control->Name());
    EXPECT_EQ(control->Typ(), ControlTyp_DB);
    EXPECT_TOLD("3|1|1000|23|24|0", control->Felder(), control->Seiten(), control->MaxRecords(),
                control->SatzLaenge(), control->GesamtSatzLaenge(), control->PointerLaenge());
    EXPECT_TOLD("1|1|0|0|0|0", control->Indizes(), control->Index(1), control->Index(1, 4),
                control->Index(1, 0), control->Index(0, 1), control->Index(2, 1));
    EXPECT_TOLD("1|-1|1|1|0", control->FeldNummer(u"name"), control->FeldNummer(u"Betrag"),
                control->IndexNr(1), control->IndexNr(u"Name"), control->IndexNr(2));
    const auto amount = control->Feld(2);
    EXPECT_TOLD("2|2|1|10|5|8|2", amount->NachKomma(), amount->Zeile(), amount->Spalte(), amount->Laenge(),
                amount->Typ(), amount->Position(), amount->DBFeld());
    EXPECT_TOLD("yes|no|3|0", control->field(1).IstIndexFeld(), amount->IstIndexFeld(), control->MemoFeld(1),
                control->MemoFeld(2));
    for (const int32 none : {0, 4}) EXPECT_THROW(control->Feld(none), Failure);
    EXPECT_TRUE(shown().empty());
}

TEST_F(ControlReading, OpenedAgainItKnowsTheOtherFileAlone) {
    const auto control = structure(kExample);
    EXPECT_TOLD("1|0", control->FeldNummer(u"name"), control->Masken()->Count());
    write(u"Kopf.MASKE", "TS1,0\r\n");
    write(u"Andere.tsd", "TS1,1\r\n0,1,1,4,1,\"Ort@@7ORT\"\r\n9,7,0\r\n0\r\n");
    ASSERT_TRUE(control->Oeffne(inDir(u"Andere.tsd")));
    EXPECT_TOLD("1|0|0|7|-1|1|1", control->Felder(), control->Indizes(), control->AnzahlMemos(),
                control->MaxRecords(), control->FeldNummer(u"name"), control->FeldNummer(u"ort"),
                control->Masken()->Count());
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
        EXPECT_TOLD("Fuß ü|100|1", control->field(1).Titel(), control->MaxRecords(), control->Index(1));
        EXPECT_EQ(std::pair(control->IstAnsi(), control->IstUnicode()), std::pair(row.ansi, row.unicode));
    }
}

TEST_F(ControlReading, HeadsThatSayLittle) {
    for (const char* head : {"TS1,0\r\n", "TS1,0", "Hallo\r\n"})
        EXPECT_EQ(openedText(head)->Felder(), 0) << head;
    const auto withoutLimits = structure("TS1,1\r\n0,1,1,8,1,\"A\"\r\n\r\n");
    EXPECT_TOLD("0|0", withoutLimits->MaxRecords(), withoutLimits->Indizes());
    EXPECT_FALSE(openedText("TS3,0\r\n")) << "a version of the future";
    EXPECT_TRUE(shown().empty());
}

TEST_F(ControlReading, FieldsFallIntoTheirLists) {
    for (const TextView name : {u"KetteCtl.002", u"KetteCtl.003"})
        write(name, "TS1,1\r\n0,1,1,4,1,\"K\"\r\n0,50,0\r\n");
    const auto control = structure(
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
    const auto field = [&](int32 n) -> const TSIO& { return control->field(n); };
    EXPECT_TOLD("2|60|no|2", control->AnzahlMemos(), control->Memo(1)->Breit(), control->Memo(2) != nullptr,
                control->AnzahlKetten());
    EXPECT_TOLD("6|6|3|5|8", control->MemoFeld(2), control->PropFeld(), control->KetteFeld(2),
                control->BlobFeld(1), control->AutowertFeld());
    EXPECT_TOLD("yes|255|no|yes", field(3).IsKette(), field(3).Typ(), field(4).IsKette(),
                control->HatUnicodeFelder());
    EXPECT_TOLD("5|5", field(1).Laenge(), field(5).Laenge()) << "columns of pointers";
    EXPECT_TOLD("49|55|2|1|2", field(9).Position(), control->SatzLaenge(), control->Seiten(),
                field(2).Seite(), field(9).Seite());
    EXPECT_TOLD("2|8", control->Indizes(), control->Index(2)) << "the autowert field had no index of its own";

    const auto chain = control->Kette(3);
    ASSERT_TRUE(chain);
    EXPECT_EQ(chain, control->Kette(3)) << "opened once";
    EXPECT_EQ(chain->Typ(), ControlTyp_Kette);
    EXPECT_TOLD("3|10|5|14|50|5", chain->Anker(), chain->VorLaenge(), chain->PointerLaenge(),
                chain->GesamtSatzLaenge(), chain->MaxRecords(), control->Kette(2)->PointerLaenge());
    for (const int32 none : {4, 99}) EXPECT_EQ(control->Kette(none), nullptr);
    EXPECT_TRUE(shown().empty());
}

TEST_F(ControlReading, FaultsOfTheStructureAreShownAndReadingGoesOn) {
    const auto control = structure(
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
    EXPECT_TOLD("1|4|2|4|0|0|0", control->FeldNummer(u"NAME"), control->Indizes(), control->Index(2, 2),
                control->Index(4), control->Index(3, 1), control->Index(3, 2), control->Index(3, 3))
        << "the first entry stays";
    const Text dir = u" von /daten/Kunden.DBD";
    const Text fault = u"Konfigurationsfehler|";
    const Text wrong = fault + u"Falscher Index in Control.tsd" + dir;
    const Text missing =
        u"clsControl.Oeffne|In der Datenbank \"/daten/Kunden.DBD\" fehlt die Datei "
        u"\"KetteCtl.003\".\r\n\r\nBitte setzen Sie sich mit der Hotline in Verbindung, da Sie nicht "
        u"auf alle Daten der Datenbank zugreifen können.";
    EXPECT_EQ(shown(),
              (std::vector<Text>{missing, fault + u"Doppelter Name in Control" + dir + u" bei Feld 2",
                                 fault + u"Doppelte Indizes in Control.tsd" + dir, wrong, wrong, wrong}));
}

TEST_F(ControlReading, IndexesChangeInMemory) {
    const auto control = structure(kExample);
    EXPECT_TRUE(control->IndexHinzu(2, 1));
    for (const auto& [first, second, third] : {std::tuple{0, 0, 0}, {4, 0, 0}, {1, -1, 0}, {1, 0, 4}})
        EXPECT_FALSE(control->IndexHinzu(first, second, third));
    EXPECT_TOLD("2|no|no|yes|2", control->Indizes(), control->IndexWeg(0), control->IndexWeg(3),
                control->IndexWeg(1), control->Index(1));
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
        {"binary", "\0\xFF\x01,5\n\0\0\0\x80"s},
        {"32-bit text", "\xFF\xFE\0\0T\0\0\0"s}};
    for (const auto& [what, bytes] : rows) EXPECT_FALSE(openedText(bytes)) << what;
    EXPECT_FALSE(opened(u"Fehlt.tsd"));
    EXPECT_FALSE(std::make_shared<clsControl>(topic)->Oeffne(kDir)) << "a folder";
    EXPECT_TRUE(shown().empty());

    // A memo states the length of its blocks, which do not lie in the record.
    ASSERT_TRUE(openedText("TS1,1\r\n0,1,1,40000,22,\"A\"\r\n"));
    const auto widest = structure("TS1,9999\r\n" + repeated("0,1,1,32767,1025,A\r\n", 9999));
    EXPECT_EQ(widest->SatzLaenge(), 9999 * 32767 * 2);
}

}  // namespace
}  // namespace tsRtm::test
