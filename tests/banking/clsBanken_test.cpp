// Questions about banks, and a register that comes, changes and goes while they are asked.
#include "tsRtm/banking/clsBanken.hpp"

#include "tests/banking/BankColumns.hpp"
#include "tests/database/Deaths.hpp"
#include "tests/support/Table.hpp"
#include "tsRtm/frame/state/Plugged.hpp"

namespace tsRtm::test {
namespace {

constexpr TextView kRegister = u"/daten/Banken";

std::string bankRow(const char* code, const char* name, const char* bic, const char* place = "K\xF6ln") {
    return BankColumns{
               .code = code, .name = name, .postalCode = "50667", .place = place, .bic = bic, .method = "09"}
               .row() +
           "\r\n";
}
const std::string kHamburg = bankRow("20000000", "Bundesbank", "MARKDEF1200", "Hamburg");
const std::string kFirst = bankRow("37040044", "Commerzbank", "COBADEFFXXX") +
                           bankRow("37050198", "Sparkasse", "COLSDE33XXX") + kHamburg;
const std::string kSecond = bankRow("37040044", "Neue Bank", "COBADEFFXXX") + kHamburg +
                            bankRow("10000000", "Bundesbank", "MARKDEF1100", "Berlin");

struct Office : Process {
    explicit Office(platform::FileSystem& files) : Process(files) {
        rtmMain::state().runtimeDataDir = u"/daten";
    }
};

class Banken : public ::testing::Test {
 protected:
    BankImportResult import(const std::string& rows) {
        disk.put(u"/blz.txt", rows);
        const auto file = disk.open(u"/blz.txt", {});
        bankRegister::create(office.rtm, kRegister);
        const auto db = office.rtm.OpenTSDB(kRegister);
        if (!db) return {};
        BankFileReader reader(**file);
        BankImportListener listener;
        listener.rejected = [&](int64 line, BankRowFault fault) {
            rejected += toText(line) + u" " + toText(static_cast<int32>(fault)) + u",";
        };
        return importBanks(reader, *db, listener);
    }

    Text rejected;
    MemoryFiles disk;
    CrashingFiles files{disk};
    Office office{files};
};

TEST_F(Banken, AreFoundByCodeAndBic) {
    clsBanken banks;
    EXPECT_TOLD("no|", banks.IsOpen(), banks.Name(u"37040044"));
    ASSERT_TRUE(import(kFirst).complete);
    for (const auto& [key, name] : table<2>(
             u"37040044=Commerzbank 3704=Commerzbank COBADEFF=Commerzbank COLSDE33XXX=Sparkasse 37040045= "
             u"99999999= COBADEFFX= COBADEFG= = COBA= cobadeff="))
        EXPECT_EQ(toUtf8(banks.Name(key)), toUtf8(name)) << toUtf8(key);
    EXPECT_EQ(banks.BIC(u"DE89370400440532013000"), u"COBADEFFXXX");
    EXPECT_TOLD("|50667 Köln", banks.BIC(u"DE"), banks.PLZOrt(u"37040044"));
    ASSERT_TRUE(banks.Record(u"20000000"));
    EXPECT_EQ(banks.Record(u"20000000")->Fields(fBANKEN_ORT), u"Hamburg");
    const auto db = banks.DB();
    db->SetIndex(bankRegister::kByPlaceAndName);
    db->Gehezu(u"Hamburg");
    EXPECT_EQ(banks.Name(u"37040044") + banks.BIC(u"37050198"), u"CommerzbankCOLSDE33XXX");
    EXPECT_EQ(db->Fields(fBANKEN_BLZ) + toText(db->ActiveIndex()), u"200000004") << "nobody moved it";
    banks.CloseDB();
    EXPECT_NE(banks.DB(), db);
}

TEST_F(Banken, AreLoadedAndEveryLineThatIsNoneIsTold) {
    const BankColumns good, other{.code = "20000000", .mark = "2"};
    const auto result = import(kHamburg + other.row() + "\r\n\r\n" + "kurz\r\n" + std::string(100000, 'x') +
                               "\n" + good.row());
    const auto length = std::to_string(static_cast<int32>(BankRowFault::length));
    EXPECT_TOLD("yes|2|1|4 " + length + ",5 " + length + ",", result.complete, result.loaded,
                result.otherRows, rejected);
    const auto db = office.rtm.OpenTSDB(kRegister, true);
    EXPECT_TRUE(consistent(*db));
    EXPECT_TOLD("Hamburg|09", db->GetField(1, fBANKEN_ORT), db->GetField(1, fBANKEN_PZMETHODE));
    for (const auto index : {bankRegister::kByCode, bankRegister::kByPlaceAndName, bankRegister::kByBic}) {
        db->SetIndex(index);
        EXPECT_EQ(db->Index(1), 2);
    }
}

TEST_F(Banken, MakeIBANs) {
    for (const auto& [code, account, iban] :
         table<3>(u"37040044=532013000=DE89370400440532013000 37040044=5320130=DE34370400440532013000 "
                  u"37050198=12-34=DE00370501980000001234 37050198=-=DE00370501980000000000 "
                  u"37040044=123456789012=DE00370400443456789012 3704004=1= 37040044==")) {
        const Text made = clsBanken::IBAN(code, account, false);
        EXPECT_EQ(toUtf8(made.substr(std::min<std::size_t>(4, made.size()))),
                  toUtf8(iban.substr(std::min<std::size_t>(4, iban.size()))));
        EXPECT_TRUE(made.empty() || clsValidBanking().CheckIBAN(made)) << toUtf8(made);
    }
    EXPECT_EQ(toUtf8(clsBanken::IBAN(u"37040044", u"532013000")), "DE89 3704 0044 0532 0130 00");
}

TEST_F(Banken, AreAskedByTheChecker) {
    clsValidBanking checker;
    checker.Options(btIBAN | voError);
    const Text known = clsBanken::IBAN(u"37040044", u"1", false);
    const Text unknown = clsBanken::IBAN(u"37040045", u"1", false);
    EXPECT_EQ(checker.Check(nullptr, unknown), validOK) << "there is no register";
    import(kFirst);
    EXPECT_TOLD("0|4|Die Bank zu dieser IBAN wurde nicht gefunden.", checker.Check(nullptr, known),
                checker.Check(nullptr, unknown), checker.ErrorMsg());
    checker.Options(btBLZBIC);
    EXPECT_TOLD("0|3|3", checker.Check(nullptr, u"COLSDE33"), checker.Check(nullptr, u"COLSDE34"),
                checker.Check(nullptr, u"37050199"));
    EXPECT_EQ(office.rtm.Banken(), clsRtm().Banken()) << "one for all";
}

TEST_F(Banken, AreChosenFromAList) {
    import(kFirst);
    auto& ui = office.ground.ui;
    std::vector<Text> firstLine;
    ui.choices.push_back([&](const platform::ChoiceList& list) {
        firstLine = list.cells(list.start);
        return list.find(u"3705");
    });
    clsBanken banks;
    banks.DB()->SetIndex(bankRegister::kByBic);
    const auto chosen = banks.SelectRecord(fBANKEN_BLZ, u"3704");
    ASSERT_TRUE(chosen);
    EXPECT_TOLD("Sparkasse|Commerzbank|Auswahl Bank", chosen->Fields(fBANKEN_NAME), firstLine.at(1),
                ui.listsShown);
    EXPECT_EQ(banks.DB()->ActiveIndex(), fBANKEN_BIC);
    EXPECT_FALSE(banks.SelectRecord(fBANKEN_ORT)) << "nothing chosen";
}

TEST_F(Banken, AreReplacedAtOnceOrOneByOne) {
    import(kFirst);
    clsBanken banks;
    ASSERT_TRUE(banks.IsOpen());
    const auto beside = import(kSecond);
    EXPECT_TOLD("yes|yes|1|1|1", beside.complete, beside.beside, beside.changed, beside.added, beside.gone);
    // The second one is a record that this object has not met.
    EXPECT_TOLD("Neue Bank|Bundesbank|||Bundesbank|4", banks.Name(u"37040044"), banks.Name(u"10000000"),
                banks.Name(u"37050198"), banks.Name(u"3705"), banks.Name(u"MARKDEF1"),
                banks.DB()->AnzahlDSaetze());
    EXPECT_TRUE(consistent(*banks.DB()));
    const auto again = import(kSecond);
    EXPECT_EQ(again.changed + again.added + again.gone, 0);

    banks.CloseDB();
    const auto alone = import(kSecond);
    EXPECT_TOLD("yes|3", alone.complete && !alone.beside, banks.DB()->AnzahlDSaetze());
    EXPECT_TRUE(consistent(*banks.DB()));
}

// Who asks again and again has the names in memory, and sees all the same what others do.
TEST_F(Banken, AreKnownByNameUntilSomebodyChangesThem) {
    import(kFirst);
    clsBanken banks;
    for (int32 look = 0; look < 4; ++look) {
        for (const auto& [key, name] :
             table<2>(u"37040044=Commerzbank 3705=Sparkasse 2=Bundesbank 1= 37040045="))
            EXPECT_EQ(banks.Name(key), name) << look;
        office.ground.clock.advance(std::chrono::seconds(1));
    }
    const auto db = office.rtm.OpenTSDB(kRegister);
    ASSERT_TRUE(stored(db->Record(1), {{fBANKEN_NAME, u"Umbenannt"}}));
    EXPECT_EQ(banks.Name(u"37040044"), u"Umbenannt") << "at once: an index has the name";
    db->Delete(2);
    office.ground.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(banks.Name(u"3705"), u"") << "at the next look";
}

// Nothing is known then, and nothing fails; the check of an IBAN goes by its form where nothing can be asked.
TEST_F(Banken, OfADatabaseThatIsNone) {
    const Text iban = clsBanken::IBAN(u"37040044", u"1", false);
    const auto asked = [&](bool open) {
        clsBanken banks;
        EXPECT_EQ(banks.IsOpen(), open);
        EXPECT_EQ(banks.Name(u"37040044") + banks.BIC(iban) + banks.PLZOrt(u"COBADEFF"), u"");
        EXPECT_FALSE(banks.SelectRecord(fBANKEN_BIC, u"C"));
        office.rtm.Banken()->CloseDB();
        clsValidBanking checker;
        checker.Options(btIBAN);
        EXPECT_EQ(checker.Check(nullptr, iban), open ? validWarning : validOK);
    };
    ASSERT_TRUE(
        office.rtm.DBCreateExt(DBAnsi, kRegister, {}, fieldsOf({{u"X", tsAlles, 3}}), 10, u"  1  0  0"));
    ASSERT_TRUE(addRecord(*office.rtm.OpenTSDB(kRegister), {{1, u"370"}}));
    asked(true);
    const auto result = import(kFirst);
    EXPECT_TOLD("no|53", result.complete, result.databaseError) << "nothing goes in there";
    ASSERT_FALSE(failed(disk.remove(Text(kRegister) + u".DBD/Control.tsd")));
    asked(false);
}

TEST_F(Banken, WaitForARegisterThatSomebodyHoldsAlone) {
    import(kFirst);
    clsBanken banks;
    auto alone = office.rtm.OpenTSDB(kRegister, false, true);
    ASSERT_TRUE(alone);
    EXPECT_EQ(banks.Name(u"37040044"), u"");
    office.ground.clock.onSleep = [&] { alone.reset(); };
    EXPECT_EQ(banks.Name(u"37040044"), u"Commerzbank");
}

// Who imports dies at each change of the disk; those who ask find the old banks or the new ones.
TEST_F(Banken, SurviveADeathAtEveryChangeOfAnImport) {
    import(kFirst);
    const auto prepared = disk.snapshot();
    for (const bool beside : {false, true}) {
        int64 points = 0;
        for (int64 n = 1;; ++n) {
            disk.restore(prepared);
            files.as(2);
            Office reader(files);
            clsBanken banks;
            ASSERT_TRUE(!beside || banks.IsOpen());
            files.as(static_cast<int32>(10 + n));
            Office dying(files);
            disk.put(u"/neu.txt", kSecond);
            const bool died =
                files.diesAt(n, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently, [&] {
                    const auto file = disk.open(u"/neu.txt", {});
                    const auto db = dying.rtm.OpenTSDB(kRegister);
                    BankFileReader rows(**file);
                    if (db) importBanks(rows, *db);
                });
            files.as(2);
            files.dieAt(0);
            rtmMain::TEST_restart(reader.library.platform);
            rtmMain::state().runtimeDataDir = u"/daten";
            // A reader may have to wait for somebody who may finish what was committed.
            const Text before = banks.Name(u"37040044");
            EXPECT_TRUE(before == u"Commerzbank" || before == u"Neue Bank" || before.empty()) << n;
            {
                const auto db = reader.rtm.OpenTSDB(kRegister);
                ASSERT_TRUE(db && consistent(*db)) << n;
            }
            const Text name = banks.Name(u"37040044");
            const Text gone = banks.Name(u"37050198"), added = banks.Name(u"10000000");
            EXPECT_TRUE(name == u"Commerzbank" || name == u"Neue Bank") << n;
            EXPECT_EQ(banks.Name(u"20000000"), u"Bundesbank") << n;
            const bool isNew = name == u"Neue Bank" && gone.empty() && !added.empty();
            const bool isOld = name == u"Commerzbank" && !gone.empty() && added.empty();
            EXPECT_TRUE(isNew || (died && (isOld || beside)))
                << n << (beside ? ", beside a reader: " : ": ") << toUtf8(name + u"|" + gone + u"|" + added);
            ++points;
            if (!died) break;
        }
        EXPECT_GT(points, 10);
    }
}

}  // namespace
}  // namespace tsRtm::test
