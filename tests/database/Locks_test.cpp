// Locks between two databases that are open on the same files, and what the user sees of a wait.
#include "tests/database/MemoryDatabase.hpp"
#include "tsRtm/frame/iStatusControl.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kYes = 6;
constexpr int32 kNo = 7;

class Locks : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> one = makeFive(kBig);
    std::shared_ptr<clsTSDB> two = open();
};

TEST_F(Locks, ARecordHasOneOwner) {
    EXPECT_TOLD("yes|no|0", one->Sperren(3, -1), one->Sperren(3), one->Error()) << "the lock stays";
    for (const auto& db : {one, two}) EXPECT_TRUE(db->Gesperrt(3) && !db->Gesperrt(2));
    // Of a stranger's record nothing happens.
    EXPECT_TOLD("yes|no|70|yes|yes", two->Sperren(2, -1), two->Sperren(3, -1), two->Error(),
                two->Entsperren(3), two->Gesperrt(3));
    EXPECT_TOLD("yes|yes|yes", one->Entsperren(3), one->Entsperren(3), two->Sperren(3, -1));
}

TEST_F(Locks, OnlyRecordsThatAreThere) {
    for (const int32 n : {0, -1, 6}) {
        EXPECT_TOLD("no|63|no|63", one->Sperren(n), one->Error(), one->Entsperren(n), one->Error()) << n;
        EXPECT_TOLD(n == 0 ? "no|0" : "no|63", one->Gesperrt(n), one->Error()) << "0 asks for the database";
    }
}

// A limited wait gives up in silence, or asks.
TEST_F(Locks, AWaitEndsAtItsLimit) {
    const std::tuple<int32, std::deque<int32>, float64> rows[] = {
        {-1, {}, 5}, {-3, {}, 15}, {1, {kNo}, 5}, {2, {kNo}, 10}, {1, {kYes, kYes, kNo}, 15}};
    ASSERT_TRUE(one->Sperren(2, -1));
    for (const auto& [wait, answers, limit] : rows) {
        ground.ui.boxes.clear();
        ground.ui.answers = answers;
        const float64 start = seconds();
        EXPECT_FALSE(two->Sperren(2, wait));
        EXPECT_NEAR(seconds() - start, limit, 0.1) << wait;
        EXPECT_TOLD("70|70|no", two->Error(), rtmMain::state().F, rtmMain::state().lockWait);
        ASSERT_EQ(ground.ui.boxes.size(), answers.size());
        for (std::size_t n = 0; n < answers.size(); ++n)
            for (const Text& text :
                 {rtm.RtmMsg(2109) + u"2", u"Datei \"" + path(u"Count.tsd") + u"\": " + rtm.RtmMsg(6)})
                EXPECT_NE(shown(n).find(text), Text::npos) << toUtf8(shown(n));
    }
}

class StatusLine final : public iStatusControl {
 public:
    tsRtm::Text TypeName() const override { return u"Label"; }
    bool IsLabel() const override { return true; }
    bool Caption(TextView text) override {
        lines.emplace_back(text);
        return true;
    }

    std::vector<tsRtm::Text> lines;
};

// Without a limit it goes on, says so each five seconds, and takes the line away at its end.
TEST_F(Locks, AWaitWithoutLimitSaysSo) {
    const auto line = std::make_shared<StatusLine>();
    rtmMain::state().messageLine = line;
    ASSERT_TRUE(one->Sperren(2, -1));
    bool flagged = true;
    const float64 start = seconds();
    ground.clock.onSleep = [&] {
        flagged = flagged && rtmMain::state().lockWait;
        if (seconds() - start > 12) one->Entsperren(2);
    };
    const int32 before = ground.ui.eventRounds;
    EXPECT_TOLD("yes|yes", two->Sperren(2), flagged);
    EXPECT_GT(ground.ui.eventRounds, before);  // the host stays alive
    const Text waiting = u"Datei \"" + path(u"Count.tsd") + u"\": " + rtm.RtmMsg(44);
    EXPECT_EQ(line->lines, (std::vector<Text>{waiting, waiting, u""}));
    EXPECT_TOLD("no|0", rtmMain::state().lockWait, rtmMain::state().F);
}

TEST_F(Locks, AWaitEndsWithTheLibrary) {
    ASSERT_TRUE(one->Sperren(2, -1));
    ground.clock.onSleep = [] { rtmMain::state().stopping = true; };
    EXPECT_TOLD("no|70", two->Sperren(2), two->Error());
}

TEST_F(Locks, LocksOfOtherFilesNameThePosition) {
    put(u"Andere", "1234");
    int32 number = 0, other = 0;
    for (int32* each : {&number, &other}) rtm.DB_Open(path(u"Andere"), *each, 4, true, 0, -1);
    rtm.DB_Lock(number, 3, -1, false);
    EXPECT_TOLD("0|yes|no", rtmMain::state().F, rtm.DB_IsLocked(other, 3), rtm.DB_IsLocked(number, 3));
    ground.ui.answers = {kNo};
    EXPECT_EQ((rtm.DB_Lock(other, 3, 1, false), rtmMain::state().F), 70);
    EXPECT_NE(shown().find(rtm.RtmMsg(61)), Text::npos) << toUtf8(shown());
}

// The second of two writers waits for the database lock; where it does not get it nothing is written.
TEST_F(Locks, AnUpdateThatGetsNoLockChangesNothing) {
    ASSERT_TRUE(one->LockDB(true));
    two->SetIndex(1);
    const auto before = disk.snapshot();
    ground.ui.defaultAnswer = kNo;
    EXPECT_TOLD("70|no|70|no", change(*two, 3, fNAME, u"Zorn"), two->Append() != nullptr, two->Error(),
                two->Add()->Update());
    EXPECT_EQ(disk.snapshot(), before);
    // With a little patience it goes through.
    ground.ui.answers = {kYes};
    const float64 start = seconds();
    ground.clock.onSleep = [&] {
        if (seconds() - start > 7) one->LockDB(false);
    };
    EXPECT_TOLD("0|Zorn|5", change(*two, 3, fNAME, u"Zorn"), one->GetField(3, fNAME), two->LogSatz());
    EXPECT_TRUE(consistent(*one));
}

// What Update takes it gives back; what the application took stays.
TEST_F(Locks, TheExplicitLockStays) {
    const auto work = [&] {
        EXPECT_EQ(change(*one, 3, fNAME, u"Ort" + toText(one->AnzahlDSaetze())), 0);
        EXPECT_TRUE(one->Append());
        EXPECT_GT(addAddress(*one, {u"Neu", u"Ulm", u"", u""}), 0);
        EXPECT_TRUE(one->Check(false, {}));
    };
    work();
    EXPECT_TOLD("no|yes|yes", two->Gesperrt(0), one->LockDB(true), one->LockDB(true));
    work();
    EXPECT_TRUE(two->Gesperrt(0) && ground.ui.boxes.empty());
    EXPECT_TOLD("yes|yes|no", one->LockDB(false), one->LockDB(false), two->Gesperrt(0));
    work();
    EXPECT_FALSE(two->Gesperrt(0));
}

// A rebuild needs the database alone, and the locks held before outlive it.
TEST_F(Locks, SortNeedsTheDatabaseAlone) {
    EXPECT_TOLD("no|yes|yes", one->Sort(), one->Sperren(3, -1), two->Gesperrt(3));
    two.reset();
    EXPECT_TRUE(one->Sort());
    two = open();
    EXPECT_TOLD("yes|no|no|53", two->Gesperrt(3), two->Gesperrt(2), one->Sort(4), one->Error());
    const auto reader = open(true);
    EXPECT_TOLD("no|5", reader->Sort(), reader->Error());
}

class SingleUse : public MemoryDatabase, public testing::WithParamInterface<int32> {};

// Nothing is locked; who adds records says so first.
TEST_P(SingleUse, WantsLockDBBeforeNewRecords) {
    const auto db = make(GetParam(), true);
    EXPECT_TOLD("no|70", db->Append() != nullptr, db->Error());
    const auto record = db->Add();
    record->Fields(fNAME, u"Neu");
    EXPECT_TOLD("no|0", record->Update(), db->AnzahlDSaetze());
    EXPECT_TOLD("yes|yes|yes|2", db->LockDB(true), record->Update(), db->Append() != nullptr,
                db->AnzahlDSaetze());
    // Changes need no claim.
    EXPECT_TOLD("yes|0", db->LockDB(false), change(*db, 1, fNAME, u"Anders"));
    EXPECT_TRUE(consistent(*db));
    ASSERT_TRUE(db->Sort());
    EXPECT_TRUE(consistent(*db));
}
INSTANTIATE_TEST_SUITE_P(Forms, SingleUse, kBothForms, formName);

TEST_F(MemoryDatabase, AReopenedDatabaseOwnsNoLocks) {
    const auto db = makeFive(kBig);
    ASSERT_TRUE(db->Sperren(3, -1) && db->LockDB(true));
    {
        const auto before = open();
        EXPECT_TOLD("yes|yes", before->Gesperrt(3), before->Gesperrt(0));
    }
    db->Schliesse();
    EXPECT_TOLD("0|no|yes", db->Oeffne(kFolder), db->Gesperrt(3), db->Sperren(3, -1));
    const auto other = open();
    EXPECT_TOLD("yes|yes", other->Gesperrt(3), other->LockDB(true)) << "nobody holds the database";
    ground.ui.defaultAnswer = kNo;
    EXPECT_EQ(change(*db, 2, fNAME, u"Zorn"), 70);
}

// In a handler within an update, another object of the program that came by another name of the folder.
TEST_F(MemoryDatabase, AProgramKnowsItsOwnUpdateUnderAnyName) {
    const auto db = makeFive(kBig);
    const auto other = there(rtm.OpenTSDB(u"\\daten\\Adressen"));
    other->SetIndex(1);
    int32 error = 0;
    const auto asks = db->IndexChange.connect([&](int32) {
        const auto before = seconds();
        other->Gehezu(u"Cohn");
        error = other->Error();
        EXPECT_LT(seconds() - before, 1);
    });
    EXPECT_TOLD("0|70", change(*db, 2, fNAME, u"Anders"), error);
}

}  // namespace
}  // namespace tsRtm::test
