// Several machines on one share, whose clients remember for ever and write late.
#include <set>

#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/ShareClients.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kMachines = 3;

Address person(int32 n) {
    const Text digits = toText(1000 + n);
    return {u"Name" + digits, u"Ort" + toText(n % 7), toText(n) + u".00", u"01012020"};
}
Text keyOf(const Address& address) { return address.name + u" " + address.ort; }

// One database, opened on each machine. A machine works while on() names it.
class Share : public testing::TestWithParam<int32> {
 protected:
    MemoryFiles disk;
    CrashingFiles server{disk};
    ShareClients files{server};
    TestGround ground;
    StartedLibrary library{ground, files};
    clsRtm rtm;
    std::map<int32, std::shared_ptr<clsTSDB>> dbs;

    void SetUp() override {
        disk.setDriveKind(platform::DriveKind::remote);
        ground.ui.defaultAnswer = 1;
        machine(0);
        dbs[0] = makeAddresses(rtm, kFolder, GetParam());
        ASSERT_TRUE(dbs[0]);
        for (int32 m = 1; m < kMachines; ++m) ASSERT_TRUE(opened(m));
    }
    void TearDown() override {
        for (auto& [number, db] : dbs) {
            machine(number);
            db.reset();
        }
    }
    void machine(int32 number) {
        files.as(number);
        server.as(number);
    }
    bool opened(int32 number) {
        machine(number);
        dbs[number].reset();
        dbs[number] = rtm.OpenTSDB(kFolder);
        return dbs[number] != nullptr;
    }
    clsTSDB& on(int32 number) {
        machine(number);
        return *dbs[number];
    }
};

// What was told as stored is found elsewhere at once, by key, by position and by number, and one question for
// the server proves it, with the record that was found.
TEST_P(Share, ASearchFindsWhatWasStoredElsewhere) {
    for (int32 n = 1; n <= 40; ++n) {
        ASSERT_EQ(addAddress(on(0), person(n)), n);
        clsTSDB& reader = on(1 + n % 2);
        reader.SetIndex(1);
        ASSERT_TRUE(reader.Exist(keyOf(person(n)), 1)) << n;
        EXPECT_EQ((reader.Gehezu(keyOf(person(n))), reader.AktSatzNr()), n);
        ASSERT_EQ(change(on(0), n, fORT, u"Anders"), 0);
        EXPECT_EQ(on(1 + n % 2).GetField(n, fORT), u"Anders");
        ASSERT_EQ(change(on(0), n, fORT, person(n).ort), 0);
    }
    clsTSDB& reader = on(1);
    ASSERT_TRUE(reader.Exist(keyOf(person(7)), 1));
    const auto before = files.questions();
    const auto asked = [&] { return files.questions() - before; };
    EXPECT_TOLD("yes|1", reader.Exist(keyOf(person(7)), 1), asked());
    EXPECT_TOLD("2|Name1007|3", (reader.Gehezu(keyOf(person(7))), asked()), reader.GetField(7, fNAME),
                asked());
}

// Every change of one machine at the server is the last one it makes, with all that it had not flushed; the
// others add, change and search on, and lose nothing that was told as stored.
TEST_P(Share, ADeathAmongThreeCostsNobodyElseAnything) {
    for (int32 n = 1; n <= 5; ++n) ASSERT_EQ(addAddress(on(0), person(n)), n);
    int64 deaths = 0;
    for (int64 at = 1;; ++at) {
        // A user of his own each time, on the same machine.
        dbs[1].reset();
        files.as(1);
        server.as(kMachines + static_cast<int32>(at));
        dbs[1] = rtm.OpenTSDB(kFolder);
        ASSERT_TRUE(dbs[1]) << at;
        bool told = false;
        const int32 before = dbs[1]->AnzahlDSaetze();
        const Address last = person(100 + static_cast<int32>(at)),
                      mine = person(500 + static_cast<int32>(at));
        server.dieAt(at);
        try {
            told = addAddress(*dbs[1], last) > 0 && change(*dbs[1], 2, fNAME, u"Bewegt" + toText(at)) == 0;
        } catch (const ProcessDied&) {
        }
        const bool died = server.died();
        server.dieAt(0);
        if (died) {
            ++deaths;
            files.loseWrites();
            rtmMain::state().updatesUnderWay.clear();
        }
        dbs[1].reset();
        // Nobody who lives waits for long, or sees anything wrong.
        const auto start = ground.clock.elapsed();
        clsTSDB& other = on(2);
        EXPECT_TRUE(other.Exist(keyOf(person(3)), 1)) << at;
        const int32 number = addAddress(other, mine);
        ASSERT_GT(number, before) << at << ' ' << rtmMain::state().F;
        other.Entsperren(number);
        EXPECT_LT(ground.clock.elapsed() - start, std::chrono::seconds(5)) << at;
        EXPECT_TRUE(on(0).Exist(keyOf(mine), 1)) << at;
        EXPECT_TRUE(consistent(on(0))) << at;
        EXPECT_TRUE(!told || on(0).Exist(keyOf(last), 1)) << at;
        if (!died) break;
    }
    EXPECT_GT(deaths, 10);
}

// A client that cannot be made to forget: who would write on old data is refused, and nothing is touched.
TEST_P(Share, WhoReadsOldDataIsRefused) {
    for (int32 n = 1; n <= 5; ++n) ASSERT_EQ(addAddress(on(0), person(n)), n);
    ASSERT_EQ(change(on(1), 1, fORT, u"Ulm"), 0);
    files.forgetsAfter(1'000'000);
    ASSERT_EQ(change(on(0), 2, fNAME, u"Zuletzt"), 0);
    const auto then = disk.snapshot();
    EXPECT_EQ(change(on(1), 3, fNAME, u"Falsch"), 70);
    ASSERT_FALSE(ground.ui.boxes.empty());
    EXPECT_NE(ground.ui.boxes.back().headline.find(u"veraltet"), Text::npos);
    EXPECT_EQ(disk.snapshot(), then);
    EXPECT_EQ(change(on(0), 3, fNAME, u"Richtig"), 0) << "a refused one keeps no lock";
    // One that forgets in its own time is waited for.
    on(1);
    files.forgetsAfter(3);
    EXPECT_TOLD("0|Spaeter", change(on(1), 4, fNAME, u"Spaeter"), on(0).GetField(4, fNAME));
    EXPECT_TRUE(consistent(on(0)));
}

// A connection that was cut and came again: the server has given our locks to whoever asked.
TEST_P(Share, LocksThatTheServerForgotAreNotTrusted) {
    for (int32 n = 1; n <= 3; ++n) {
        ASSERT_EQ(addAddress(on(0), person(n)), n);
        on(0).Entsperren(n);
    }
    ASSERT_TRUE(on(1).Sperren(2));
    disk.cutOff(path(u"Count.tsd"));
    ASSERT_TRUE(on(0).Sperren(2));
    EXPECT_EQ(change(on(0), 2, fNAME, u"Meiner"), 70) << "cut off as well";
    EXPECT_TOLD("yes|yes|0", opened(0), on(0).Sperren(2), change(on(0), 2, fNAME, u"Meiner"));
    EXPECT_TOLD("70|Meiner", change(on(1), 2, fNAME, u"Seiner"), on(0).GetField(2, fNAME));
    EXPECT_TOLD("yes|0", opened(1), change(on(1), 3, fNAME, u"Geht"));
}

// In the middle of an update: it is told as failed, and who comes next builds anew.
TEST_P(Share, AnUpdateThatLostItsLockIsToldAndHealed) {
    for (int32 n = 1; n <= 5; ++n) ASSERT_EQ(addAddress(on(0), person(n)), n);
    const auto cut = on(1).IndexChange.connect([&](int32) { disk.cutOff(path(u"Count.tsd")); });
    EXPECT_EQ(change(on(1), 2, fNAME, u"Bewegt"), 70);
    for (int32 m : {0, 2}) ASSERT_TRUE(opened(m));
    EXPECT_EQ(change(on(0), 3, fNAME, u"Weiter"), 0);
    EXPECT_TRUE(consistent(on(2)));
}

TEST_P(Share, AskedForTheStateTheCountIsThatOfTheServer) {
    for (int32 n = 1; n <= 3; ++n) {
        ASSERT_EQ(addAddress(on(0), person(n)), n);
        EXPECT_EQ((on(1).Stand(), on(1).AnzahlDSaetze()), n);
    }
}

// The old text of a memo is given free under the lock; who closes beside somebody who holds it leaves it.
TEST_P(Share, ClosesBesideAWriterWithATextToGiveFree) {
    const Text name = u"/daten/Notizen";
    const auto fields = fieldsOf({{u"NAME", tsAlphanumerisch, 12}, {u"NOTIZ", tsMemo, 60}});
    ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, name, {}, fields, GetParam(), u"  1  0  0"));
    machine(1);
    auto db = rtm.OpenTSDB(name);
    ASSERT_TRUE(addRecord(*db, {{2, u"alt"}}));
    for (const auto* text : {u"neu", u"neuer"})  // the last but one waits to be given free
        ASSERT_TRUE(stored(db->Record(1), {{2, text}}));
    machine(0);
    const auto other = rtm.OpenTSDB(name);
    ASSERT_TRUE(other->LockDB(true));
    machine(1);
    db.reset();
    machine(0);
    EXPECT_EQ(other->Record(1)->Fields(2), u"neuer");
    EXPECT_TRUE(consistent(*other));
}

INSTANTIATE_TEST_SUITE_P(Forms, Share, kBothForms, formName);

}  // namespace
}  // namespace tsRtm::test
