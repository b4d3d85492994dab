// Faults that the engine once had, each mended by the rule its test names.
#include <cstring>

#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/FailingFiles.hpp"

namespace tsRtm::test {
namespace {

class Mended : public MemoryDatabase {};

TEST_F(Mended, AnUpdateBehindAFailedAppendWritesNoRecordWithoutIndex) {
    const auto db = make(kBig);
    addFive(*db);
    const auto other = open();
    ASSERT_TRUE(other->LockDB(true));
    db->AktSatzNr(2);
    ground.ui.answers = {7};
    // The lock is won, the record is refused: no room.
    other->LockDB(false);
    ground.ui.answers.clear();
    disk.setFreeSpace(0);
    EXPECT_FALSE(db->Append());
    EXPECT_EQ(db->Error(), 61);
    disk.setFreeSpace(std::nullopt);
    db->Fields(fNAME, u"Neu");
    db->Update();
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Mended, KillAllObjectsGivesTheirLocksBack) {
    const auto db = make(kBig);
    addFive(*db);
    const auto other = open();
    db->Entsperren(2);
    auto record = db->Record(2, true);
    db->KillAllObjects();
    record.reset();
    EXPECT_FALSE(other->Gesperrt(2));
}

// Reading by position records 28, it does not raise.
TEST_F(Mended, ACycleMetByPositionIsRecorded) {
    {
        const auto db = make(kBig);
        for (int32 n = 1; n <= 100; ++n) addAddress(*db, {u"Name" + toText(1000 + n), u"Ort", u"", u""});
    }
    Bytes bytes = file(u"I001");
    int32 root = 0;
    std::memcpy(&root, bytes.data() + 4, 4);
    std::memcpy(bytes.data() + root + 3, &root, 4);
    put(u"I001", bytes);
    const auto db = open();
    db->SetIndex(1);
    EXPECT_NO_THROW(db->MoveFirst());
    EXPECT_EQ(db->Error(), 28);
    EXPECT_NO_THROW(db->Index(1));
    EXPECT_EQ(db->Error(), 28);
}

// New records tell that they were unlocked, as the public operation does.
TEST_F(Mended, AppendUnlocksWithItsNotice) {
    const auto db = make(kNormal);
    std::vector<int32> told;
    const auto heard = db->RecordChange.connect([&](int32 n) { told.push_back(n); });
    ASSERT_TRUE(db->Append());
    EXPECT_EQ(told, (std::vector<int32>{1, 1, 1}));  // locked, written, unlocked
}

// A store that fails midway gives the lock of its new record back: the next one would wait for it for ever.
TEST_F(Mended, AFailedStoreLeavesNoLock) {
    const auto db = make(kBig);
    addFive(*db);
    const auto record = db->Add();
    record->Fields(fNAME, u"Neu");
    disk.setFreeSpace(0);
    EXPECT_FALSE(record->Update());
    EXPECT_EQ(record->Error(), 61);
    disk.setFreeSpace(std::nullopt);
    const auto other = open();
    EXPECT_GT(addAddress(*other, {u"Neu", u"Ulm", u"", u""}), 0);
    EXPECT_TRUE(record->Update());
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Mended, ASecondLockDBIsStillHeld) {
    const auto db = make(kBig);
    ASSERT_TRUE(db->LockDB(true));
    ground.ui.defaultAnswer = 7;
    EXPECT_TRUE(db->LockDB(true));
    EXPECT_TRUE(ground.ui.boxes.empty());
}

// A new record stands in the indexes before it stands in the file. Whoever opens the index in between waits
// or looks again; a listener of the same object reads it as blank.
TEST_F(Mended, AnIndexIsOpenedWhileARecordIsAdded) {
    const auto db = make(kBig);
    addFive(*db);
    const auto other = open();
    std::vector<Raised> raised;
    const auto heard = db->IndexChange.connect(
        [&](int32) { raised.push_back(raisedBy([&] { other->Exist(u"Abel Bonn", 1); })); });
    ASSERT_GT(addAddress(*db, {u"Neu", u"Ulm", u"", u""}), 0);
    for (const auto& each : raised) EXPECT_EQ(each.number, 0) << toUtf8(each.text);
}

TEST_F(Mended, AListenerSearchesWhileARecordIsAdded) {
    const auto db = make(kBig);
    addFive(*db);
    std::vector<Raised> raised;
    const auto heard = db->IndexChange.connect(
        [&](int32) { raised.push_back(raisedBy([&] { db->Exist(u"Neu Ulm", 1); })); });
    ASSERT_GT(addAddress(*db, {u"Neu", u"Ulm", u"", u""}), 0);
    for (const auto& each : raised) EXPECT_EQ(each.number, 0) << toUtf8(each.text);
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Mended, AFlagWithoutDecimals) {
    const auto db = make(fieldsOf({{u"ZAHL", tsNumerisch, 10, 8}}), kNormal);
    db->Fields(1, u"12");
    EXPECT_EQ(db->Fields(1), u"12,");  // "##0." and no zeros
}

// A failure of the file while a record is read is recorded, not raised.
TEST(MendedFaults, AReadFaultWhileMovingIsRecorded) {
    MemoryFiles disk;
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
