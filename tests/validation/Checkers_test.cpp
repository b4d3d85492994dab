// The built-in checkers, each by its grades and texts.
#include "tests/support/Table.hpp"
#include "tests/support/TestGround.hpp"
#include "tests/support/Told.hpp"
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
    // Grade and text.
    static std::string told(iValidChecker& checker, TextView value,
                            const std::shared_ptr<TestControl>& control = nullptr) {
        const auto grade = checker.Check(control, value);
        return Told(grade, shortText(checker)).out;
    }

    StartedLibrary library;
    std::shared_ptr<TestControl> control = std::make_shared<TestControl>(u"Feld");
};

TEST_F(Checkers, NumbersAreReadAsFarAsTheyGo) {
    for (const auto& [text, value] :
         table<2>(u"12,5=12.5;12.5=12.5;12abc=12;abc=0;  =0;1.234,50=1.234;1 234=1;-3,5e2=-350;=0", u";"))
        EXPECT_EQ(clsValidValue::NumberOf(text), Val(value)) << toUtf8(text);
}

TEST_F(Checkers, NumbersWithinLimits) {
    clsValidValue value;
    EXPECT_EQ(told(value, u"-1e308"), "0|Nur Werte");
    value.Minimum(1.5);
    EXPECT_EQ(shortText(value), u"Nur Werte von 1,5");
    value.Maximum(1000000);
    const std::string range = "|Nur Werte von 1,5 bis 1000000";
    for (const auto& [text, grade] : {std::pair{u"1,5", "0"}, {u"1,4", "3"}, {u"", "0"}})
        EXPECT_EQ(told(value, text), grade + range);
    EXPECT_EQ(value.Msg(), shortText(value));
    value.Options(voRequired | voError);
    EXPECT_EQ(told(value, {}), "4|Es ist eine Eingabe notwendig");
    EXPECT_EQ(told(value, u"2000000"), "4" + range);

    value.Options(voSpecial);
    EXPECT_EQ(value.Check(control, u"123"), validWarning);  // has no MaxLength
    control->maxLength = 3;
    EXPECT_EQ(value.Check(control, u"123"), validOK);
    EXPECT_EQ(told(value, {}, control), "3|Das Feld muss ausgefüllt sein");
    control->decimals = 2;
    EXPECT_TOLD("3|2", value.Check(control, u"1"), value.Decimals());
    value.ErrorMsg(u"Falsch");
    value.Description(u"Weil es so ist");
    EXPECT_EQ(told(value, {}, control) + toUtf8(value.Msg()), "3|FalschWeil es so ist");
}

TEST_F(Checkers, TextsByPattern) {
    clsValidLike like;
    like.Pattern(u"^[a-c]+$");
    EXPECT_TOLD("0|3|Die Eingabe entspricht nicht der Vorgabe für dieses Feld.", check(like, u"abc"),
                check(like, u"ABC"), shortText(like));
    EXPECT_EQ(like.Msg(), shortText(like) + u" Der reguläre Ausdruck für die Prüfung lautet: ^[a-c]+$");
    like.Options(loIgnoreCase | voError | voRequired);
    EXPECT_TOLD("0|4", check(like, u"ABC"), check(like, {}));
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
    constexpr const char *kOk = "0|", *kWeekday = "3|Der Wochentag ist ungültig",
                         *kEaster = "|Das Datum ist ein Feiertag (Ostermontag)";
    using Row = std::tuple<int32, TextView,
                           std::string>;  // 31.2. is cut to the 29th before it is looked at; 19.5. is Whitsun
    for (const auto& [options, value, told] :
         {Row{datAllDays, u"", kOk}, Row{datAllDays, u"29022024", kOk}, Row{datAllDays, u"01.02.24", kOk},
          Row{datAllDays, u"31.02.24", kOk}, Row{datMoBisSa, u"15062024", kOk},
          Row{datNichtSUF, u"15062024", kOk}, Row{datSonnUndFeiertag, u"19052024", kOk},
          Row{voRequired, u"", "4|Es muss ein Datum eingegeben werden"},
          Row{datAllDays, u"01.02.2024", "4|Das Datum ist unvollständig"},
          Row{datAllDays, u"29022023", "4|Die Eingabe ist kein gültiges Datum"},
          Row{datMoBisFr | datDayCritical, u"15062024", "4|Der Wochentag ist ungültig"},
          Row{datMoBisFr, u"15062024", kWeekday}, Row{datMoBisSa, u"16062024", kWeekday},
          Row{datSaUndSo, u"14062024", kWeekday}, Row{datNichtWerktag, u"01042024", kWeekday},
          Row{datWerktag, u"01042024", std::string("3") + kEaster},
          Row{datWerktag | datDayCritical, u"01042024", std::string("4") + kEaster},
          Row{datWerktag, u"251224", "3|Das Datum ist ein Feiertag (1. Weihnachtstag)"},
          Row{datNichtWerktag, u"15062024", "3|Das Datum ist ein Feiertag ()"}}) {
        clsValidDate date;
        date.Options(options);
        EXPECT_EQ(Checkers::told(date, value), told) << options << " " << toUtf8(value);
    }

    clsValidDate date;
    date.Minimum(u"D-30");
    date.Maximum(u"01072024");
    EXPECT_EQ(date.Minimum(), u"16052024");
    for (const auto& [day, grade] : table<2>(u"16052024=0 010724=0 15052024=3 02072024=3"))
        EXPECT_EQ(check(date, day), number(grade)) << toUtf8(day);
    EXPECT_EQ(date.Msg(),
              u"Das Datum liegt außerhalb des zugelassenen Bereichs ab dem 16.05.2024 bis zum 01.07.2024");
    date.Options(voError | datMoBisFr);
    EXPECT_TOLD("4|3", check(date, u"02072024"), check(date, u"06072024"));
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
    const Text wrong = box + (digits == u"0000" ? u"0001" : u"0000");
    // The modes an address passes in: mail, mailbox and, where it may begin anywhere, either. With a third
    // character that is no point no digits are tested.
    const std::pair<std::vector<int32>, std::vector<Text>> cases[] = {
        {{eaEMail, 2, 3}, {u"name@server.xx", u"n.a+b@a1.b-2.info"}},
        {{2, 3}, {u"näme@server.xx"}},
        {{eaEGVP, 2, 3},
         {u"safe-sp1-1-1", u"safe-st1-1-1 and more", u"govello-12-34", box + digits, box + upper(digits),
          u"x" + box + u"0000"}},
        {{},
         {u"name@s.xx", u"name@server", u"name@server.xx\n", u"safe-prod-x", wrong, upper(box) + digits}}};
    for (const auto& [modes, values] : cases)
        for (const auto& value : values)
            for (int32 mode = 0; mode < 4; ++mode) {
                clsValidEAdr address;
                if (mode > 0) address.Options(mode | voError);
                const bool passes = std::count(modes.begin(), modes.end(), mode) > 0;
                EXPECT_EQ(check(address, value), passes     ? validOK
                                                 : mode > 0 ? validError
                                                            : validWarning)
                    << mode << " " << toUtf8(value);
            }
    clsValidEAdr address;
    EXPECT_EQ(shortText(address), u"Keine gültige eMail-Adresse");
    EXPECT_TRUE(address.Msg().ends_with(u"nach dem Muster \"name@server.xxx\"."));
    address.Options(eaEGVP | voRequired);
    EXPECT_EQ(told(address, {}), "3|Keine gültige EGVP-Adresse");
    EXPECT_EQ(told(address, wrong), "3|Prüfziffer ist nicht korrekt");
    EXPECT_TRUE(address.Msg().starts_with(u"Die Prüfziffer (die letzten 4 Stellen)"));
    // The worst that these patterns can be given: long runs of what a name may hold.
    for (const Text& long_ :
         {Text(4096, u'a'), u"a@" + Text(4094, u'a'), Text(2048, u'@') + Text(2048, u'a')})
        EXPECT_EQ(check(address, long_), validWarning);
}

TEST_F(Checkers, AnIBANIsRefusedWithItsReason) {
    const TextView tooShort =
        u"Eine IBAN muss mindestens des Ländercode, die Prüfziffern und die Kontodaten enthalten.";
    const std::pair<TextView, TextView> cases[] = {
        {u"DE68210501700012345678", u""},
        {u"GB29NWBK60161331926819", u""},
        {u"", tooShort},
        {u"DE68", tooShort},
        {u"de68210501700012345678", u"Mit dem Ländercode de ist kein SEPA-Zahlungsverkehr möglich."},
        {u"DE68 2105 0170 0012 3456 78", u"Beim Ländercode DE muss die IBAN 22 Stellen lang sein."},
        {u"E!123", u"Beim Ländercode E! muss die IBAN 6 Stellen lang sein."},
        {u"DE67210501700012345678",
         u"Die Prüfziffern passen nicht zur IBAN, \"68\" wären die passenden Prüfziffern."},
        {u"DE2D370400440000000024",
         u"Die Prüfziffern passen nicht zur IBAN, \"02\" wären die passenden Prüfziffern."},
        {u"DE1221050170001234567A",
         u"Beim Ländercode DE besteht die IBAN nach dem Ländercode nur aus Ziffern."}};
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
    // What passes, what passes without the register alone ("?"), and what never does ("!"), with the text
    // then; deutdeff is of no German bank.
    const std::tuple<int32, TextView, TextView> cases[] = {
        {btKontoDE, u"1234567890 !12345678901 !12_34 !DE68210501700012345678",
         u"Sie haben keine gültige Kontonummer eingegeben."},
        {btKontoOrIBAN, u"1234567890 DE68210501700012345678 !12345678901",
         u"Sie haben keine gültige Kontonummer bzw. IBAN eingegeben."},
        {btIBAN, u"GB29NWBK60161331926819 !1", u"Sie haben keine gültige IBAN eingegeben."},
        {btIBAN, u"?DE89370400440532013000", u"Die Bank zu dieser IBAN wurde nicht gefunden."},
        {btBLZDE, u"21050170 ?10000000", u"Die Bankleitzahl wurde nicht gefunden."},
        {btBLZDE, u"!09000000 !90000000", u"Sie haben keine gültige Bankleitzahl eingegeben."},
        {btBLZDE | voRequired, u"!", u"Sie haben keine gültige Bankleitzahl eingegeben."},
        {btBIC, u"DEUTDEFF deutdeff ?ABCDDEFF !21050170 !DEUTDEFFX",
         u"Sie haben keinen gültigen BIC eingegeben."},
        {btBLZBIC, u"21050170 DEUTDEFF !2105017", u"Sie haben keinen gültigen BIC eingegeben."},
        {0, u"!1 ", u""},
        {voMode, u"!1", u""}};
    for (const bool withBanks : {false, true})
        for (const auto& [options, values, text] : cases)
            for (auto value : split(values, u" ")) {
                const bool never = value.starts_with(u'!'), unknown = value.starts_with(u'?');
                std::replace(value.begin(), value.end(), u'_', u' ');
                rtmMain::plugged().bankRegister = withBanks ? banks : nullptr;
                clsValidBanking banking;
                banking.Options(options);
                const bool passes = !never && !(unknown && withBanks);
                EXPECT_EQ(check(banking, TextView(value).substr(never || unknown ? 1 : 0)),
                          passes ? validOK : validWarning)
                    << options << " " << toUtf8(value);
                EXPECT_TRUE(passes || shortText(banking) == text)
                    << options << " " << toUtf8(value + shortText(banking));
            }
    banks->open = false;  // as if there were none
    clsValidBanking banking;
    banking.Options(btBLZDE | voError);
    EXPECT_EQ(check(banking, u"10000000"), validOK);
    banking.ErrorMsg(u"Eigener Text");  // which lives until the first check
    EXPECT_EQ(shortText(banking), u"Eigener Text");
    EXPECT_EQ(told(banking, u"1"), "4|Sie haben keine gültige Bankleitzahl eingegeben.");
    EXPECT_TRUE(banking.Msg().starts_with(u"In Deutschland bestehen Bankleitzahlen aus genau 8 Ziffern"));
    banking.Options(btKontoOrIBAN);
    EXPECT_TRUE(banking.Msg().ends_with(u"Unterkontonummer 00 angehängt werden!"));
    EXPECT_HOLDS(banking.Msg(), u"Leerstellen.\rEine IBAN beginnt");
}

TEST_F(Checkers, AnyTextGetsAGrade) {
    std::vector<std::unique_ptr<iValidChecker>> all;
    const auto add = [&](auto checker, int32 mode) {
        checker->Options(mode);
        all.push_back(std::move(checker));
    };
    add(std::make_unique<clsValidValue>(), voRange);
    for (int32 mode = 0; mode < 8; ++mode) {
        add(std::make_unique<clsValidBanking>(), mode);
        add(std::make_unique<clsValidDate>(), mode);
        add(std::make_unique<clsValidEAdr>(), mode);
    }
    // Nested runs, and what is said again: the worst for who goes back.
    for (const TextView pattern : {u"^(a+)+b$", u"^((.*)*)*\\2x", u"(?=(.*,){12}P)", u"*a*a*a*a*b", u"["})
        for (const int32 mode : {int32{loRegExp}, int32{loLike}}) {
            auto like = std::make_unique<clsValidLike>();
            like->Pattern(pattern);
            add(std::move(like), mode);
        }
    for (const Text& value :
         {Text(1 << 20, u'9'), Text(4000, u'@'), Text(1 << 20, u'a'), Text(8, u'\0'), Text(u"\t\r\n\x1a"),
          Text(u"\xD800\xDC00\xD800"), Text(u"\xFFFF\x202E"), Text(u"DE٣٤٥٦"), Text(u"Ελλάδα Москва 東京"),
          Text(u"--------"), Text(u"D"), Text(u"..@.."), Text(u"1e999999999"), Text(u"00000000")})
        for (const auto& checker : all) {
            const auto grade = check(*checker, value);
            EXPECT_TRUE(grade >= validOK && grade <= validError);
            // Modes that no banking check has say nothing.
            const auto* banking = dynamic_cast<clsValidBanking*>(checker.get());
            const bool silent = banking && (banking->Options() == 0 || banking->Options() == voMode);
            EXPECT_TRUE(grade == validOK || silent || !shortText(*checker).empty());
            static_cast<void>(checker->Msg());
        }
}

}  // namespace
}  // namespace tsRtm::test
