// Three users have a database open and one is killed, at every change he makes: the two others work on.
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "tests/database/Deaths.hpp"

namespace tsRtm::test {
namespace {

using LastWrite = CrashingFiles::LastWrite;
using namespace std::chrono_literals;

enum : int32 { kAnna, kVictim, kCarl, kUsers };
constexpr int32 kHeld = 5;  // the record that Anna holds from beginning to end

// What an operation may wait on the double's clock, which only waits move: as long as a reader looks on while
// somebody rebuilds, and far below the wait for a lock.
constexpr std::chrono::nanoseconds kPatience = 200ms;

// A user counts the records of others anew after six times NetWait.
constexpr std::chrono::nanoseconds kUntilCounted = 31s;

// Of what the victim dies, on which form of index, and whether files have windows.
struct Death {
    Work work;
    int32 max;
    bool windows;
};
std::string deathName(const testing::TestParamInfo<Death>& info) {
    const char* const works[] = {"Append", "Add", "UpdateKey"};
    return std::string(info.param.max == kBig ? "tree" : "flat") +
           works[static_cast<std::size_t>(info.param.work)] + (info.param.windows ? "" : "WithoutWindows");
}

// What another one does when the victim dies: nothing, or he began within the victim's last change and may be
// waiting for it.
enum class Moment { idle, adding, searching };

// The disk and its users, each with objects of his own.
class Office {
 public:
    Office(const MemoryFiles::Snapshot& before, bool windows) {
        disk.offerWindows(windows);
        disk.restore(before);
        for (auto& user : users_) user.rtm = std::make_unique<clsRtm>();
    }
    ~Office() {
        for (int32 user = 0; user < kUsers; ++user) {
            files.as(user);
            users_[user].db.reset();
        }
    }
    Office(const Office&) = delete;
    Office& operator=(const Office&) = delete;

    void open(int32 user) {
        files.as(user);
        users_[user].db = users_[user].rtm->OpenTSDB(kFolder);
    }
    void close(int32 user) {
        files.as(user);
        users_[user].db.reset();
    }
    // Lets a user work; nothing where he has no database. To the library he is another program than one that
    // is in the middle of its work.
    template <class Job>
    void as(int32 user, Job job) {
        files.as(user);
        auto& clock = process.ground.clock;
        const auto start = clock.elapsed();
        const auto others = std::exchange(rtmMain::state().updatesUnderWay, {});
        if (users_[user].db) job(*users_[user].db);
        rtmMain::state().updatesUnderWay = others;
        if (user != kVictim) longest = std::max(longest, clock.elapsed() - start);
    }
    Tell teller() {
        return [this](int32 number, const Address& address) {
            if (files.died()) return;
            EXPECT_TRUE(number <= kRecords || !told.contains(number))
                << "record " << number << " was given away twice";
            told[number] = address;
        };
    }

    MemoryFiles disk;
    CrashingFiles files{disk};
    Process process{files};
    Told told;
    std::chrono::nanoseconds longest{};

 private:
    struct User {
        std::unique_ptr<clsRtm> rtm;
        std::shared_ptr<clsTSDB> db;
    };
    User users_[kUsers];
};

// Every told record is there with what was told last, is found by its key, and all indexes agree.
void expectTruth(clsTSDB& db, const Told& told, const Death& death, bool torn) {
    const auto count = static_cast<int32>(told.size());
    const int32 records = db.AnzahlDSaetze();
    EXPECT_GE(records, count);
    EXPECT_LE(records, count + 1) << "at most the record that the dead one was adding";
    db.SetIndex(1);
    for (const auto& [number, address] : told) {
        const Address have = addressAt(db, number);
        const bool inWork = death.work == Work::updateKey && number == kChanged && address != rewritten();
        if (inWork && (torn || have == rewritten())) continue;
        EXPECT_EQ(have, address) << "record " << number;
        db.Gehezu(keyOf(address));
        EXPECT_EQ(db.AktSatzNr(), number) << toUtf8(keyOf(address));
        EXPECT_EQ(db.Index(db.LogSatz()), number);
        EXPECT_TRUE(db.Exist(keyOf(address), 1));
    }
    EXPECT_EQ(db.Error(), 0);
    EXPECT_TRUE(consistent(db));
}

// Records that nobody changes.
void search(clsTSDB& db) {
    db.SetIndex(1);
    for (const int32 n : {1, 30, 60, kRecords}) {
        db.Gehezu(keyOf(numbered(n)));
        EXPECT_EQ(db.AktSatzNr(), n) << "searched before anybody wrote again";
        EXPECT_EQ(db.Index(db.LogSatz()), n);
    }
    EXPECT_EQ(db.Error(), 0);
}

class Survivors : public testing::TestWithParam<Death> {
 protected:
    // Searches first, as no writer has come by yet; then adds and changes, in turn with the other one.
    static void workOn(Office& office, bool torn) {
        const Tell tell = office.teller();
        for (const int32 user : {kCarl, kAnna}) office.as(user, [](clsTSDB& db) { search(db); });
        for (int32 round = 0; round < 2; ++round)
            for (const int32 user : {kAnna, kCarl}) {
                const int32 own = 20 + 10 * user + round;
                const std::size_t before = office.told.size();
                office.as(user, [&](clsTSDB& db) { add(db, numbered(200 + own), tell); });
                office.as(user, [&](clsTSDB& db) { append(db, numbered(400 + own), tell); });
                EXPECT_EQ(office.told.size(), before + 2) << "a survivor could not add";
                office.as(user, [&](clsTSDB& db) { update(db, own, numbered(600 + own), tell); });
                EXPECT_EQ(office.told[own], numbered(600 + own)) << "a survivor could not change";
            }
        office.process.ground.clock.sleep(kUntilCounted);
        for (const int32 user : {kAnna, kCarl})
            office.as(user, [&](clsTSDB& db) { expectTruth(db, office.told, GetParam(), torn); });
    }

    // One death; false where the victim outlives its n-th change.
    bool dies(int64 n, LastWrite last, Moment moment) {
        Office office(before_, GetParam().windows);
        for (int32 record = 1; record <= kRecords; ++record) office.told[record] = numbered(record);
        for (const int32 user : {kAnna, kCarl}) office.open(user);
        office.as(kAnna, [](clsTSDB& db) { EXPECT_TRUE(db.Sperren(kHeld, -1)); });

        office.files.as(kVictim);
        if (moment == Moment::idle)
            office.files.dieAt(n, last, CrashingFiles::Manner::silently);
        else
            office.files.interrupt([&] { killMeanwhile(office, n, moment); }, last);
        office.open(kVictim);
        office.as(kVictim, [&](clsTSDB& db) { perform(GetParam().work, db, office.teller()); });
        office.close(kVictim);
        const bool died = office.files.died();
        office.files.interrupt(nullptr);

        workOn(office, last == LastWrite::firstHalf);
        office.as(kCarl, [](clsTSDB& db) {
            EXPECT_TRUE(db.Gesperrt(kHeld)) << "a survivor lost his lock";
            EXPECT_FALSE(db.Gesperrt(kChanged)) << "the dead one kept his lock";
            EXPECT_FALSE(db.Gesperrt(0));
        });
        office.as(kAnna, [](clsTSDB& db) { EXPECT_FALSE(db.Gesperrt(kChanged)); });
        EXPECT_LE(office.longest, kPatience);
        longest_ = std::max(longest_, office.longest);
        for (const int32 user : {kAnna, kCarl}) office.close(user);
        EXPECT_EQ(office.disk.openings(), 0u);
        office.open(kCarl);
        office.as(kCarl, [&](clsTSDB& db) {
            expectTruth(db, office.told, GetParam(), last == LastWrite::firstHalf);
        });
        return died;
    }

    // The n-th change of the victim is under way, perhaps with the database lock: Anna begins to add a
    // record, or Carl to search. Where they have to wait he is killed meanwhile, else when they are done.
    void killMeanwhile(Office& office, int64 n, Moment moment) {
        if (office.files.changes() + 1 != n) return;
        auto& clock = office.process.ground.clock;
        int32 sleeps = 0;
        clock.onSleep = [&] {
            if (++sleeps != 3) return;
            office.files.kill(kVictim);
            ++waits_;
        };
        if (moment == Moment::adding)
            office.as(kAnna, [&](clsTSDB& db) { add(db, numbered(700), office.teller()); });
        else
            office.as(kCarl, [](clsTSDB& db) { search(db); });
        clock.onSleep = nullptr;
        office.files.kill(kVictim);
    }

    void SetUp() override { before_ = preparedDisk(GetParam().max); }

    MemoryFiles::Snapshot before_;
    std::chrono::nanoseconds longest_{};
    int64 waits_ = 0;
};

// Lets the victim die at every change, half written and not, whatever the others do.
TEST_P(Survivors, WorkOnWhereverOneOfThemDies) {
    int64 points = 0;
    for (const auto moment : {Moment::idle, Moment::adding, Moment::searching})
        for (const auto last : {LastWrite::none, LastWrite::firstHalf})
            for (int64 n = 1;; ++n) {
                SCOPED_TRACE(testing::Message()
                             << "killed at change " << n << (last == LastWrite::none ? "" : ", half written")
                             << (moment == Moment::idle     ? ""
                                 : moment == Moment::adding ? ", another one adds"
                                                            : ", another one searches"));
                const bool died = dies(n, last, moment);
                if (HasFailure()) return;
                if (!died) break;
                ++points;
            }
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(longest_).count();
    RecordProperty("points", std::to_string(points));
    RecordProperty("longestWaitInMicroseconds", std::to_string(microseconds));
    std::printf("[   INFO   ] %lld deaths, %lld while somebody waited, longest wait of a survivor %lld us\n",
                static_cast<long long>(points), static_cast<long long>(waits_),
                static_cast<long long>(microseconds));
    EXPECT_GT(waits_, points / 6) << "the others hardly ever waited";
}

std::vector<Death> deaths() {
    std::vector<Death> out;
    for (const bool windows : {true, false})
        for (const int32 max : {kNormal, kBig})
            for (const auto work : {Work::append, Work::add, Work::updateKey})
                out.push_back({work, max, windows});
    return out;
}
INSTANTIATE_TEST_SUITE_P(Database, Survivors, testing::ValuesIn(deaths()), deathName);

}  // namespace
}  // namespace tsRtm::test
