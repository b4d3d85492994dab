// Faults that the engine once had, each mended by the rule its test names.
#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/FailingFiles.hpp"

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

// A store that fails midway gives the lock of its new record back, or the next one would wait for it for
// ever; and what follows it writes no record that the indexes do not know.
TEST_F(Mended, AFailedStoreLeavesNoLockAndNoHalfRecord) {
    const auto record = db->Add();
    record->Fields(fNAME, u"Neu");
    db->AktSatzNr(2);
    disk.setFreeSpace(0);
    EXPECT_TOLD("no|61", record->Update(), record->Error());
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

// An application may mark records as it likes: one that has a mark was written.
TEST_F(Mended, AnUncleanEndLeavesARecordWithAMarkOfItsOwn) {
    db->PutField(3, 0, u"X");
    db.reset();
    other.reset();
    Bytes count = file(u"Count.tsd");
    count[9] = '+';
    put(u"Count.tsd", count);
    db = open();
    EXPECT_TOLD("X|Abel", db->GetField(3, 0), db->GetField(3, fNAME));
    EXPECT_TRUE(db->Befunde().empty());
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
