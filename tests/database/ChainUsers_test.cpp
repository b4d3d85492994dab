// Chains when several work on them.
#include "tests/database/ChainDatabase.hpp"
#include "tests/support/CrashingFiles.hpp"

namespace tsRtm::test {
namespace {

class ChainUsers : public MemoryDatabase, public testing::WithParamInterface<int32> {
 protected:
    std::shared_ptr<clsTSDB> one = makeChains(disk, rtm, {.length = GetParam()}, 2);
    std::shared_ptr<clsTSDB> other = open();
};

TEST_P(ChainUsers, RowsAndFieldsOfBothStay) {
    ASSERT_TRUE(one && other);
    TextTable all;
    one->AktSatzNr(1);
    other->AktSatzNr(1);
    for (int32 n = 0; n < 12; ++n) {
        auto& db = n % 2 == 0 ? *one : *other;
        const std::vector<Text> row{u"r", toText(n)};
        TextTable table{{}, row};
        int32 count = 1;
        // Neither reads the record again: its pointers in memory are old by then.
        const bool atHead = n % 3 == 0;
        db.KetteAction(atHead ? 7 : 5, fPOS, table, count);
        EXPECT_EQ(db.Error(), 0);
        all.insert(atHead ? all.begin() : all.end(), row);
        auto& writer = n % 2 == 0 ? *other : *one;
        writer.Fields(fKEY, u"K" + toText(n));
        writer.Update();
        EXPECT_EQ(writer.Error(), 0);
        if (n == 5) writer.PutSatz(1);
        TextTable read;
        EXPECT_TRUE(writer.KetteLesen(1, read));
        EXPECT_EQ(read, all);
        EXPECT_EQ(db.GetField(1, fKEY), u"K" + toText(n));
    }
    EXPECT_TRUE(consistent(*one));
}

// Byte 0 is held by somebody who takes no other lock: waited for in silence, and then nothing is written.
TEST_P(ChainUsers, TheLockOfTheFileIsWaitedForInSilence) {
    ASSERT_EQ(addRow(*one, 1, End::tail, {u"a", u"1"}), 0);
    auto older = std::move(*disk.open(path(u"KetteDat.002"), {.access = platform::Access::readWrite}));
    ASSERT_FALSE(failed(older->tryLock({0, 1})));
    const auto before = disk.snapshot();
    const float64 start = seconds();
    EXPECT_EQ(addRow(*one, 1, End::tail, {u"b", u"2"}), 70);
    EXPECT_GE(seconds() - start, 5);
    EXPECT_TRUE(ground.ui.boxes.empty());
    EXPECT_EQ(disk.snapshot(), before);
    EXPECT_EQ(chainAt(*other, 1), rowsNamed(u"a"));
    bool first = true;
    ground.clock.onSleep = [&] {
        if (!std::exchange(first, false)) return;
        EXPECT_FALSE(failed(older->unlock({0, 1})));
    };
    EXPECT_EQ(addRow(*other, 1, End::tail, {u"b", u"2"}), 0);
    ground.clock.onSleep = nullptr;
    EXPECT_FALSE(first);
    EXPECT_EQ(chainAt(*one, 1), rowsNamed(u"ab"));
    // The lock is given back.
    EXPECT_FALSE(failed(older->tryLock({0, 1})));
}

INSTANTIATE_TEST_SUITE_P(Lengths, ChainUsers, testing::Values(5, 10));

// An older program takes no lock while it is given a row: it keeps the row, and ours goes elsewhere.
TEST(ChainRaces, ARowThatWasGivenToTwoIsLeftToTheOther) {
    MemoryFiles disk;
    CrashingFiles files(disk);
    TestGround ground;
    const StartedLibrary library(ground, files);
    clsRtm rtm;
    const auto db = makeChains(disk, rtm, {}, 1);
    ASSERT_TRUE(db);
    const Text name = Text(kChainFolder) + u".DBD/KetteDat.002";
    const Bytes theirs = "   0   0old      9";
    bool first = true;
    files.interrupt([&] {
        if (!disk.exists(name) || !disk.dump(name).starts_with("   2   3")) return;
        if (!std::exchange(first, false)) return;
        Bytes bytes = disk.dump(name).replace(0, 8, "   3   4");
        bytes.resize(36, ' ');
        disk.put(name, bytes + theirs);
    });
    EXPECT_EQ(addRow(*db, 1, End::tail, {u"n", u"1"}), 0);
    files.interrupt(nullptr);
    EXPECT_FALSE(first);
    EXPECT_EQ(disk.dump(name).substr(36, 18), theirs);
    EXPECT_EQ(chainAt(*db, 1), rowsNamed(u"n"));
    EXPECT_EQ(disk.dump(name).substr(54, 8), "   0   0");
    EXPECT_TRUE(consistent(*db));
}

}  // namespace
}  // namespace tsRtm::test
