// Addresses: their lines, countries, and what of them comes onto paper.
#include "tsRtm/addresses/Adresse.hpp"

#include "tests/printing/PaperDouble.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/OptionsTopic.hpp"
#include "tsRtm/printing/Druck.hpp"

namespace tsRtm::test {
namespace {

class Addresses : public ::testing::Test {
 protected:
    Addresses() {
        address.Vorname(u"Eva ");
        address.Name1(u"Muster  ");
        address.Strasse(u"Weg 1 ");
    }

    StartedLibrary library;
    PaperDouble paper;
    MessagesTopic messages;
    Adresse address;
};

TEST_F(Addresses, KnowCountriesByTheSignBeforeTheCode) {
    const std::tuple<TextView, TextView, TextView, TextView> cases[] = {
        {u"A-1010 Wien", u"ÖSTERREICH", u"ÖSTERREICH", u"A-1010 Wien"},
        {u"CH 8000 Zürich", u"SCHWEIZ", u"SCHWEIZ", u"CH 8000 Zürich"},
        {u"GBA - GY9 Alderney", u"ALDERNEY", u"ALDERNEY", u"GBA - GY9 Alderney"},
        {u"D-52062 Aachen", u"", u"52062 Aachen", u"D-52062 Aachen"},
        {u"Köln", u"", u"Köln", u"Köln"},
        {u"XY-12345 Ort", u"", u"12345 Ort", u"XY-12345 Ort"},
        {u"52062  Aachen", u"", u"52062  Aachen", u"Aachen"},
        {u"gb-1 Ort", u"GROßBRITANNIEN", u"GROßBRITANNIEN", u"gb-1 Ort"},
    };
    for (const auto& [line, country, last, place] : cases) {
        address.PLZOrt(line);
        EXPECT_EQ(address.Land(), country) << toUtf8(line);
        EXPECT_EQ(address.DruckZeile(address.Zeilen()), last) << toUtf8(line);
        EXPECT_EQ(address.OrtsName(), place);
    }
    address.PLZOrt(u"A-1010 Wien");
    EXPECT_EQ(address.DruckZeile(3), u"1010 WIEN");
}

TEST_F(Addresses, MakeTheirBlockWhenItChanged) {
    address.PLZOrt(u"10001 New York");
    EXPECT_EQ(address.AdressBlock(), u"Eva Muster\r\nWeg 1\r\n10001 New York");
    address.Land(u"Usa");
    EXPECT_EQ(address.Zeilen(), 3);  // it does not touch the block
    address.Zusatz(u"Hof");
    EXPECT_EQ(address.AdressBlock(), u"Eva Muster\r\nHof\r\nWeg 1\r\n10001 NEW YORK\r\nUsa");
    EXPECT_EQ(address.DruckZeile(0) + address.DruckZeile(9), u"");
    address.Name2(u"GmbH");
    EXPECT_EQ(address.NameKomplett() + address.NameKomplett(true), u"Muster, GmbHMuster GmbH");
    EXPECT_EQ(address.Adr1Zeile(), u"Muster GmbH, Hof, Weg 1, 10001 New York");
    address.IBAN(u"DE1");
    address.BIC(u"XX");
    EXPECT_EQ(address.Bankverbindung(), u" Konto DE1 XX");
    address.Property(u"k", u"1");
    address.Property(u"", u"2");
    const auto copy = address.Clone();
    address.Property(u"k", u"3");
    EXPECT_EQ(copy->Property(u"k") + copy->Property(u""), u"1");
    address.Name1(u"");
    EXPECT_EQ(address.Zeilen(), 0);
}

TEST_F(Addresses, FillTheWindowOfAnEnvelope) {
    Druck job(messages);
    const auto print = [&](TextView hint, eEckTyp corners, const Adresse* sender) {
        job.Init(72, 1, 1, u"A4");
        address.Drucken(&job, 40, 20, 12, u"Einschreiben", u"", sender, corners, hint);
        job.Ausgabe();
        std::string text;
        for (const auto& line : drawnOn(job.Page(1))) text += line + "|";
        return text;
    };
    address.AdrAnrede(u"Frau");
    address.PLZOrt(u"A-1010 Wien");
    // A letter of 12 points is 720 twips wide: the line of 82 mm has room for six.
    EXPECT_EQ(print(u"", eKeineEcken, nullptr).find("Frau"), std::string::npos);
    const auto first = print(u"", eGanzerRahmen, nullptr);
    EXPECT_HOLDS(first, "shape 1134,2268 5953,2268 5953,4535 1134,4535|", "ÖSTERREICH");
    OptionsTopic().RegSchreiben(HKEY_CURRENT_USER, u"App", u"PrintAdrSchuldner", u"0");
    rtmMain::state().appProgID = u"App";
    EXPECT_EQ(print(u"schuldner", eKreuz, nullptr).find("schuldner"), std::string::npos);
    const auto hint = print(u"Gläubiger", eKeineEcken, &address);
    EXPECT_HOLDS(hint, "font Arial 160 bold @900|", "Gläubiger", "Einschreiben",
                 "font Arial 140 underlined|1304,2437 Muster, Weg 1, A-1010 Wien");
    address.DruckenKompakt(nullptr, 0, 0, 0);
}

TEST_F(Addresses, BecomeSmallerUntilTheyFit) {
    Druck job(messages);
    const auto sizes = [&](int32 lines) {
        Text extra = u"x";
        for (int32 n = 1; n < lines; ++n) extra += u"\rx";
        address.Zusatz(extra);
        job.Init(72, 1, 1, u"A4");
        address.Drucken(&job, 40, 20);
        return job.FontSize();
    };
    EXPECT_TOLD("12|12|10|10", sizes(1), sizes(3), sizes(4), sizes(30));
    EXPECT_GT(address.DruckenKompakt(&job, 0, 0, 0, 12, 40.0), 0);
}

}  // namespace
}  // namespace tsRtm::test
