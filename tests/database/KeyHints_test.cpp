// What searches remember of keys when the records do not lie in memory: it spares reads and never leads
// astray.
#include <random>

#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kRows = 2000;

Text nameOf(std::mt19937::result_type number) {
    return u"Kunde " + toText(static_cast<int32>(number % 5000));
}

class KeyHints : public testing::Test {
 protected:
    // What is read through a window does not count.
    KeyHints() { disk.offerWindows(false); }
    std::shared_ptr<clsTSDB> open() {
        auto db = rtm.OpenTSDB(kFolder);
        db->SetIndex(1);
        return db;
    }
    void fill() {
        const auto db = makeAddresses(rtm, kFolder, kBig);
        for (int32 i = 0; i < kRows; ++i)
            ASSERT_GT(addAddress(*db, {nameOf(random()), u"Bonn", u"1.00", u""}), 0);
    }
    int64 callsOf(clsTSDB& db, TextView name) {
        const int64 before = counted.calls();
        db.Gehezu(name);
        return counted.calls() - before;
    }
    int32 any() { return static_cast<int32>(random() % kRows) + 1; }
    static bool rename(clsTSDB& db, int32 record, const Text& name) {
        return stored(db.Record(record, true), {{fNAME, name}});
    }

    std::mt19937 random{4711};
    MemoryFiles disk;
    FailingFiles counted{disk};
    TestGround ground;
    StartedLibrary library{ground, counted};
    clsRtm rtm;
};

TEST_F(KeyHints, ASearchReadsFewRecords) {
    fill();
    const auto db = open();
    for (uint32 i = 0; i < 5000; ++i) db->Gehezu(nameOf(i));
    // The tree's header, three nodes, the neighbours, the record found once for the answer and twice to be
    // read whole, and the number of changes before and behind it: 11 levels of probes are not among them.
    for (uint32 i = 0; i < 5000; i += 7) ASSERT_LE(callsOf(*db, nameOf(i)), 12) << i;
}

TEST_F(KeyHints, KeysThatOthersChangedAreFound) {
    fill();
    const auto reader = open(), writer = open();
    for (int32 round = 0; round < 20; ++round) {
        // All hints of the reader are warm, some turn stale.
        for (int32 record = 1; record <= kRows; ++record) reader->Gehezu(reader->GetField(record, fNAME));
        for (int32 i = 0; i < 100; ++i) {
            ASSERT_TRUE(rename(*writer, any(), nameOf(random())));
        }
        for (int32 record = 1; record <= kRows; record += 3) {
            const Text name = writer->GetField(record, fNAME);
            reader->Gehezu(name);
            ASSERT_EQ(reader->Fields(fNAME), name) << record;
            const int32 first = reader->LogSatz();
            if (first > 1) {
                ASSERT_LT(TextCompare(reader->GetField(reader->Index(first - 1), fNAME), name), 0);
            }
        }
        // What the stale one writes goes to its place, too.
        for (int32 i = 0; i < 50; ++i) ASSERT_TRUE(rename(*reader, any(), nameOf(random())));
    }
    EXPECT_TRUE(consistent(*reader));
}

// Programs that do not know of Stand.tsd move keys and leave the number of changes as it was: what is
// remembered at a number is no proof.
TEST_F(KeyHints, ANumberThatStaysIsNoProof) {
    fill();
    const auto db = open(), other = open();
    for (int32 round = 0; round < 10; ++round) {
        for (uint32 i = 0; i < 5000; i += 3) db->Gehezu(nameOf(i));
        ASSERT_GT(addAddress(*db, {nameOf(random()), u"Bonn", u"1.00", u""}), 0);
        const Bytes number = disk.dump(path(u"Stand.tsd"));
        for (int32 i = 0; i < 300; ++i) ASSERT_TRUE(rename(*other, any(), nameOf(random())));
        disk.put(path(u"Stand.tsd"), number);
        for (int32 i = 0; i < 40; ++i) {
            ASSERT_GT(addAddress(*db, {nameOf(random()), u"Köln", u"1.00", u""}), 0);
            ASSERT_TRUE(rename(*db, any(), nameOf(random())));
        }
        ASSERT_TRUE(consistent(*db)) << round;
    }
}

TEST_F(KeyHints, AReadFaultWhileMovingIsRecordedAndNotRaised) {
    const auto db = makeAddresses(rtm, kFolder, kNormal);
    addFive(*db);
    counted.failAt(1, platform::SystemError::readFault);
    EXPECT_NO_THROW(db->MoveFirst());
    EXPECT_NE(db->Error(), 0);
}

}  // namespace
}  // namespace tsRtm::test
