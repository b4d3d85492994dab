// Payment files as an application makes them.
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/banking/DtADatei.hpp"
#include "tsRtm/banking/DtAField.hpp"
#include "tsRtm/frame/FilesTopic.hpp"

namespace tsRtm::test {
namespace {

class PaymentFile : public ::testing::Test {
 protected:
    PaymentFile() {
        library.ground.clock.set(Date::of(2024, 12, 30));
        datei = std::make_unique<DtADatei>();
        datei->Pfad(u"/bank");
        auto& header = datei->Header();
        header.BLZ(u"37040044");
        header.Kontonummer(u"532013000");
        header.Name1(u"Büro Müller");
        static_cast<void>(files.makeFolder(u"/bank"));
    }
    std::shared_ptr<DtaAuftrag> order(float64 amount, TextView name = u"Ada") const {
        return datei->Create(u"BNPAFRPPXXX", u"FR1420041010050500013M02606", amount, name, u"", u"Rue 1",
                             u"Paris", u"Rechnung 17");
    }
    MemoryFiles files;
    StartedLibrary library{files};
    std::unique_ptr<DtADatei> datei;
};

TEST_F(PaymentFile, IsWrittenByteByByte) {
    EXPECT_EQ(datei->Add(order(12.5)), u"");
    EXPECT_TOLD("||2", datei->Add(order(100.99)), datei->Add(nullptr), datei->Count());
    EXPECT_DOUBLE_EQ(datei->Summe(), 113.49);
    EXPECT_TOLD("112||DTAZV", datei->ZSumme(), datei->Generate(), datei->DateiName());
    const Bytes bytes = files.dump(u"/bank/DTAZV");
    ASSERT_EQ(bytes.size(), 512U + 2 * 768);
    EXPECT_EQ(bytes.substr(0, 58), "0256Q370400440532013000BUERO MUELLER" + Bytes(22, ' '));
    EXPECT_EQ(bytes.substr(58, 36), "-" + Bytes(34, ' ') + "-");
    EXPECT_EQ(bytes.substr(163, 93), "24123001241230N0000000000" + Bytes(68, ' '));
    EXPECT_EQ(bytes.substr(256, 32), "0768T37040044EUR0532013000241230");
    EXPECT_EQ(bytes.substr(256 + 768 + 458, 17), "00000000000100990");
    EXPECT_EQ(bytes.substr(256 + 2 * 768), "0256Z000000000000112000000000000002" + Bytes(221, ' '));
    EXPECT_EQ(bytes.find_first_not_of("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ .,-/+"), Bytes::npos);
}

TEST_F(PaymentFile, IsWrittenWithItsReportToo) {
    EXPECT_HOLDS(datei->Generate(), u"Gesamtanzahl der Transaktionen ist kleiner/gleich Null!\r\n");
    EXPECT_EQ(files.dump(u"/bank/DTAZV").size(), 512U);

    EXPECT_EQ(datei->Add(order(0.5, u"Fehler GmbH")), u"");
    datei->Header().BLZ(u"1");
    EXPECT_EQ(toUtf8(datei->Generate()),
              "Bei der Validierung des Headers wurde ein Fehler entdeckt!\r\n"
              "Fehler: BLZ muss 8-stellig sein.\r\n"
              "Bei der Validierung vom Footer wurde ein Fehler entdeckt!\r\n"
              "Fehler: Gesamtbetrag ist kleiner/gleich Null!\r\n"
              "Im Ergebnistext wurden Fehler entdeckt!\r\n");
    EXPECT_EQ(files.dump(u"/bank/DTAZV").size(), 512U + 768);
    datei->Item(1)->IBAN(u"DE");
    EXPECT_HOLDS(datei->Generate(),
                 u"Bei der Validierung vom GeldTransfer 1 wurde ein Fehler entdeckt!\r\n"
                 u"Fehler: Für \"DE\"");
}

TEST_F(PaymentFile, StaysAsItWasWhereSomethingFails) {
    datei->Add(order(1));
    EXPECT_EQ(datei->Generate(), u"");
    const Bytes before = files.dump(u"/bank/DTAZV");
    datei->Pfad(u"/fehlt");
    EXPECT_EQ(datei->Generate(), u"Sonstiger Fehler:Pfad nicht gefunden");
    datei->Pfad(u"/bank");
    for (int32 i = 0; i < 3; ++i) {
        datei->Add(order(1));
        datei->Item(datei->Count())->Betrag(1e9);
    }
    EXPECT_EQ(raisedNumber([&] { datei->ZSumme(); }), 6);
    EXPECT_TRUE(datei->Generate().starts_with(u"Sonstiger Fehler:"));
    EXPECT_EQ(files.dump(u"/bank/DTAZV"), before);
}

TEST_F(PaymentFile, OnlyTransfersInOneFormat) {
    EXPECT_EQ(raisedNumber([&] { datei->Typ(dtaLastschriften); }), 380);
    EXPECT_EQ(datei->Typ(), dtaUeberweisungen);
    EXPECT_TOLD("321|SEPA.xml|321|no", raisedNumber([&] { datei->Generate(SEPA); }), datei->DateiName(),
                raisedNumber([&] { datei->Generate(static_cast<eDTAFormat>(2)); }),
                FilesTopic::Exist(u"/bank/SEPA.xml"));
}

TEST_F(PaymentFile, OrdersAreMadeAddedAndFound) {
    const Text purpose = Text(35, u'a') + Text(35, u'b') + Text(35, u'c') + Text(50, u'ß');
    const auto made = datei->Create(u"deutdeff", u"de 1", 0.999, u"ä", u"", u"", u"", purpose);
    EXPECT_TOLD("DEUTDEFF|DE 1|1|AE", made->BIC(), made->IBAN(), made->Betrag(), made->Name1());
    EXPECT_EQ(made->Verwendungszweck1() + made->Verwendungszweck3(), Text(35, u'A') + Text(35, u'C'));
    EXPECT_EQ(made->Verwendungszweck4(), Text(100, u'S'));
    EXPECT_NE(datei->Add(made), u"");
    EXPECT_EQ(datei->Count(), 0);
    EXPECT_TOLD("|5|no", datei->Add(order(5)), datei->Item(1)->Betrag(), datei->Item(0) || datei->Item(2));
}

TEST_F(PaymentFile, AFieldByItself) {
    DtAField field;
    field.FieldName(u"Name");
    field.FieldLength(5);
    field.IsLeftAligned(true);
    field.FieldValue(u"Müller");
    EXPECT_TOLD("MUELLER|MUELL", field.FieldValue(), field.toFileString());
    field.FieldValue(u"7");
    field.FieldCharCompletion(-1);
    const Text left = field.toFileString();
    field.IsLeftAligned(false);
    EXPECT_TOLD("70000|00007", left, field.toFileString());
    field.FieldLength(-1);
    EXPECT_TRUE(field.toFileString().starts_with(u"FEHLER: DtaField korrupt.\r\n5\r\n"));
}

}  // namespace
}  // namespace tsRtm::test
