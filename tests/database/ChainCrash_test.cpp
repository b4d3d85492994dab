// Chains when somebody dies in a write, and when several work on them.
#include <cstdio>

#include "tests/database/ChainDatabase.hpp"
#include "tests/support/CrashingFiles.hpp"

namespace tsRtm::test {
namespace {

using LastWrite = CrashingFiles::LastWrite;
constexpr int32 kNo = 7;
enum : int32 { kSurvivor, kVictim };

enum class Job { replace, shrink, clear, grow, first, tail, head, merge };
constexpr const char* kJobs[] = {"replace", "shrink", "clear", "grow", "first", "tail", "head", "merge"};

struct Case {
    Job job;
    int32 length;
    bool windows;
};
std::string caseName(const testing::TestParamInfo<Case>& info) {
    return kJobs[static_cast<std::size_t>(info.param.job)] + std::string("In") +
           std::to_string(info.param.length) + (info.param.windows ? "" : "WithoutWindows");
}

// Record 1 has abc, record 2 is worked on: de, or none; record 3 has nothing. Rows of a longer chain are
// free.
class ChainDeaths : public testing::TestWithParam<Case> {
 protected:
    Text before() const { return GetParam().job == Job::first ? u"" : u"de"; }
    Text after() const {
        switch (GetParam().job) {
            case Job::replace:
                return u"xyz";
            case Job::shrink:
                return u"d";
            case Job::clear:
                return u"";
            case Job::grow:
                return u"defg";
            case Job::first:
                return u"n";
            case Job::tail:
                return u"den";
            case Job::head:
                return u"nde";
            case Job::merge:
                return u"nEf";
        }
        return u"";
    }
    MemoryFiles::Snapshot prepared() const {
        MemoryFiles disk;
        TestGround ground;
        const StartedLibrary library(ground, disk);
        clsRtm rtm;
        const auto db = makeChains(disk, rtm, {.length = GetParam().length}, 3);
        EXPECT_EQ(writeChain(*db, 3, rowsNamed(u"uvwxyz")), 0);
        EXPECT_EQ(writeChain(*db, 1, rowsNamed(u"abc")), 0);
        EXPECT_EQ(writeChain(*db, 2, rowsNamed(before())), 0);
        EXPECT_EQ(writeChain(*db, 3, rowsNamed(u"u")), 0);
        EXPECT_EQ(writeChain(*db, 3, {}), 0);
        db->Schliesse();
        return disk.snapshot();
    }
    // Whether the work was told as done.
    bool work(clsTSDB& db) const {
        switch (GetParam().job) {
            case Job::first:
            case Job::tail:
                return addRow(db, 2, End::tail, {u"n", u"1"}) == 0;
            case Job::head:
                return addRow(db, 2, End::head, {u"n", u"1"}) == 0;
            case Job::merge: {
                const auto rows = db.Record(2)->Kette(fPOS);
                rows->Inhalt(rowsNamed(after()));
                return rows->Update();
            }
            default:
                return writeChain(db, 2, rowsNamed(after())) == 0;
        }
    }
    static Text named(clsTSDB& db, int32 record) {
        Text out;
        for (const auto& row : chainAt(db, record)) out += row[0];
        return out;
    }
    // The chain in work is the old one or the new one (`torn`: or none of both), all others are theirs, and
    // it goes on.
    void expectWhole(clsTSDB& db, bool told, bool torn) const {
        Text now = named(db, 2);
        EXPECT_TRUE(now == after() || (!told && (torn || now == before()))) << toUtf8(now);
        EXPECT_EQ(named(db, 1), u"abc");
        EXPECT_EQ(named(db, 3), u"");
        EXPECT_EQ(db.Error(), 0);
        EXPECT_TRUE(consistent(db));
        for (const TextView row : {u"1", u"2", u"3"}) {
            EXPECT_EQ(addRow(db, 3, End::tail, {Text(row), u"1"}), 0);
            EXPECT_EQ(addRow(db, 2, End::tail, {Text(row), u"1"}), 0);
            EXPECT_EQ(addRow(db, 1, End::head, {Text(row), u"1"}), 0);
            now += row;
        }
        EXPECT_EQ(named(db, 1), u"321abc");
        EXPECT_EQ(named(db, 2), now);
        EXPECT_EQ(named(db, 3), u"123");
        EXPECT_TRUE(consistent(db));
    }
};

// All programs are gone: the next opening finds it. And one lives: he works on at once.
TEST_P(ChainDeaths, LeaveTheOldChainOrTheNewOne) {
    const auto before = prepared();
    int64 points = 0;
    for (const auto last : {LastWrite::none, LastWrite::firstHalf})
        for (const bool survivor : {false, true})
            for (int64 n = 1;; ++n) {
                MemoryFiles disk;
                disk.offerWindows(GetParam().windows);
                disk.restore(before);
                CrashingFiles files(disk);
                TestGround ground;
                ground.ui.defaultAnswer = kNo;
                const StartedLibrary library(ground, files);
                clsRtm rtm;
                files.as(kSurvivor);
                auto other = survivor ? rtm.OpenTSDB(kChainFolder) : nullptr;
                files.as(kVictim);
                auto victim = rtm.OpenTSDB(kChainFolder);
                ASSERT_TRUE(victim);
                files.dieAt(n, last, CrashingFiles::Manner::silently);
                const bool told = work(*victim) && !files.died();
                const bool died = files.died();
                victim.reset();
                SCOPED_TRACE(testing::Message()
                             << "killed at change " << n << (last == LastWrite::none ? "" : ", half written")
                             << (survivor ? ", somebody works on" : ""));
                files.as(kSurvivor);
                if (!other) other = rtm.OpenTSDB(kChainFolder);
                ASSERT_TRUE(other);
                // Half of a write within a page is more than a death can leave, so only the next opening
                // bears it.
                if (last == LastWrite::none || !survivor)
                    expectWhole(*other, told, last == LastWrite::firstHalf);
                other.reset();
                if (HasFailure()) return;
                if (!died) break;
                ++points;
            }
    EXPECT_GT(points, 0);
    RecordProperty("points", std::to_string(points));
    std::printf("[   INFO   ] %lld crash points\n", static_cast<long long>(points));
}

// In each change of the writer somebody reads: the old chain or the new one, and that of others.
TEST_P(ChainDeaths, ReadersBesideAWriterSeeOneChain) {
    MemoryFiles disk;
    disk.offerWindows(GetParam().windows);
    disk.restore(prepared());
    CrashingFiles files(disk);
    TestGround ground;
    const StartedLibrary library(ground, files);
    clsRtm rtm;
    files.as(kSurvivor);
    const auto reader = rtm.OpenTSDB(kChainFolder, true);
    files.as(kVictim);
    const auto writer = rtm.OpenTSDB(kChainFolder);
    int32 looks = 0;
    for (const auto part : {LastWrite::none}) {
        bool shown = false;
        files.interrupt(
            [&] {
                ++looks;
                const Text now = named(*reader, 2);
                EXPECT_TRUE(now == after() || (!shown && now == before())) << toUtf8(now);
                shown = now == after();
                EXPECT_EQ(named(*reader, 1), u"abc");
            },
            part);
        EXPECT_TRUE(work(*writer));
    }
    files.interrupt(nullptr);
    EXPECT_GT(looks, 0);
    EXPECT_EQ(named(*reader, 2), after());
}

std::vector<Case> allCases() {
    std::vector<Case> out;
    for (const Job job :
         {Job::replace, Job::shrink, Job::clear, Job::grow, Job::first, Job::tail, Job::head, Job::merge})
        for (const int32 length : {4, 8, 11})
            for (const bool windows : {true, false})
                if (windows || length == 8) out.push_back({job, length, windows});
    return out;
}
INSTANTIATE_TEST_SUITE_P(Database, ChainDeaths, testing::ValuesIn(allCases()), caseName);

// --- Several at work

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

// The directory has become another database's: its chains are not ours.
TEST_F(MemoryDatabase, ChainsOfAnotherDatabaseInThePlaceOfOursAreRefused) {
    const auto db = makeChains(disk, rtm, {}, 1);
    ASSERT_TRUE(db);
    disk.restore(disk.snapshot());
    EXPECT_EQ(writeChain(*db, 1, rowsNamed(u"a")), 70);
    EXPECT_FALSE(disk.exists(path(u"KetteDat.002")));
}

}  // namespace
}  // namespace tsRtm::test
