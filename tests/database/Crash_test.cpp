// What a process leaves that is killed between two writes or within one, at every write there is, and what
// faults of the disk leave.
#include <cstdio>

#include "tests/database/Deaths.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tsRtm/database/BulkLoader.hpp"

namespace tsRtm::test {
namespace {

using platform::SystemError;
using enum CrashingFiles::LastWrite;
constexpr auto kSilently = CrashingFiles::Manner::silently;  // files are closed by destructors

enum class Job { append, add, addMany, updateKey, updatePlain, sort, bulk };

struct Sweep {
    const char* name;
    int32 max;
    Job job;
};

using Ground = std::tuple<Sweep, bool>;  // and whether files have windows
std::string groundName(const testing::TestParamInfo<Ground>& info) {
    return std::get<0>(info.param).name + std::string(std::get<1>(info.param) ? "" : "WithoutWindows");
}

// One line at the end: how many deaths each sweep died.
class CrashPoints : public testing::Environment {
 public:
    void note(int64 points) {
        const auto& test = *testing::UnitTest::GetInstance()->current_test_info();
        testing::Test::RecordProperty("points", std::to_string(points));
        line_ += std::string(line_.empty() ? "" : ", ") + test.name() + " " + std::to_string(points);
        sum_ += points;
    }
    void TearDown() override {
        if (sum_ > 0)
            std::printf("[   INFO   ] %lld crash points: %s\n", static_cast<long long>(sum_), line_.c_str());
    }

 private:
    std::string line_;
    int64 sum_ = 0;
};
auto* const crashPoints = static_cast<CrashPoints*>(testing::AddGlobalTestEnvironment(new CrashPoints));

class CrashSweep : public testing::TestWithParam<Ground> {
 protected:
    static const Sweep& sweep() { return std::get<0>(GetParam()); }

    // The disk before the work.
    void prepare(MemoryFiles& disk) {
        if (before_.empty()) before_ = preparedDisk(sweep().max);
        disk.offerWindows(std::get<1>(GetParam()));
        disk.restore(before_);
    }

    // The work that is interrupted.
    static void work(platform::FileSystem& files, const Tell& tell) {
        Process process(files);
        const auto db = process.rtm.OpenTSDB(kFolder, false, sweep().job == Job::bulk);
        if (!db) return;
        switch (sweep().job) {
            case Job::append:
                return perform(Work::append, *db, tell);
            case Job::add:
                return perform(Work::add, *db, tell);
            case Job::updateKey:
                return perform(Work::updateKey, *db, tell);
            case Job::updatePlain:  // the same text as before: no key changes
                return update(*db, kChanged, numbered(kChanged), tell);
            case Job::addMany:
                for (int32 n = 1; n <= 45; ++n) add(*db, numbered(200 + n), tell);
                return;
            case Job::sort:
                db->Sort();
                return;
            case Job::bulk:
                return load(*db, tell);
        }
    }

    static void load(clsTSDB& db, const Tell& tell) {
        BulkLoader loader(db);
        for (int32 n = 1; n <= 45; ++n) {
            const Address row = numbered(200 + n);
            const TextView texts[] = {row.name, row.ort, row.betrag, row.tag};
            for (int32 field = 1; field <= 4; ++field) loader.set(field, texts[field - 1]);
            if (!loader.add()) return;
        }
        if (!loader.finish()) return;
        for (int32 n = 1; n <= 45; ++n) tell(kRecords + n, numbered(200 + n));
    }

    // What the next process finds: all that was told as stored, the record in work as it was or as it was to
    // be (`torn`: neither, for nothing can mend a record that was half written over), and a database that
    // goes on.
    static void expectWhole(MemoryFiles& disk, const Told& told, bool torn = false) {
        Process process(disk);
        const auto db = process.rtm.OpenTSDB(kFolder);
        ASSERT_TRUE(db);
        EXPECT_GE(db->AnzahlDSaetze(), kRecords);
        for (int32 n = 1; n <= kRecords; ++n) {
            const Address have = addressAt(*db, n);
            const bool inWork = n == kChanged && sweep().job == Job::updateKey && !told.contains(n);
            if (inWork && (torn || have == rewritten())) continue;
            EXPECT_EQ(have, told.contains(n) ? told.at(n) : numbered(n)) << n;
        }
        for (const auto& [n, address] : told) EXPECT_EQ(addressAt(*db, n), address) << n;
        EXPECT_TRUE(consistent(*db));
        // It goes on as if nothing had been.
        EXPECT_GT(addAddress(*db, kNewAddress), 0);
        EXPECT_TRUE(consistent(*db));
    }

 private:
    MemoryFiles::Snapshot before_;
};

TEST_P(CrashSweep, LeavesOldOrNewAtEveryWrite) {
    int64 points = 0;
    for (const auto last : {none, firstHalf})
        for (int64 n = 1;; ++n) {
            MemoryFiles disk;
            prepare(disk);
            CrashingFiles files(disk);
            files.dieAt(n, last, kSilently);
            Told told;
            work(files, [&](int32 number, const Address& address) {
                if (!files.died()) told[number] = address;
            });
            SCOPED_TRACE(testing::Message()
                         << "killed at change " << n << (last == none ? "" : ", half written"));
            expectWhole(disk, told, last == firstHalf);
            if (HasFatalFailure()) return;
            if (!files.died()) break;
            ++points;
        }
    crashPoints->note(points);
    EXPECT_GT(points, 0);
}

// Each call of the file system fails once, and from then on: an error, no crash, and whole at the next
// opening.
TEST_P(CrashSweep, SurvivesEveryFailingCall) {
    for (const auto times : {FailingFiles::Times::once, FailingFiles::Times::fromThenOn}) {
        for (int64 n = 1;; n += 1 + n / 40) {
            MemoryFiles disk;
            prepare(disk);
            FailingFiles files(disk);
            files.failAt(n, SystemError::deviceError, times);
            SCOPED_TRACE(testing::Message()
                         << "call " << n << (times == FailingFiles::Times::once ? " once" : " for good"));
            Told told;
            try {
                work(files, [&](int32 number, const Address& address) { told[number] = address; });
            } catch (const Failure&) {  // damage raises
            }
            if (files.failures() == 0) break;
            expectWhole(disk, told);
            if (HasFatalFailure()) return;
        }
    }
}

// A disk that fills up at any byte gives an error, and the database is whole afterwards.
TEST_P(CrashSweep, SurvivesAFullDisk) {
    for (uint64 free = 0; free < 6000; free += free < 200 ? 7 : 211) {
        MemoryFiles disk;
        prepare(disk);
        disk.setFreeSpace(free);
        SCOPED_TRACE(testing::Message() << free << " bytes free");
        Told told;
        work(disk, [&](int32 number, const Address& address) { told[number] = address; });
        disk.setFreeSpace(std::nullopt);
        expectWhole(disk, told);
        if (HasFatalFailure()) return;
    }
}

// Whoever mends what the first one left is killed, too, at every one of his changes.
class HealingSweep : public CrashSweep {};

TEST_P(HealingSweep, AKilledHealerIsHealedByTheNext) {
    int64 points = 0;
    bool died = true;
    for (int64 first = 1; died; ++first)
        for (const auto last : {none, firstHalf}) {
            MemoryFiles left;
            prepare(left);
            {
                CrashingFiles files(left);
                files.dieAt(first, none, kSilently);
                work(files, [](int32, const Address&) {});
                died = files.died();
            }
            const auto found = left.snapshot();
            bool healerDied = died;
            for (int64 second = 1; healerDied; ++second) {
                left.restore(found);
                CrashingFiles files(left);
                files.dieAt(second, last, kSilently);
                Told told;
                {
                    Process healer(files);
                    if (const auto db = healer.rtm.OpenTSDB(kFolder))
                        add(*db, numbered(300), [&](int32 number, const Address& address) {
                            if (!files.died()) told[number] = address;
                        });
                }
                healerDied = files.died();
                points += healerDied ? 1 : 0;
                SCOPED_TRACE(testing::Message()
                             << "killed at change " << first << ", the healer at " << second);
                expectWhole(left, told);
                if (HasFailure()) return;
            }
        }
    crashPoints->note(points);
    EXPECT_GT(points, 0);
}

constexpr Sweep kSweeps[] = {{"treeAppend", kBig, Job::append},
                             {"treeAdd", kBig, Job::add},
                             {"treeAddMany", kBig, Job::addMany},
                             {"treeUpdateKey", kBig, Job::updateKey},
                             {"treeUpdatePlain", kBig, Job::updatePlain},
                             {"treeSort", kBig, Job::sort},
                             {"treeBulk", kBig, Job::bulk},
                             {"flatAppend", kNormal, Job::append},
                             {"flatAdd", kNormal, Job::add},
                             {"flatAddMany", kNormal, Job::addMany},
                             {"flatUpdateKey", kNormal, Job::updateKey},
                             {"flatSort", kNormal, Job::sort},
                             {"flatBulk", kNormal, Job::bulk}};
INSTANTIATE_TEST_SUITE_P(Database, CrashSweep, testing::Combine(testing::ValuesIn(kSweeps), testing::Bool()),
                         groundName);

constexpr Sweep kToHeal[] = {{"treeUpdateKey", kBig, Job::updateKey},
                             {"flatUpdateKey", kNormal, Job::updateKey}};
INSTANTIATE_TEST_SUITE_P(Database, HealingSweep,
                         testing::Combine(testing::ValuesIn(kToHeal), testing::Bool()), groundName);

}  // namespace
}  // namespace tsRtm::test
