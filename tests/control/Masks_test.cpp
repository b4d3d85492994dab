// Masks, files by the name of a database, and references to objects.
#include "tests/control/ControlTest.hpp"
#include "tsRtm/control/clsCTL.hpp"
#include "tsRtm/control/clsMasken.hpp"

namespace tsRtm::test {
namespace {

using Masks = FieldsTest;

TEST_F(Masks, AreListedOnceAndOpenedByNumberOrName) {
    write(u"Kopf.MASKE",
          "TS1,3\r\n0,1,1,8,1,name,\"A@@7X\"\r\n0,2,1,8,1,2,\"B@@7X\"\r\n0,3,1,8,1,FEHLT,\"C\"\r\n");
    write(u"alt.maske", "1\r\n0,1,1,8,1,1,\"Stra\xE1\x65\"\r\n");
    write(u"Anderes.txt", "");
    const auto control = structure(kExample);
    const auto masks = control->Masken();
    ASSERT_EQ(masks->Count(), 2);
    write(u"Neu.MASKE", "TS1,0\r\n");
    EXPECT_EQ(masks->Count(), 2) << "the list is read once";
    const TextView names[] = {u"", u"alt", u"Kopf", u""};
    for (int32 n = 0; n <= 3; ++n) EXPECT_EQ(masks->Name(n), names[n]) << n;

    const auto head = control->Maske(2);
    ASSERT_TRUE(head);
    EXPECT_EQ(head->Typ(), ControlTyp_Maske);
    EXPECT_TOLD("3|1|name|2|-1|0", head->Felder(), head->field(1).DBFeld(), head->field(1).DBFeldName(),
                head->field(2).DBFeld(), head->field(3).DBFeld(), head->Indizes());
    EXPECT_EQ(head->FeldNummer(u"x"), 1) << "names may stand twice in a mask";
    EXPECT_EQ(control->Maske(u"alt")->field(1).Titel(), u"Straße") << "older masks are in the DOS code page";
    for (const TextView name : {u"kopf", u"Kopf.MASKE", u"Kopf.maske", u"Neu"})
        EXPECT_TRUE(control->Maske(name));
    for (const Variant& none : {Variant(u"Fehlt"), Variant(u""), Variant(3), Variant()})
        EXPECT_FALSE(control->Maske(none));
    EXPECT_TRUE(shown().empty());
}

TEST_F(Masks, OutliveTheirDatabase) {
    write(u"Kopf.MASKE", "TS1,1\r\n0,1,1,8,1,NAME,\"A\"\r\n");
    auto control = openedText(kExample);
    const auto masks = control->Masken();
    control.reset();
    const auto head = masks->Maske(u"Kopf");
    ASSERT_TRUE(head);
    EXPECT_EQ(head->field(1).DBFeld(), 0) << "no parent to ask";
}

TEST_F(Masks, AHiddenMaskFieldIsAChainByItsDatabaseField) {
    write(u"KetteCtl.007", "TS1,1\r\n0,1,1,4,1,\"K\"\r\n1,50,0\r\n");
    write(u"Kopf.MASKE", "TS1,1\r\n0,1,1,10,255,7,\"A\"\r\n");
    const auto mask = opened(u"Kopf.MASKE");
    ASSERT_TRUE(mask);
    EXPECT_TRUE(mask->field(1).IsKette());
    const auto chain = mask->Kette(1);
    ASSERT_TRUE(chain);
    EXPECT_EQ(chain->Anker(), 7);
}

TEST_F(Masks, ControlsOpenByTheNameOfADatabaseOrAFile) {
    clsCTL ctl(topic);
    files.put(u"/daten/Kunden.CTL", "1\r\n0,1,1,8,38,\"Stra\xE1\x65\"\r\n");
    TSIOArray fields;
    bool nichtAnsi = false;
    EXPECT_EQ(ctl.ReadCtl(u"/daten/Kunden", fields, nichtAnsi), 1);
    ASSERT_EQ(fields.size(), 1u);
    EXPECT_TOLD("Straße|yes", fields[0]->Titel(), nichtAnsi);
    EXPECT_TRUE(shown().empty()) << "a file that stands alone has no chain files";

    write(u"Control.tsd", kExample);
    EXPECT_EQ(ctl.ReadCtl(u"/daten/Kunden", fields, nichtAnsi), 3);
    EXPECT_FALSE(nichtAnsi);
    EXPECT_EQ(ctl.OpenControl(u"/daten/Kunden")->Name(), u"Control");
    EXPECT_EQ(ctl.ReadCtl(u"/daten/Fehlt", fields, nichtAnsi), 0);
    EXPECT_TRUE(fields.empty());
    EXPECT_FALSE(ctl.OpenControl(u"/daten/Fehlt"));
}

TEST_F(Masks, FieldsReferToObjects) {
    const auto control = structure(
        "TS1,5\r\n"
        "0,1,1,8,1,\"A@@7A:Adresse(1).Name, Adresse(3).Ort\"\r\n"
        "0,1,1,8,1,\"B@@7B:adresse.Land,Adresse(9).X\"\r\n"
        "0,1,1,8,1,\"C@@7C:Konto(2).BLZ\"\r\n"
        "0,1,1,8,1,\"D@@7D:Konto(x).Nr\"\r\n"
        "0,1,1,8,1,\"E@@7E\"\r\n"
        "1,1,0\r\n");
    // An entry without an index ends the scan of its field.
    EXPECT_TOLD("3|2|-1", control->ObjectCount(u"Adresse"), control->ObjectCount(u"konto"),
                control->ObjectCount(u"Fehlt"));
    std::vector<int32> fields{99};
    std::vector<Text> properties{u"alt"};
    EXPECT_TOLD("2|1,2|ORT,LAND", control->ObjectFelder(u"adresse", 3, fields, properties), fields,
                properties);
    EXPECT_TOLD("0|", control->ObjectFelder(u"Fehlt", 1, fields, properties), fields);
    // The last is one past the last field.
    EXPECT_TOLD("2|3|4|6", control->ValueFeld(u"Adresse", 7), control->ValueFeld(u"Konto", 2),
                control->ValueFeld(u"Konto", 5), control->ValueFeld(u"Fehlt", 1));
}

}  // namespace
}  // namespace tsRtm::test
