// What a process leaves that is killed between two writes, at every write there is, and what faults of the
// disk leave.
#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"

namespace tsRtm::test {
namespace {

using platform::SystemError;

constexpr TextView kFolder = u"/daten/Adressen";

enum class Work { append, add, updateKey, updatePlain, addMany };

struct Sweep {
    const char* name;
    int32 max;
    Work work;
};

Address numbered(int32 n) {
    return {u"Name" + toText(1000 + (n * 7919) % 997), u"Ort" + toText(n % 10), toText(n) + u".25",
            u"01022003"};
}

// The library on one file system, as a process of its own has it.
struct Process {
    explicit Process(platform::FileSystem& files) : library(ground, files) { ground.ui.defaultAnswer = 7; }

    TestGround ground;
    StartedLibrary library;
    clsRtm rtm;
};

class CrashSweep : public testing::TestWithParam<Sweep> {
 protected:
    static constexpr int32 kRecords = 95;  // more than a root node holds

    // A database of kRecords on the memory disk.
    MemoryFiles::Snapshot prepared() {
        MemoryFiles disk;
        Process process(disk);
        const auto db = makeAddresses(process.rtm, Text(kFolder), GetParam().max);
        for (int32 n = 1; n <= kRecords; ++n) EXPECT_EQ(addAddress(*db, numbered(n)), n);
        return (db->Schliesse(), disk.snapshot());
    }

    // The work that is interrupted. Changes record 17, or adds behind the last one.
    static void work(platform::FileSystem& files) {
        Process process(files);
        const auto db = process.rtm.OpenTSDB(kFolder);
        if (!db) return;
        switch (GetParam().work) {
            case Work::append:
                db->AktSatzNr(5);
                db->Fields(fNAME, u"Neu");
                static_cast<void>(db->Append());
                break;
            case Work::add:
                addAddress(*db, changed());
                break;
            case Work::addMany:
                for (int32 n = 1; n <= 45; ++n) addAddress(*db, numbered(200 + n));
                break;
            case Work::updateKey:
            case Work::updatePlain:
                if (!db->Sperren(17, -1)) return;
                db->AktSatzNr(17);
                if (GetParam().work == Work::updateKey) {
                    db->Fields(fNAME, changed().name);
                    db->Fields(fTAG, changed().tag);
                } else {
                    db->Fields(fORT, u"Ort7");  // the same text as before: no key changes
                }
                db->Update();
                db->Entsperren(17);
                break;
        }
    }
    static Address changed() { return {u"Zuletzt", u"Ort7", u"17.25", u"31121999"}; }

    // What the next process finds.
    static void expectWhole(MemoryFiles& disk) {
        Process process(disk);
        const auto db = process.rtm.OpenTSDB(kFolder);
        ASSERT_TRUE(db);
        EXPECT_GE(db->AnzahlDSaetze(), kRecords);
        for (int32 n = 1; n <= kRecords; ++n) {
            const Address have = addressAt(*db, n);
            if (n == 17 && GetParam().work == Work::updateKey && have != numbered(n)) {
                EXPECT_EQ(have.name, changed().name);
                EXPECT_EQ(have.tag, changed().tag);
                continue;
            }
            EXPECT_EQ(have, numbered(n)) << n;
        }
        EXPECT_TRUE(consistent(*db));
        // It goes on as if nothing had been.
        EXPECT_GT(addAddress(*db, changed()), 0);
        EXPECT_TRUE(consistent(*db));
    }
};

TEST_P(CrashSweep, LeavesOldOrNewAtEveryWrite) {
    const auto before = prepared();
    int points = 0;
    for (int64 n = 1;; ++n) {
        MemoryFiles disk;
        disk.restore(before);
        CrashingFiles files(disk);
        files.dieAt(n);
        try {
            work(files);
        } catch (const ProcessDied&) {
        }
        if (!files.died()) break;
        ++points;
        SCOPED_TRACE(testing::Message() << "killed at change " << n);
        expectWhole(disk);
        if (HasFatalFailure()) return;
    }
    RecordProperty("points", points);
    EXPECT_GT(points, 0);
}

// Each call of the file system fails once, and from then on: an error, no crash, and whole at the next
// opening.
TEST_P(CrashSweep, SurvivesEveryFailingCall) {
    const auto before = prepared();
    for (const auto times : {FailingFiles::Times::once, FailingFiles::Times::fromThenOn}) {
        for (int64 n = 1;; n += 1 + n / 40) {
            MemoryFiles disk;
            disk.restore(before);
            FailingFiles files(disk);
            files.failAt(n, SystemError::deviceError, times);
            SCOPED_TRACE(testing::Message()
                         << "call " << n << (times == FailingFiles::Times::once ? " once" : " for good"));
            try {
                work(files);
            } catch (const Failure&) {  // damage raises
            }
            if (files.failures() == 0) break;
            expectWhole(disk);
            if (HasFatalFailure()) return;
        }
    }
}

// A disk that fills up at any byte gives an error, and the database is whole afterwards.
TEST_P(CrashSweep, SurvivesAFullDisk) {
    const auto before = prepared();
    for (uint64 free = 0; free < 6000; free += free < 200 ? 7 : 211) {
        MemoryFiles disk;
        disk.restore(before);
        disk.setFreeSpace(free);
        SCOPED_TRACE(testing::Message() << free << " bytes free");
        work(disk);
        disk.setFreeSpace(std::nullopt);
        expectWhole(disk);
        if (HasFatalFailure()) return;
    }
}

constexpr Sweep kSweeps[] = {{"treeAppend", kBig, Work::append},
                             {"treeAdd", kBig, Work::add},
                             {"treeAddMany", kBig, Work::addMany},
                             {"treeUpdateKey", kBig, Work::updateKey},
                             {"treeUpdatePlain", kBig, Work::updatePlain},
                             {"flatAppend", kNormal, Work::append},
                             {"flatAdd", kNormal, Work::add},
                             {"flatAddMany", kNormal, Work::addMany},
                             {"flatUpdateKey", kNormal, Work::updateKey}};
INSTANTIATE_TEST_SUITE_P(Database, CrashSweep, testing::ValuesIn(kSweeps),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace tsRtm::test
