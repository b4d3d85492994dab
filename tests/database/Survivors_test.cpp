// Three users have a database open and one is killed, at every change he makes: the two others work on. They
// do nothing when he dies, or one of them began in the middle of his last change to add a record or to
// search, and may be waiting for him.
#include "tests/database/Operations.hpp"

namespace tsRtm::test {
namespace {

class Survivors : public Deaths {
 protected:
    static constexpr int32 kCarl = 2;
    static constexpr int32 kHeld = 5;  // locked by the first of them from beginning to end
    // What an operation may wait on the clock, which only waits move: as long as a reader looks on while
    // somebody rebuilds, and far below the wait for a lock.
    static constexpr std::chrono::nanoseconds kPatience = std::chrono::milliseconds(200);
    enum class Moment { idle, adding, searching };

    std::map<int32, FullRow> told;
    std::shared_ptr<clsTSDB> anna, carl;
    int32 waits = 0;

    // Which record was told as stored.
    int32 work(clsTSDB& db) const {
        const std::string name = operation.name;
        return name == "Append" ? append(db) : name == "Add" ? addNew(db) : updateKey(db) ? kChanged : 0;
    }
    template <class Job>
    void as(int32 user, Job job) {
        files.as(user);
        const auto start = ground.clock.elapsed();
        asAnotherProgram([&] { job(user == kCarl ? *carl : *anna); });
        EXPECT_LE(ground.clock.elapsed() - start, kPatience);
    }
    void add(clsTSDB& db, int32 n) {
        const auto record = db.Add();
        ASSERT_TRUE(store(record, numbered(n))) << "a survivor could not add";
        EXPECT_TRUE(told.emplace(record->Satznummer(), numbered(n)).second) << "a number was given twice";
    }
    void change(clsTSDB& db, int32 number, int32 n) {
        EXPECT_TRUE(db.Sperren(number, -1));
        EXPECT_EQ(test::change(db, number, uNAME, numbered(n).name), 0) << "a survivor could not change";
        EXPECT_TRUE(db.Entsperren(number));
        told[number].name = numbered(n).name;
        told[number].deleted = false;
    }
    static void search(clsTSDB& db) {
        db.SetIndex(1);
        for (const int32 n : {1, 30, kTwoLeaves}) {
            db.Gehezu(numbered(n).name);
            EXPECT_EQ(db.AktSatzNr(), n) << "searched before anybody wrote again";
            EXPECT_EQ(db.Index(db.LogSatz()), n);
        }
        EXPECT_EQ(db.Error(), 0);
    }
    // All that was told is there, is found by its key, and all indexes agree.
    void expectTruth(clsTSDB& db, bool torn) {
        const FullRows rows = rowsOf(db);
        EXPECT_TRUE(rows.size() == told.size() || rows.size() == told.size() + 1) << rows.size();
        db.SetIndex(1);
        for (const auto& [number, row] : told) {
            const FullRow& have = rows[static_cast<std::size_t>(number - 1)];
            const bool inWork = number == kChanged && row == states[0][kChanged - 1];
            if (inWork && (torn || have == states[1][kChanged - 1])) continue;
            EXPECT_EQ(have, row) << "record " << number;
            db.Gehezu(row.name + u" " + row.ort);
            EXPECT_EQ(db.AktSatzNr(), number);
            EXPECT_TRUE(db.Exist(row.name + u" " + row.ort, 1));
        }
        EXPECT_EQ(db.Error(), 0);
        EXPECT_TRUE(consistent(db));
    }
    // One death; false where the victim outlives his n-th change.
    bool dies(int64 n, Moment moment, LastWrite last) {
        told.clear();
        for (const auto& row : states[0]) told.emplace(static_cast<int32>(told.size()) + 1, row);
        anna = openAs(kOther);
        carl = openAs(kCarl);
        as(kOther, [](clsTSDB& db) { EXPECT_TRUE(db.Sperren(kHeld, -1)); });
        auto victim = openAsVictim();
        const int32 dying = lastVictim();
        const auto others = [&] {
            if (files.changes() + 1 == n) killMeanwhile(dying, moment);
        };
        if (moment == Moment::idle)
            files.dieAt(n, last, CrashingFiles::Manner::silently);
        else
            files.interrupt(others, last);
        const int32 done = work(*victim);
        const bool lived = !files.died();
        victim.reset();
        const bool died = files.died();
        files.interrupt(nullptr);
        rtmMain::state().updatesUnderWay.clear();
        if (done > 0 && lived) {
            EXPECT_TRUE(done == kChanged || !told.contains(done)) << "a number was given twice";
            told[done] = done == kChanged ? states[1][kChanged - 1] : states[1].back();
        }
        workOn(last == LastWrite::firstHalf);
        return died;
    }
    // Where the others have to wait he is killed meanwhile, else when they are done.
    void killMeanwhile(int32 dying, Moment moment) {
        int32 sleeps = 0;
        ground.clock.onSleep = [&] {
            if (++sleeps != 3) return;
            files.kill(dying);
            ++waits;
        };
        if (moment == Moment::adding)
            as(kOther, [this](clsTSDB& db) { add(db, 700); });
        else
            as(kCarl, [](clsTSDB& db) { search(db); });
        ground.clock.onSleep = nullptr;
        files.kill(dying);
    }
    void workOn(bool torn) {
        for (const int32 user : {kCarl, kOther}) as(user, [](clsTSDB& db) { search(db); });
        for (const int32 user : {kOther, kCarl})
            as(user, [&](clsTSDB& db) {
                add(db, 200 + user);
                change(db, 20 + user, 400 + user);
            });
        ground.clock.advance(kUntilCounted);
        for (const int32 user : {kOther, kCarl}) as(user, [&](clsTSDB& db) { expectTruth(db, torn); });
        as(kCarl, [](clsTSDB& db) {
            EXPECT_TRUE(db.Gesperrt(kHeld)) << "a survivor lost his lock";
            EXPECT_FALSE(db.Gesperrt(kChanged) || db.Gesperrt(0)) << "the dead one kept his lock";
        });
        anna.reset();
        carl.reset();
        EXPECT_EQ(disk.openings(), 0u);
        expectTruth(*openAs(kCarl), torn);
    }
};

TEST_P(Survivors, WorkOnWhereverOneOfThemDies) {
    const auto before = disk.snapshot();
    int32 points = 0;
    for (const auto moment : {Moment::idle, Moment::adding, Moment::searching})
        for (const auto last : {LastWrite::none, LastWrite::firstHalf}) {
            bool died = true;
            for (int64 n = 1; died && !HasFailure(); ++n, ++points) {
                SCOPED_TRACE(testing::Message()
                             << "killed at change " << n << ", moment " << static_cast<int>(moment)
                             << (last == LastWrite::none ? "" : ", half written"));
                disk.restore(before);
                died = dies(n, moment, last);
            }
        }
    EXPECT_GT(waits, points / 6) << "the others hardly ever waited";
}

INSTANTIATE_TEST_SUITE_P(Database, Survivors, testing::ValuesIn(those({"Append", "Add", "UpdateKey"})),
                         caseName);

}  // namespace
}  // namespace tsRtm::test
