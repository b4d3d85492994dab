// Several processes on one database.
#include <functional>
#include <random>

#include "tests/database/DatabaseFixture.hpp"
#include "tests/support/ChildProcess.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kProcesses = 8;
constexpr int32 kUpdates = 500;
constexpr int32 kRecords = 200;

Address account(int32 n) {
    const Text digits = toText(10000 + n);
    return {u"Konto" + digits, u"Bonn", u"0.00", u"01012020"};
}

class MultiUser : protected RealFiles, public testing::TestWithParam<int32> {
 protected:
    Text folder = temp.name(u"Konten");

    void make() {
        const auto db = makeAddresses(rtm, folder, GetParam());
        for (int32 n = 1; n <= kRecords; ++n) ASSERT_EQ(addAddress(*db, account(n)), n);
    }
};

// Adds 1 to BETRAG of random records and moves the record in two indexes, each time under its lock.
int countUp(
    const Text& folder, uint32 seed, const std::function<void()>& updated = [] {}) {
    clsRtm rtm;
    const auto db = rtm.OpenTSDB(folder);
    if (!db) return 1;
    std::mt19937 random(seed);
    for (int32 i = 0; i < kUpdates; ++i) {
        const int32 n = 1 + static_cast<int32>(random() % kRecords);
        if (!db->Sperren(n)) return 2;
        db->AktSatzNr(n);
        const int32 amount = roundToInt32(Val(replaceAll(db->Fields(fBETRAG), u",", u"."))) + 1;
        db->Fields(fBETRAG, toText(amount) + u".00");
        db->Fields(fORT, u"Ort" + toText(static_cast<int64>(random() % 50)));
        db->Update();
        if (db->Error() != 0) return 3;
        if (!db->Entsperren(n)) return 4;
        updated();
    }
    return 0;
}

// New records get numbers of their own.
TEST_P(MultiUser, EightProcessesLoseNoUpdateAndNoRecord) {
    make();
    constexpr int32 kAdds = 50;
    const auto added = [](int32 p, int32 i) { return account(1000 * (p + 1) + i); };
    std::vector<std::unique_ptr<ChildProcess>> processes;
    for (int32 p = 0; p < kProcesses; ++p)
        processes.push_back(std::make_unique<ChildProcess>([&, p](ChildProcess::Line& line) {
            line.hear();
            clsRtm own;
            const auto db = own.OpenTSDB(folder);
            for (int32 i = 0; i < kAdds / 2; ++i)
                if (!db || addAddress(*db, added(p, i)) < 1) return 10;
            if (const int failed = countUp(folder, static_cast<uint32>(p) + 1)) return failed;
            for (int32 i = kAdds / 2; i < kAdds; ++i)
                if (addAddress(*db, added(p, i)) < 1) return 11;
            return 0;
        }));
    for (const auto& process : processes) process->line().say('G');
    for (const auto& process : processes) EXPECT_EQ(process->wait(), 0);
    const auto db = there(rtm.OpenTSDB(folder));
    ASSERT_EQ(db->AnzahlDSaetze(), kRecords + kProcesses * kAdds);
    int64 sum = 0;
    for (int32 n = 1; n <= kRecords; ++n) sum += roundToInt32(Val(db->GetField(n, fBETRAG)));
    EXPECT_EQ(sum, kProcesses * kUpdates);
    for (int32 p = 0; p < kProcesses; ++p)
        for (int32 i = 0; i < kAdds; ++i) EXPECT_TRUE(db->Exist(added(p, i).name + u" Bonn", 1));
    EXPECT_TRUE(consistent(*db));
}

// A reader without a lock always finds a key that never changes, while others move records around it.
TEST_P(MultiUser, AReaderMissesNothing) {
    make();
    ChildProcess writer([&](ChildProcess::Line& line) {
        clsRtm own;
        const auto db = own.OpenTSDB(folder);
        std::mt19937 random(7);
        line.say('R');
        for (int32 i = 0; i < 3000; ++i) {
            const int32 n = 2 * (1 + static_cast<int32>(random() % (kRecords / 2)));  // even records move
            change(*db, n, fNAME, u"Konto" + toText(static_cast<int64>(random() % 20000)));
            if (i % 4 == 0 && addAddress(*db, account(static_cast<int32>(random() % 9000))) < 1) return 2;
        }
        line.say('E');
        return 0;
    });
    const auto db = there(rtm.OpenTSDB(folder));
    ASSERT_EQ(writer.line().hear(), 'R');
    db->SetIndex(1);
    int32 missed = 0;
    for (int32 round = 0; round < 60; ++round) {
        for (int32 n = 1; n < kRecords; n += 2)
            if (!db->Exist(account(n).name + u" Bonn", 1)) ++missed;
        RecordScan scan(*db, 1, kRecords);
        while (scan.next())
            if (scan.number() % 2 == 1 && scan.value(fNAME) != account(scan.number()).name) ++missed;
        missed += kRecords - scan.number();
    }
    EXPECT_EQ(missed, 0);
    EXPECT_EQ(writer.line().hear(), 'E');
    EXPECT_EQ(writer.wait(), 0);
    EXPECT_TRUE(consistent(*db));
}

// Killed by the system at a random moment of its work, with memory shared between the processes.
TEST_P(MultiUser, AKilledWriterLeavesWholeRecords) {
    make();
    for (int32 round = 0; round < 12; ++round) {
        ChildProcess writer([&](ChildProcess::Line& line) {
            return countUp(folder, static_cast<uint32>(round) + 100, [&] { line.say('U'); });
        });
        for (int32 updates = 0; updates <= round; ++updates) ASSERT_EQ(writer.line().hear(), 'U');
        writer.kill();
        const auto db = there(rtm.OpenTSDB(folder));
        EXPECT_TRUE(consistent(*db));
        for (int32 n = 1; n <= kRecords; ++n) {
            const Address have = addressAt(*db, n);
            ASSERT_EQ(have.name, account(n).name);
            ASSERT_TRUE(have.betrag.ends_with(u".00"));
            ASSERT_EQ(have.tag, account(n).tag);
        }
    }
}

// No index changes and no number is counted: to who looks for changes only the time of the file tells.
TEST_P(MultiUser, AChangeOfOneCharacterShowsInTheTimeOfTheFile) {
    ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, folder, {}, addressFields(), GetParam(), u"  1  0  0"));
    const auto db = there(rtm.OpenTSDB(folder)), other = there(rtm.OpenTSDB(folder));
    ASSERT_EQ(addAddress(*db, account(1)), 1);
    for (const TextView changed : {u"Born", u"Bern"}) {
        std::filesystem::last_write_time(temp.path() / "Konten.DBD" / "Data.tsd", {});
        const Datenstand before = other->Stand();
        EXPECT_EQ(change(*db, 1, fORT, changed), 0);
        EXPECT_FALSE(other->Stand() == before);
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, MultiUser, kBothForms, formName);

}  // namespace
}  // namespace tsRtm::test
