// Faults that the engine once had, each mended by the rule its test names.
#include <cstring>

#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tsRtm/database/files/CountFile.hpp"

namespace tsRtm::test {
namespace {

class Mended : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> db = make(kBig);
    std::shared_ptr<clsTSDB> other = open();

    void SetUp() override {
        ASSERT_TRUE(db && other);
        addFive(*db);
    }
};

TEST_F(Mended, KillAllObjectsGivesTheirLocksBack) {
    auto record = db->Record(2, true);
    db->KillAllObjects();
    record.reset();
    EXPECT_FALSE(other->Gesperrt(2));
}

// Reading by position records 28, it does not raise.
TEST_F(Mended, ACycleMetByPositionIsRecorded) {
    for (int32 n = 1; n <= 100; ++n) addAddress(*db, {u"Name" + toText(1000 + n), u"Ort", u"", u""});
    rtm.CloseRTMDBs();
    Bytes bytes = file(u"I001");
    int32 root = 0;
    std::memcpy(&root, bytes.data() + 4, 4);
    std::memcpy(bytes.data() + root + 3, &root, 4);
    put(u"I001", bytes);
    const auto damaged = open();
    damaged->SetIndex(1);
    EXPECT_NO_THROW(damaged->MoveFirst());
    EXPECT_EQ(damaged->Error(), 28);
    EXPECT_NO_THROW(damaged->Index(1));
    EXPECT_EQ(damaged->Error(), 28);
}

// A store that fails midway gives the lock of its new record back, or the next one would wait for it for
// ever; and what follows it writes no record that the indexes do not know.
TEST_F(Mended, AFailedStoreLeavesNoLockAndNoHalfRecord) {
    const auto record = db->Add();
    record->Fields(fNAME, u"Neu");
    db->AktSatzNr(2);
    disk.setFreeSpace(0);
    EXPECT_FALSE(record->Update());
    EXPECT_EQ(record->Error(), 61);
    EXPECT_FALSE(db->Append());
    EXPECT_EQ(db->Error(), 61);
    disk.setFreeSpace(std::nullopt);
    db->Fields(fNAME, u"Neu");
    db->Update();
    EXPECT_TRUE(consistent(*db));
    EXPECT_GT(addAddress(*other, {u"Neu", u"Ulm", u"", u""}), 0);
    EXPECT_TRUE(record->Update());
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Mended, ASecondLockDBIsStillHeld) {
    ASSERT_TRUE(db->LockDB(true));
    ground.ui.defaultAnswer = 7;
    EXPECT_TRUE(db->LockDB(true));
    EXPECT_TRUE(ground.ui.boxes.empty());
}

// A new record stands in the indexes before it stands in the file. Whoever opens the index in between waits
// or looks again; a listener of the same object reads it as blank.
TEST_F(Mended, AnIndexIsSearchedWhileARecordIsAdded) {
    std::vector<std::string> told;
    const auto heard = db->IndexChange.connect([&](int32) {
        told.push_back(raised([&] { other->Exist(u"Abel Bonn", 1); }));
        told.push_back(raised([&] { db->Exist(u"Neu Ulm", 1); }));
    });
    ASSERT_GT(addAddress(*db, {u"Neu", u"Ulm", u"", u""}), 0);
    EXPECT_EQ(told, std::vector<std::string>(told.size()));
    EXPECT_TRUE(consistent(*db));
}

// The mark of an update that died is dealt with by whoever writes next, with everybody else at work.
TEST_F(Mended, WhoWritesNextHealsAtOnce) {
    ASSERT_TRUE(other->Sperren(5, -1) && db->Sperren(4, -1));
    other->SetIndex(1);
    other->MoveFirst();
    Bytes count = file(u"Count.tsd");
    count.at(countFormat::kSignOffset) = countFormat::kMark;
    put(u"Count.tsd", count);
    Bytes index = file(u"I001");
    index.at(512 + 12) = 1;  // the first entry names another record
    put(u"I001", index);
    EXPECT_EQ(change(*db, 2, fNAME, u"Neu"), 0);
    EXPECT_EQ(file(u"Count.tsd").at(countFormat::kSignOffset), countFormat::kAtWork);
    EXPECT_TRUE(other->Exist(u"Neu Bonn", 1));
    EXPECT_TRUE(other->Exist(u"Abel Bonn", 1));
    EXPECT_TRUE(consistent(*db));
    for (const int32 n : {4, 5}) EXPECT_FALSE((n == 4 ? other : db)->Sperren(n, -1)) << "its lock stands";
    other.reset();
    db.reset();
    EXPECT_EQ(file(u"Count.tsd"), "5\r        ") << "the last one takes the sign back";
}

// A failure of the file while a record is read is recorded, not raised.
TEST(MendedFaults, AReadFaultWhileMovingIsRecorded) {
    MemoryFiles disk;
    disk.offerWindows(false);
    FailingFiles failing(disk);
    TestGround ground;
    const StartedLibrary library(ground, failing);
    clsRtm rtm;
    const auto db = makeAddresses(rtm, u"/daten/Zwei", kNormal);
    ASSERT_TRUE(db);
    addFive(*db);
    db->SetIndex(0);
    failing.failAt(1, platform::SystemError::readFault);
    EXPECT_NO_THROW(db->MoveFirst());
    EXPECT_NE(db->Error(), 0);
}

}  // namespace
}  // namespace tsRtm::test
