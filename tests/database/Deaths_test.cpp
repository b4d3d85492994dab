// What somebody leaves who is killed in his work, at every change there is, and what faults of the disk
// leave: the state before it or the one behind it, and a database that goes on.
#include "tests/database/Operations.hpp"
#include "tests/support/FailingFiles.hpp"

namespace tsRtm::test {
namespace {

TEST_P(Deaths, LeaveTheOldStateOrTheNewOne) {
    int32 deaths = 0;
    for (const bool survivor : {false, true})
        for (const auto last : {LastWrite::none, LastWrite::firstHalf}) {
            const bool torn = last == LastWrite::firstHalf;
            // Half of a write within a page is more than a death can leave, so only the next opening bears
            // it.
            if ((!shared && (torn || survivor)) || (torn && survivor)) continue;
            std::size_t done = 0;
            dieAtEachChange(
                {survivor, single, last}, [&](clsTSDB& db) { done = work(db); },
                [&](clsTSDB& db, bool died) {
                    ++deaths;
                    EXPECT_TRUE(died || done == operation.steps.size());
                    if (survivor) {
                        ground.clock.advance(kUntilCounted);
                        expectState(rowsOf(db), done);
                        // Who writes mends; what was not told may show then.
                        for (const TextView name : {u"Vorn", u"Name1001"})
                            EXPECT_EQ(change(db, 1, uNAME, name), 0);
                    }
                    EXPECT_TRUE(consistent(db));
                    const FullRows found = rowsOf(db);
                    expectState(found, done, torn);
                    expectGoesOn(db, found);
                });
        }
    RecordProperty("deaths", std::to_string(deaths));
}

class Faults : public Deaths {};

// Each call of the file system fails once, and from then on: an error, no crash, and whole at the next
// opening.
TEST_P(Faults, LoseNothing) {
    const auto before = disk.snapshot();
    for (const auto times : {FailingFiles::Times::once, FailingFiles::Times::fromThenOn})
        for (int64 n = 1;; n += operation.kind == Kind::memos ? 1 : 1 + n / 40) {
            MemoryFiles left;
            left.offerWindows(std::get<1>(GetParam()).windows);
            left.restore(before);
            FailingFiles failing(left);
            failing.failAt(n, platform::SystemError::deviceError, times);
            SCOPED_TRACE(testing::Message()
                         << "call " << n << (times == FailingFiles::Times::once ? " once" : " for good"));
            std::size_t done = 0;
            {
                Process process(failing);
                try {
                    const auto db = process.rtm.OpenTSDB(kFolder, false, single);
                    if (db) done = work(*db);
                } catch (const Failure&) {  // damage raises
                }
            }
            if (failing.failures() == 0) break;
            expectState(left, done);
            if (HasFailure()) return;
        }
}

// A disk that fills up at any byte gives an error, and the database is whole afterwards.
TEST_P(Faults, OfAFullDiskLoseNothing) {
    const auto before = disk.snapshot();
    for (uint64 free = 0; free < 6000; free += free < 200 ? 7 : 211) {
        SCOPED_TRACE(testing::Message() << free << " bytes free");
        MemoryFiles left;
        left.restore(before);
        left.setFreeSpace(free);
        std::size_t done = 0;
        {
            Process process(left);
            const auto db = process.rtm.OpenTSDB(kFolder, false, single);
            if (db) done = work(*db);
        }
        left.setFreeSpace(std::nullopt);
        expectState(left, done);
        if (HasFailure()) return;
    }
}

// While somebody writes a reader sees in each cell the old content or the new one, and nothing old again when
// he has seen all that is new.
TEST_P(Deaths, HalfWayShowReadersOldOrNewCells) {
    if (!shared) return;
    const auto reader = openAs(kOther, true);
    const auto writer = openAs(0);
    for (std::size_t done = 0; done < operation.steps.size(); ++done) {
        int32 looks = 0;
        bool seen = false;
        const auto look = [&] {
            ++looks;
            for (const int32 record : {1, kBare, kChanged}) {
                const auto at = static_cast<std::size_t>(record - 1);
                const auto &old = states[done][at], &next = states[done + 1][at];
                const FullRow row = rowAt(*reader, record);
                for (const auto cell : {&FullRow::name, &FullRow::tag, &FullRow::text, &FullRow::notiz})
                    EXPECT_TRUE(row.*cell == old.*cell || row.*cell == next.*cell) << row;
                EXPECT_TRUE(row.chain == old.chain || row.chain == next.chain) << row;
                EXPECT_TRUE(!seen || row == next) << row;
                seen = seen || (row == next && !(old == next));
            }
        };
        inEachChange(look, [&] { EXPECT_TRUE(operation.steps[done](*writer)); });
        EXPECT_GT(looks, 0);
        EXPECT_EQ(rowAt(*reader, kChanged), states[done + 1][kChanged - 1]);
    }
}

// Whoever mends what the first one left is killed, too, at every one of his changes.
class HealersDeaths : public Deaths {};

TEST_P(HealersDeaths, AreHealedByTheNext) {
    const auto before = disk.snapshot();
    bool died = true;
    for (int64 first = 1; died && !HasFailure(); ++first) {
        SCOPED_TRACE(testing::Message() << "the first was killed at change " << first);
        disk.restore(before);
        auto victim = openAsVictim();
        files.dieAt(first, LastWrite::none, CrashingFiles::Manner::silently);
        const std::size_t done = work(*victim);
        victim.reset();
        died = files.died();
        rtmMain::state().updatesUnderWay.clear();
        if (!died) break;
        const FullRow added = numbered(300);
        for (const auto last : {LastWrite::none, LastWrite::firstHalf}) {
            bool told = false;
            dieAtEachChange(
                {false, false, last}, [&](clsTSDB& db) { told = store(db.Add(), added) && !files.died(); },
                [&](clsTSDB& db, bool) {
                    FullRows found = rowsOf(db);
                    EXPECT_TRUE(!told || found.back() == added);
                    found.resize(states[0].size());
                    expectState(found, done);
                    EXPECT_TRUE(consistent(db));
                });
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Database, Deaths, testing::ValuesIn(cases()), caseName);
INSTANTIATE_TEST_SUITE_P(Database, Faults,
                         testing::ValuesIn(those({"Append", "Add", "UpdateKey", "Sort", "Bulk", "TwoMemos",
                                                  "NewMemos", "Grow", "Merge", "FirstRow", "Pack",
                                                  "CreateIndex"})),
                         caseName);
INSTANTIATE_TEST_SUITE_P(Database, HealersDeaths, testing::ValuesIn(those({"UpdateKey"})), caseName);

}  // namespace
}  // namespace tsRtm::test
