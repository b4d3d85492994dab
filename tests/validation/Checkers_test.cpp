// The built-in checkers, each by its grades and texts.
#include <gtest/gtest.h>

#include "tests/support/TestGround.hpp"
#include "tests/support/ValidationForm.hpp"
#include "tsRtm/frame/state/Plugged.hpp"
#include "tsRtm/services/clsTSCrypt.hpp"
#include "tsRtm/validation/clsValidBanking.hpp"
#include "tsRtm/validation/clsValidDate.hpp"
#include "tsRtm/validation/clsValidEAdr.hpp"
#include "tsRtm/validation/clsValidLike.hpp"
#include "tsRtm/validation/clsValidValue.hpp"

namespace tsRtm::test {
namespace {

class Checkers : public ::testing::Test {
 protected:
    Checkers() { library.ground.clock.set(Date::of(2024, 6, 15)); }
    ~Checkers() override { rtmMain::plugged().bankRegister.reset(); }

    static Text shortText(const iValidChecker& checker) { return checker.ErrorMsg(); }
    static eValidResult check(iValidChecker& checker, TextView value) {
        return checker.Check(nullptr, value);
    }

    StartedLibrary library;
    std::shared_ptr<TestControl> control = std::make_shared<TestControl>(u"Feld");
};

TEST_F(Checkers, NumbersAreReadAsFarAsTheyGo) {
    const std::pair<TextView, float64> cases[] = {{u"12,5", 12.5}, {u"12.5", 12.5},   {u"12abc", 12},
                                                  {u"abc", 0},     {u"  ", 0},        {u"1.234,50", 1.234},
                                                  {u"1 234", 1},   {u"-3,5e2", -350}, {u"", 0}};
    for (const auto& [text, number] : cases) EXPECT_EQ(clsValidValue::NumberOf(text), number) << toUtf8(text);
}

TEST_F(Checkers, NumbersWithinLimits) {
    clsValidValue value;
    EXPECT_EQ(check(value, u"-1e308"), validOK);
    EXPECT_EQ(shortText(value), u"Nur Werte");
    value.Minimum(1.5);
    EXPECT_EQ(shortText(value), u"Nur Werte von 1,5");
    value.Maximum(1000000);
    EXPECT_EQ(shortText(value), u"Nur Werte von 1,5 bis 1000000");
    EXPECT_EQ(value.Msg(), shortText(value));
    EXPECT_EQ(check(value, u"1,5"), validOK);
    EXPECT_EQ(check(value, u"1,4"), validWarning);
    EXPECT_EQ(check(value, {}), validOK);
    value.Options(voRequired | voError);
    EXPECT_EQ(check(value, {}), validError);
    EXPECT_EQ(shortText(value), u"Es ist eine Eingabe notwendig");
    EXPECT_EQ(check(value, u"2000000"), validError);
    EXPECT_EQ(shortText(value), u"Nur Werte von 1,5 bis 1000000");

    value.Options(voSpecial);
    EXPECT_EQ(value.Check(control, u"123"), validWarning);  // has no MaxLength
    control->maxLength = 3;
    EXPECT_EQ(value.Check(control, u"123"), validOK);
    EXPECT_EQ(value.Check(control, {}), validWarning);
    EXPECT_EQ(shortText(value), u"Das Feld muss ausgefüllt sein");
    control->decimals = 2;
    EXPECT_EQ(value.Check(control, u"1"), validWarning);
    EXPECT_EQ(value.Decimals(), 2);
    value.ErrorMsg(u"Falsch");
    value.Description(u"Weil es so ist");
    EXPECT_EQ(value.Check(control, {}), validWarning);
    EXPECT_EQ(shortText(value), u"Falsch");
    EXPECT_EQ(value.Msg(), u"Weil es so ist");
}

TEST_F(Checkers, TextsByPattern) {
    clsValidLike like;
    like.Pattern(u"^[a-c]+$");
    EXPECT_EQ(check(like, u"abc"), validOK);
    EXPECT_EQ(check(like, u"ABC"), validWarning);
    EXPECT_EQ(shortText(like), u"Die Eingabe entspricht nicht der Vorgabe für dieses Feld.");
    EXPECT_EQ(like.Msg(), shortText(like) + u" Der reguläre Ausdruck für die Prüfung lautet: ^[a-c]+$");
    like.Options(loIgnoreCase | voError | voRequired);
    EXPECT_EQ(check(like, u"ABC"), validOK);
    EXPECT_EQ(check(like, {}), validError);
    like.Options(loLike);
    EXPECT_EQ(check(like, u"^[a-c]+$"), validWarning);
    like.Pattern(u"[a-c]*#");
    EXPECT_EQ(check(like, u"Bx7"), validOK);
    like.Options(loRegExp);
    like.Pattern(u"(");
    EXPECT_EQ(check(like, u"("), validWarning);
    like.ErrorMsg(u"Nein");
    EXPECT_EQ(like.Msg(), u"Nein Der reguläre Ausdruck für die Prüfung lautet: (");
}

TEST_F(Checkers, DatesByLimitsAndDays) {
    struct Case {
        int32 options;
        TextView value;
        eValidResult grade;
        TextView text;
    };
    const Case cases[] = {
        {datAllDays, u"", validOK, u""},
        {voRequired, u"", validError, u"Es muss ein Datum eingegeben werden"},
        {datAllDays, u"01.02.2024", validError, u"Das Datum ist unvollständig"},
        {datAllDays, u"29022023", validError, u"Die Eingabe ist kein gültiges Datum"},
        {datAllDays, u"29022024", validOK, u""},
        {datAllDays, u"01.02.24", validOK, u""},
        {datAllDays, u"31.02.24", validOK, u""},  // is cut to the 29th before it is looked at
        {datMoBisFr, u"15062024", validWarning, u"Der Wochentag ist ungültig"},
        {datMoBisFr | datDayCritical, u"15062024", validError, u"Der Wochentag ist ungültig"},
        {datMoBisSa, u"15062024", validOK, u""},
        {datMoBisSa, u"16062024", validWarning, u"Der Wochentag ist ungültig"},
        {datSaUndSo, u"14062024", validWarning, u"Der Wochentag ist ungültig"},
        {datWerktag, u"01042024", validWarning, u"Das Datum ist ein Feiertag (Ostermontag)"},
        {datWerktag, u"251224", validWarning, u"Das Datum ist ein Feiertag (1. Weihnachtstag)"},
        {datWerktag | datDayCritical, u"01042024", validError, u"Das Datum ist ein Feiertag (Ostermontag)"},
        {datNichtSUF, u"15062024", validOK, u""},
        {datNichtWerktag, u"01042024", validWarning, u"Der Wochentag ist ungültig"},
        {datNichtWerktag, u"15062024", validWarning, u"Das Datum ist ein Feiertag ()"},
        {datSonnUndFeiertag, u"19052024", validOK, u""},  // Whitsun
    };
    for (const auto& [options, value, grade, text] : cases) {
        clsValidDate date;
        date.Options(options);
        EXPECT_EQ(check(date, value), grade) << options << " " << toUtf8(value);
        EXPECT_EQ(toUtf8(shortText(date)), toUtf8(text)) << options << " " << toUtf8(value);
    }

    clsValidDate date;
    date.Minimum(u"D-30");
    date.Maximum(u"01072024");
    EXPECT_EQ(date.Minimum(), u"16052024");
    EXPECT_EQ(check(date, u"16052024"), validOK);
    EXPECT_EQ(check(date, u"010724"), validOK);
    for (const TextView outside : {u"15052024", u"02072024"}) EXPECT_EQ(check(date, outside), validWarning);
    EXPECT_EQ(date.Msg(),
              u"Das Datum liegt außerhalb des zugelassenen Bereichs ab dem 16.05.2024 bis zum 01.07.2024");
    date.Options(voError | datMoBisFr);
    EXPECT_EQ(check(date, u"02072024"), validError);
    EXPECT_EQ(check(date, u"06072024"), validWarning);
    EXPECT_TRUE(date.Msg().ends_with(u"Montag bis Freitag."));
    date.Minimum({});
    EXPECT_EQ(date.Minimum(), u"");
}

TEST_F(Checkers, AddressesOfMailAndMailboxes) {
    const Text box = u"DE.Justiz.01234567-89ab-cdef-0123-456889abcdef.";
    clsTSCrypt crypt;
    const Text digits =
        lower(crypt.TextToHex(crypt.GetHash(lower(TextView(box).substr(0, box.size() - 1)), CALG_SHA256)))
            .substr(0, 4);
    struct Case {
        Text value;
        bool mail, egvp, either;  // passes in the mode
    };
    const Case cases[] = {
        {u"name@server.xx", true, false, true},
        {u"n.a+b@a1.b-2.info", true, false, true},
        {u"name@s.xx", false, false, false},
        {u"name@server", false, false, false},
        {u"name@server.xx\n", false, false, false},
        {u"näme@server.xx", false, false, true},  // here it may begin anywhere
        {u"safe-sp1-1-1", false, true, true},
        {u"safe-st1-1-1 and more", false, true, true},
        {u"safe-prod-x", false, false, false},
        {u"govello-12-34", false, true, true},
        {box + digits, false, true, true},
        {box + upper(digits), false, true, true},
        {box + (digits == u"0000" ? u"0001" : u"0000"), false, false, false},
        {u"x" + box + u"0000", false, true, true},  // its third character is no point: nothing is tested
        {upper(box) + digits, false, false, false},
    };
    for (const auto& [value, mail, egvp, either] : cases)
        for (int32 mode = 0; mode < 4; ++mode) {
            clsValidEAdr address;
            if (mode > 0) address.Options(mode | voError);
            const bool passes = mode == eaEMail ? mail : mode == eaEGVP ? egvp : either;
            EXPECT_EQ(check(address, value), passes     ? validOK
                                             : mode > 0 ? validError
                                                        : validWarning)
                << mode << " " << toUtf8(value);
        }
    clsValidEAdr address;
    EXPECT_EQ(shortText(address), u"Keine gültige eMail-Adresse");
    EXPECT_TRUE(address.Msg().ends_with(u"nach dem Muster \"name@server.xxx\"."));
    address.Options(eaEGVP | voRequired);
    EXPECT_EQ(check(address, {}), validWarning);
    EXPECT_EQ(shortText(address), u"Keine gültige EGVP-Adresse");
    EXPECT_EQ(check(address, box + (digits == u"0000" ? u"0001" : u"0000")), validWarning);
    EXPECT_EQ(shortText(address), u"Prüfziffer ist nicht korrekt");
    EXPECT_TRUE(address.Msg().starts_with(u"Die Prüfziffer (die letzten 4 Stellen)"));
    // The worst that these patterns can be given: long runs of what a name may hold.
    for (const Text& long_ :
         {Text(4096, u'a'), u"a@" + Text(4094, u'a'), Text(2048, u'@') + Text(2048, u'a')})
        EXPECT_EQ(check(address, long_), validWarning);
}

TEST_F(Checkers, AnIBANIsRefusedWithItsReason) {
    const std::pair<TextView, TextView> cases[] = {
        {u"DE68210501700012345678", u""},
        {u"GB29NWBK60161331926819", u""},
        {u"", u"Eine IBAN muss mindestens des Ländercode, die Prüfziffern und die Kontodaten enthalten."},
        {u"DE68", u"Eine IBAN muss mindestens des Ländercode, die Prüfziffern und die Kontodaten enthalten."},
        {u"de68210501700012345678", u"Mit dem Ländercode de ist kein SEPA-Zahlungsverkehr möglich."},
        {u"DE68 2105 0170 0012 3456 78", u"Beim Ländercode DE muss die IBAN 22 Stellen lang sein."},
        {u"E!123", u"Beim Ländercode E! muss die IBAN 6 Stellen lang sein."},
        {u"DE67210501700012345678",
         u"Die Prüfziffern passen nicht zur IBAN, \"68\" wären die passenden Prüfziffern."},
        {u"DE2D370400440000000024",
         u"Die Prüfziffern passen nicht zur IBAN, \"02\" wären die passenden Prüfziffern."},
        {u"DE1221050170001234567A",
         u"Beim Ländercode DE besteht die IBAN nach dem Ländercode nur aus Ziffern."},
    };
    clsValidBanking banking;
    for (auto [iban, message] : cases) {
        Text value(iban);
        if (value.ends_with(u'A')) {  // with the digits that belong to it
            bool onlyDigits = true;
            value.replace(2, 2, toText(clsValidBanking::PZIBAN(value, onlyDigits) + 100).substr(1));
            EXPECT_FALSE(onlyDigits);
        }
        EXPECT_EQ(banking.CheckIBAN(value), message.empty()) << toUtf8(value);
        EXPECT_EQ(toUtf8(banking.ErrorMsg()), toUtf8(message)) << toUtf8(value);
    }
}

TEST_F(Checkers, BankingByModeWithAndWithoutRegister) {
    auto banks = std::make_shared<TestBanks>();
    banks->known = {{u"21050170", true}, {u"DEUTDEFFXXX", true}};
    struct Case {
        int32 options;
        TextView value;
        bool form, known;  // passes without the register, and with it
        TextView text;
    };
    const Case cases[] = {
        {btKontoDE, u"1234567890", true, true, u""},
        {btKontoDE, u"12345678901", false, false, u"Sie haben keine gültige Kontonummer eingegeben."},
        {btKontoDE, u"12 34", false, false, u"Sie haben keine gültige Kontonummer eingegeben."},
        {btKontoDE, u"DE68210501700012345678", false, false,
         u"Sie haben keine gültige Kontonummer eingegeben."},
        {btKontoOrIBAN, u"1234567890", true, true, u""},
        {btKontoOrIBAN, u"12345678901", false, false,
         u"Sie haben keine gültige Kontonummer bzw. IBAN eingegeben."},
        {btKontoOrIBAN, u"DE68210501700012345678", true, true, u""},
        {btIBAN, u"1", false, false, u"Sie haben keine gültige IBAN eingegeben."},
        {btIBAN, u"DE89370400440532013000", true, false, u"Die Bank zu dieser IBAN wurde nicht gefunden."},
        {btIBAN, u"GB29NWBK60161331926819", true, true, u""},
        {btBLZDE, u"21050170", true, true, u""},
        {btBLZDE, u"10000000", true, false, u"Die Bankleitzahl wurde nicht gefunden."},
        {btBLZDE, u"09000000", false, false, u"Sie haben keine gültige Bankleitzahl eingegeben."},
        {btBLZDE, u"90000000", false, false, u"Sie haben keine gültige Bankleitzahl eingegeben."},
        {btBLZDE | voRequired, u"", false, false, u"Sie haben keine gültige Bankleitzahl eingegeben."},
        {btBIC, u"DEUTDEFF", true, true, u""},
        {btBIC, u"ABCDDEFF", true, false, u"Sie haben keinen gültigen BIC eingegeben."},
        {btBIC, u"deutdeff", true, true, u""},  // of no German bank
        {btBIC, u"21050170", false, false, u"Sie haben keinen gültigen BIC eingegeben."},
        {btBIC, u"DEUTDEFFX", false, false, u"Sie haben keinen gültigen BIC eingegeben."},
        {btBLZBIC, u"21050170", true, true, u""},
        {btBLZBIC, u"2105017", false, false, u"Sie haben keinen gültigen BIC eingegeben."},
        {btBLZBIC, u"DEUTDEFF", true, true, u""},
        {0, u"1", false, false, u""},
        {voMode, u"1", false, false, u""},
        {0, u"", true, true, u""},
    };
    for (const bool withBanks : {false, true})
        for (const auto& [options, value, form, known, text] : cases) {
            rtmMain::plugged().bankRegister = withBanks ? banks : nullptr;
            const bool passes = withBanks ? known : form;
            clsValidBanking banking;
            banking.Options(options);
            EXPECT_EQ(check(banking, value), passes ? validOK : validWarning)
                << options << " " << toUtf8(value);
            if (!passes) {
                EXPECT_EQ(toUtf8(shortText(banking)), toUtf8(text)) << options << " " << toUtf8(value);
            }
        }
    banks->open = false;  // as if there were none
    clsValidBanking banking;
    banking.Options(btBLZDE | voError);
    EXPECT_EQ(check(banking, u"10000000"), validOK);
    banking.ErrorMsg(u"Eigener Text");
    EXPECT_EQ(shortText(banking), u"Eigener Text");
    EXPECT_EQ(check(banking, u"1"), validError);
    EXPECT_NE(shortText(banking), u"Eigener Text") << "lives until the first check";
    EXPECT_TRUE(banking.Msg().starts_with(u"In Deutschland bestehen Bankleitzahlen aus genau 8 Ziffern"));
    banking.Options(btKontoOrIBAN);
    EXPECT_TRUE(banking.Msg().ends_with(u"Unterkontonummer 00 angehängt werden!"));
    EXPECT_NE(banking.Msg().find(u"Leerstellen.\rEine IBAN beginnt"), Text::npos);
}

TEST_F(Checkers, AnyTextGetsAGrade) {
    std::vector<std::unique_ptr<iValidChecker>> all;
    all.push_back(std::make_unique<clsValidValue>());
    for (int32 mode = 0; mode < 8; ++mode) {
        all.push_back(std::make_unique<clsValidBanking>());
        dynamic_cast<iValidStd&>(*all.back()).Options(mode);
        all.push_back(std::make_unique<clsValidDate>());
        dynamic_cast<iValidStd&>(*all.back()).Options(mode);
        all.push_back(std::make_unique<clsValidEAdr>());
        dynamic_cast<iValidStd&>(*all.back()).Options(mode);
    }
    for (const Text& value :
         {Text(1 << 20, u'9'), Text(1 << 20, u'@'), Text(8, u'\0'), Text(u"\xD800\xDC00\xD800"),
          Text(u"DE٣٤٥٦"), Text(u"--------"), Text(u"D"), Text(u"..@..")})
        for (const auto& checker : all) {
            const auto grade = check(*checker, value);
            EXPECT_TRUE(grade >= validOK && grade <= validError);
            static_cast<void>(shortText(*checker));
            static_cast<void>(checker->Msg());
        }
}

}  // namespace
}  // namespace tsRtm::test
