// Fields and records of payment files, byte by byte, and the rules of the kinds of payment that no public
// object can become.
#include <cmath>
#include <limits>

#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/banking/payments/EndRecords.hpp"
#include "tsRtm/banking/payments/OrderRecord.hpp"

namespace tsRtm::payments {
namespace {

class Records : public ::testing::Test {
 protected:
    static OrderRecord order() {
        OrderRecord order;
        order.bic(u"DEUTDEFFXXX");
        order.iban(u"DE89370400440532013000");
        order.amount(12.5);
        return order;
    }
    test::StartedLibrary library;
};

TEST_F(Records, TextsBecomeWhatAPaymentMayHold) {
    const std::pair<TextView, BytesView> cases[] = {{u"Müller & Söhne", "MUELLER  SOEHNE"},
                                                    {u"ß ẞ ÄÖÜ äöü", "SS SS AEOEUE AEOEUE"},
                                                    {u"Cafe\u0301 Café", "CAFE CAF"},
                                                    {u"U\u0308ber o\u0308", "UEBER OE"},
                                                    {u"a.b,c-d/e+f", "A.B,C-D/E+F"},
                                                    {u"x\r\n\t\"'_*:;#€ſıα", "X"},
                                                    {u"  9 ", "  9 "},
                                                    {u"", ""}};
    for (const auto& [text, kept] : cases) EXPECT_EQ(normalised(text), kept) << toUtf8(text);
}

TEST_F(Records, FieldsAreFilledOrCut) {
    const std::tuple<BytesView, FieldForm, BytesView> cases[] = {
        {"AB", {4, false, true}, "AB  "}, {"AB", {4, false, false}, "  AB"},  {"5", {3, true, true}, "500"},
        {"12", {4, true, false}, "0012"}, {"ABCDE", {3, true, false}, "ABC"}, {"", {2, true, false}, "00"},
        {"", {0, true, false}, ""}};
    for (const auto& [value, form, field] : cases) {
        Bytes out = "|";
        appendField(value, form, out);
        EXPECT_EQ(out, "|" + Bytes(field));
    }
}

TEST_F(Records, AnAmountStandsInEurosAndCents) {
    constexpr auto kNaN = std::numeric_limits<float64>::quiet_NaN();
    const std::pair<float64, BytesView> cases[] = {
        {12.05, "12|5|00000000000012500"},        {12.5, "12|50|00000000000012500"},
        {0.999, "0|100|00000000000000100"},       {0.125, "0|12|00000000000000120"},
        {-5, "-5|0|000000000000-5000"},           {0, "0|0|00000000000000000"},
        {3e9, "2147483647|0|00002147483647000"},  {-3e9, "-2147483648|0|000-2147483648000"},
        {kNaN, "2147483647|0|00002147483647000"},
    };
    for (const auto& [amount, told] : cases) {
        OrderRecord record;
        record.amount(amount);
        Bytes file;
        record.append(file);
        EXPECT_TOLD(told, record.values[oBetragVor], record.values[oBetragNach], file.substr(458, 17))
            << amount;
    }
    OrderRecord record;
    EXPECT_EQ(record.amount(), 0);
    record.amount(12.05);
    EXPECT_DOUBLE_EQ(record.amount(), 12.05);
}

TEST_F(Records, AnOrderIsWrittenByteByByte) {
    OrderRecord record = order();
    HeaderRecord header(Date::of(2024, 12, 31));
    header.values.set(hBLZ, u"37040044");
    header.values.set(hKontonummer, u"123456789012");
    record.takeFrom(header);
    record.values.set(oName1, u"Müller");
    record.values.set(oVerwendungszweck4, Text(40, u'z'));
    EXPECT_EQ(record.errors(), u"");
    Bytes file = "before";
    record.append(file);
    ASSERT_EQ(file.size(), 6 + kOrderRecord);
    const auto at = [&](std::size_t offset, std::size_t size) { return file.substr(6 + offset, size); };
    EXPECT_EQ(at(0, 64) + at(64, 3) + at(207, 3),
              "0768T37040044EUR123456789024123100000000   0000000000DEUTDEFFXXX   DE ");
    EXPECT_EQ(at(210, 70) + at(420, 38), "MUELLER" + Bytes(28, ' ') + "-" + Bytes(34, ' ') +
                                             "/DE89370400440532013000" + Bytes(12, ' ') + "EUR");
    EXPECT_EQ(at(580, 35) + at(615, 37) + at(714, 54),
              Bytes(35, 'Z') + "00000000" + Bytes(25, ' ') + "00130" + Bytes(51, ' ') + "00");
    EXPECT_TOLD("40|-", record.values[oVerwendungszweck4].size(), record.values[oName2]) << "for good";
}

TEST_F(Records, AnOrderIsToldWhatIsWrong) {
    const Text unknown = u"Fehler: Unbekannter LaenderCode!\r\n";
    const Text notAllowed =
        u"Fehler: EU-Standardüberweisung für das im BIC angegebene Land nicht erlaubt!\r\n";
    const Text shortBIC = u"Fehler: EU-Standardueberweisung verlangt eine 11-stellige BIC!\r\n";
    const Text limit = u"Fehler: Betrag darf nicht groesser als 12.500EUR sein!\r\n";
    const auto ibanFault = [](TextView code, TextView rest) {
        return u"Fehler: Für \"" + Text(code) + u"\" muss die IBAN " + Text(rest) +
               u" Stellen lang sein!\r\n";
    };
    const std::tuple<std::function<void(OrderRecord&)>, Text> cases[] = {
        {[](auto& o) { o.amount(12500.99); }, u""},
        {[](auto& o) { o.amount(-1); }, u""},
        {[&](auto& o) { o.amount(12501); }, limit},
        {[&](auto& o) { o.amount(std::nan("")); }, limit},
        {[&](auto& o) { o.bic(u"DEUTDEFF"); }, shortBIC},
        {[&](auto& o) { o.bic(u"deutchffxxx"); }, unknown + notAllowed},
        {[&](auto& o) { o.bic(u""); }, shortBIC},  // an empty country is found
        {[&](auto& o) { o.bic(u"DEUT12FFXXX"); },
         unknown + u"Fehler: BIC muss an den Stellen 5-6 einen ISO-Ländercode haben!\r\n"},
        {[&](auto& o) { o.values.set(oLaenderCode, u"FR"); },
         u"Fehler: Angegebener Laendercode und Laendercode im BIC stimmen nicht überein!\r\n"},
        {[](auto& o) { o.iban(u"de89370400440532013000"); }, u""},
        {[&](auto& o) { o.iban(u"DE89 3704 0044 0532 0130 00"); }, ibanFault(u"DE", u"22")},
        {[&](auto& o) { o.iban(u""); }, ibanFault(u"", u"22")},
        {[&](auto& o) { o.iban(u"E.12"); }, ibanFault(u"E.", u"2")},
        {[&](auto& o) { o.iban(u"E."); }, u"Fehler: Die Prüfziffern  stimmen nicht!\r\n"},
        {[](auto& o) { o.iban(u"CH9300762011623852957"); },
         u"Fehler: \"CH\" ist kein gültiger Ländercode!\r\n"},
        {[](auto& o) { o.iban(u"DE88370400440532013000"); },
         u"Fehler: Die Prüfziffern 88 stimmen nicht!\r\n"},
        {[](auto& o) { o.values.clear(oIBAN); }, u"Fehler: IBAN muss mit / beginnen!\r\n"},
        {[](auto& o) { o.values.set(oEntgeltregelung, u"01"); },
         u"Fehler: EU-Standardüberweisung verlangt den Wert 00 im Feld Entgeltregelung!\r\n"},
    };
    int32 number = 0;
    for (const auto& [change, messages] : cases) {
        OrderRecord record = order();
        change(record);
        EXPECT_EQ(toUtf8(record.errors()), toUtf8(messages)) << "case " << number;
        ++number;
    }
}

TEST_F(Records, AWarningEmptiesItsFieldAndIsToldOnce) {
    OrderRecord record = order();
    for (const auto field : {oBLZE, oKontonummerE, oBankLaenderCode, oOrdervermerk, oBankName1})
        record.values.set(field, u"1");
    const Text messages = record.errors();
    for (const TextView field : {u"BLZ_E", u"Kontonummer_E", u"BankLaenderCode", u"Ordervermerk"})
        EXPECT_HOLDS(messages, u"Warnung: Bei einer EU-Standardüberweisung darf das Feld " + Text(field) +
                                   u" nicht belegt werden!\r\n");
    EXPECT_EQ(record.errors(), u"");
    EXPECT_EQ(record.values[oBankName1], "");
}

TEST_F(Records, TheOtherKindsOfPaymentHaveTheirOwnRules) {
    OrderRecord eue = order();
    eue.values.set(oZahlungsart, u"11");
    eue.values.set(oOrdervermerk, u"x");
    eue.bic(u"DEUTDEFF");
    EXPECT_EQ(toUtf8(eue.errors()),
              "Fehler: EUE-Ueberweisung verlangt eine 11-stellige BIC!\r\n"
              "Warnung: Bei einer EUE-Ueberweisung darf das Feld Ordervermerk nicht belegt werden!\r\n");
    OrderRecord general = order();
    general.values.set(oZahlungsart, u"00");
    general.values.set(oBIC, u"37040044");
    general.values.set(oLaenderCode, u"00");
    EXPECT_HOLDS(general.errors(), u"Die dritte Stelle des BankLaenderCodes");
    EXPECT_EQ(general.values[oBIC], "37040044///");
    general.values.set(oBankLaenderCode, u"DE ");
    general.values.set(oBIC, u"1");
    EXPECT_HOLDS(general.errors(), u"allgemeine Zahlung verlangt eine 11-stellige BIC");
}

TEST_F(Records, AHeaderIsToldWhatIsWrong) {
    const Text replaced = u"FEHLER: Validierung fehlgeschlagen!\r\n13\r\nDer Typ passt nicht\r\n";
    const std::tuple<std::size_t, TextView, Text> cases[] = {
        {hBLZ, u"1234567", u"Fehler: BLZ muss 8-stellig sein.\r\n"},
        {hKontonummer, u"", u"Fehler: Kontonummer darf nur Zahlen enthalten\r\n"},
        {hKontonummer, u"12-3", u"Fehler: Kontonummer darf nur Zahlen enthalten\r\n"},
        {hNummer, u"A", u"Fehler: Laufende Tagesnummer ist nicht numerisch!\r\n"},
        {hNummer, u"100", u"Fehler: Laufende Tagesnummer fällt nicht in den erlaubten Bereich!\r\n"},
        {hExecutionDate, u"300115", u""},  // 15 days on, across the century's years
        {hExecutionDate, u"300116", u"Fehler: Ausführungsdatum liegt zu weit vorne!\r\n"},
        {hExecutionDate, u"291230", u"Fehler: Ausfuehrungsdatum liegt hinter dem heutigen Datum!\r\n"},
        {hExecutionDate, u"991332", replaced},
        {hExecutionDate, u"300229", replaced},
        {hExecutionDate, u"3001", replaced},
    };
    for (const auto& [field, value, messages] : cases) {
        HeaderRecord header(Date::of(2029, 12, 31));
        header.values.set(hBLZ, u"37040044");
        header.values.set(hKontonummer, u"1");
        EXPECT_EQ(header.errors(), u"");
        header.values.set(field, value);
        EXPECT_EQ(toUtf8(header.errors()), toUtf8(messages)) << toUtf8(value);
    }
}

}  // namespace
}  // namespace tsRtm::payments
