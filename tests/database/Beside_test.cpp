// What others see and keep while one writes: in the middle of his writes, in his waits, and when he dies.
#include "tests/database/Deaths.hpp"
#include "tests/database/MemoryDatabase.hpp"
#include "tsRtm/database/BulkLoader.hpp"

namespace tsRtm::test {
namespace {

// A record in more than one page of the system, told apart by one letter.
constexpr int32 kLong = 5000;
enum LongField : int32 { lKEY = 1, lTEXT = 2, lEND = 3 };

class Beside : public DyingUsers, public testing::TestWithParam<int32> {
 protected:
    std::shared_ptr<clsTSDB> db, other;

    // The five addresses; opened by the one who writes, then by the other.
    void openBoth() {
        db = makeAddresses(rtm, kFolder, GetParam());
        addFive(*db);
        other = openAs(kOther);
        files.as(0);
    }
    // Nobody has them open.
    void makeFive() {
        openBoth();
        db.reset();
        other.reset();
    }
    std::shared_ptr<clsTSDB> makeFields(const TSIOArray& fields, TextView indexes = u"  1  0  0") {
        const bool made = rtm.DBCreateExt(DBAnsi, kFolder, {}, fields, GetParam(), indexes);
        return made ? rtm.OpenTSDB(kFolder) : nullptr;
    }
    std::shared_ptr<clsTSDB> makeLong() {
        return makeFields(fieldsOf({{u"KEY", 1, 8}, {u"TEXT", 1, kLong}, {u"END", 1, 8}}));
    }
};

void setLong(clsTSRecord& record, char16_t letter) {
    for (const auto& [field, length] : {std::pair{lKEY, 8}, {lTEXT, kLong}, {lEND, 8}})
        record.Fields(field, Text(static_cast<std::size_t>(length), letter));
}
bool whole(clsTSDB& db, int32 number) {
    db.AktSatzNr(number);
    const Text all = db.Fields(lKEY) + db.Fields(lTEXT) + db.Fields(lEND);
    return all == Text(kLong + 16, u'A') || all == Text(kLong + 16, u'B');
}

TEST_P(Beside, ADeathInTheMiddleOfAWriteTearsNoRecord) {
    db = makeLong();
    for (int32 n = 1; n <= 3; ++n) {
        const auto record = db->Add();
        setLong(*record, u'A');
        ASSERT_TRUE(record->Update());
    }
    db.reset();
    enum : int32 { kAll, kText, kOneField, kNewRecord };
    for (const int32 work : {kAll, kText, kOneField, kNewRecord}) {
        SCOPED_TRACE(testing::Message() << "work " << work);
        const auto die = [&](clsTSDB& victim) {
            if (work == kOneField) return victim.PutField(2, lTEXT, Text(kLong, u'B'));
            const auto record = work == kNewRecord ? victim.Add() : victim.Record(2);
            setLong(*record, u'B');
            for (const auto field : {lKEY, lEND})
                if (work == kText) record->Fields(field, Text(8, u'A'));
            record->Update();
        };
        dieAtEachChange({true, false, LastWrite::firstHalf}, die, [&](clsTSDB& others, bool) {
            // Without an index, before anybody has written again; the first look is each way's in turn.
            RecordScan scan(others, 2);
            const auto scanned = [&] {
                return scan.number() == 2 || scan.next() ? Text(scan.value(lTEXT)) : Text();
            };
            if (work % 2 == 0) scanned();
            others.AktSatzNr(2);
            const Text text = others.Fields(lTEXT);
            EXPECT_TRUE(text == Text(kLong, u'A') || text == Text(kLong, u'B'));
            EXPECT_EQ(scanned(), text);
            for (const Text& end : {Text(u"A"), Text(8, u'A')}) EXPECT_EQ(change(others, 1, lEND, end), 0);
            EXPECT_TRUE(work != kAll || whole(others, 2));
            const bool added = work == kNewRecord && others.AnzahlDSaetze() > 3;
            EXPECT_TRUE(!added || whole(others, 4) || others.IsDeleted());
            EXPECT_TRUE(consistent(others));
        });
    }
}

// A record in more than one page that somebody does not end writing.
TEST_P(Beside, WhatIsAssignedToARecordThatCannotBeReadIsNoSuccess) {
    db = makeLong();
    ASSERT_TRUE(addRecord(*db, {{lKEY, u"A"}}));
    other = openAs(kOther);
    ASSERT_TRUE(other->LockDB(true));
    const Bytes before = file(u"Stand.tsd");
    put(u"Stand.tsd", Bytes(before).replace(0, 1, 1, static_cast<char>(before[0] + 1)));
    files.as(0);
    const auto record = db->Record(1);
    record->Reset();
    EXPECT_TOLD("|70", record->Fields(lKEY), db->Error());
    record->Fields(lEND, u"B");
    put(u"Stand.tsd", before);
    EXPECT_TOLD("yes|no|70", other->LockDB(false), record->Update(), record->Error());
    record->Reset();
    EXPECT_TOLD("A|yes", record->Fields(lKEY), stored(record, {{lEND, u"B"}}));
}

// --- In the middle of a write

// The lock that a handler asks for is that of the write: what he does with it leaves it as it was.
TEST_P(Beside, ACheckInTheMiddleOfAWriteKeepsNoLock) {
    openBoth();
    int32 turns = 0;
    const auto subscription = db->IndexChange.connect([&](int32) {
        ++turns;
        EXPECT_TOLD("no|70", db->Check(false, {}), db->Error());
    });
    EXPECT_TOLD("0|yes|0", change(*db, 1, fNAME, u"Zander"), turns > 0, change(*other, 2, fNAME, u"Adam"));
}

// --- In a wait

// A program's handlers run while it waits for the lock, and may stand on another record.
TEST_P(Beside, AHandlerInAWaitDoesNotChangeWhatIsWritten) {
    openBoth();
    const Address before = addressAt(*other, 3);
    ASSERT_TRUE(other->LockDB(true));
    db->SetIndex(1);
    db->AktSatzNr(1);
    db->Fields(fNAME, u"Zander");
    int32 rounds = 0;
    ground.ui.onEvents = [&] {
        db->AktSatzNr(3);
        if (++rounds == 3) other->LockDB(false);
    };
    int32 told = 0;
    const auto subscription = db->RecordChange.connect([&](int32 record) { told = record; });
    db->Update();
    ground.ui.onEvents = nullptr;
    EXPECT_TOLD("0|3|1", db->Error(), rounds, told);
    EXPECT_EQ(addressAt(*other, 1), (Address{u"Zander", u"Bonn", u"5.00", u"01022003"}));
    EXPECT_EQ(addressAt(*other, 3), before);
    EXPECT_TRUE(consistent(*other));
}

// The record that the program waits for becomes its own by a handler: waiting on would have no end.
TEST_P(Beside, AHandlerMayLockTheRecordThatIsWaitedFor) {
    openBoth();
    ASSERT_TRUE(other->Sperren(2));
    int32 rounds = 0;
    ground.ui.onEvents = [&] {
        if (++rounds == 1) {
            other->Entsperren(2);
            EXPECT_TRUE(db->Sperren(2));
        }
        if (rounds == 9) db->Entsperren(2);
    };
    EXPECT_TOLD("no|70", db->Sperren(2), db->Error());
    ground.ui.onEvents = nullptr;
    EXPECT_TOLD("1|yes", rounds, other->Gesperrt(2));
}

// What a handler closes is closed when the operation is over, and its wait ends at once.
TEST_P(Beside, AHandlerInAWaitMayCloseTheDatabase) {
    openBoth();
    ASSERT_TRUE(other->LockDB(true) && other->Sperren(2));
    const std::function<void()> waits[] = {
        [&] { db->Update(); },        [&] { db->Append(); },   [&] { db->LockDB(true); },
        [&] { db->Check(true, {}); }, [&] { db->Sperren(2); }, [&] { db->PutField(1, fORT, u"Ulm"); },
    };
    for (std::size_t i = 0; i < std::size(waits); ++i) {
        SCOPED_TRACE(i);
        db->SetIndex(1);
        db->AktSatzNr(1);
        db->Fields(fNAME, u"Zander");
        const auto start = ground.clock.elapsed();
        ground.ui.onEvents = [&] { db->Schliesse(); };
        waits[i]();
        ground.ui.onEvents = nullptr;
        EXPECT_LT(ground.clock.elapsed() - start, std::chrono::seconds(1));
        EXPECT_TOLD("70|0", db->Error(), db->Oeffne(kFolder)) << "it was not closed";
    }
    EXPECT_TOLD("Dorn|yes", addressAt(*other, 1).name, other->LockDB(false));
    EXPECT_TRUE(consistent(*db));
}

// A program in the middle of an update waits for nobody on the same database, but does on another.
TEST_P(Beside, AHandlerWaitsForWhoeverUpdatesAnotherDatabase) {
    openBoth();
    const auto reader = makeAddresses(rtm, u"/daten/Akten", GetParam());
    addFive(*reader);
    const auto holder = rtm.OpenTSDB(u"/daten/Akten");
    const auto count = [&](char value) {
        const Text number = u"/daten/Akten.DBD/Stand.tsd";
        disk.put(number, disk.dump(number).replace(0, 1, 1, value));
    };
    int32 rounds = 0;
    const auto subscription = db->IndexChange.connect([&](int32) {
        if (++rounds > 1) return;
        ASSERT_TRUE(holder->LockDB(true));
        count(41);
        ground.clock.onSleep = [&] {
            count(42);
            holder->LockDB(false);
        };
        reader->SetIndex(1);
        reader->Gehezu(u"Cohn");
        ground.clock.onSleep = nullptr;
        EXPECT_TOLD("0|4", reader->Error(), reader->AktSatzNr());
    });
    EXPECT_TOLD("0|yes", change(*db, 1, fNAME, u"Zander"), rounds > 0);
}

// --- What a death left

// A repair that has begun is brought to its end by whoever comes next, were it between two indexes.
TEST_P(Beside, ARepairIsOneUpdate) {
    makeFive();
    const Bytes older[] = {file(u"I001"), file(u"I004")};
    for (const auto field : {fNAME, fTAG})
        EXPECT_EQ(change(*rtm.OpenTSDB(kFolder), 2, field, u"01011970"), 0);
    put(u"I001", older[0]);
    put(u"I004", older[1]);
    dieAtEachChange([](clsTSDB& victim) { EXPECT_FALSE(victim.Check(true, {})); },
                    [&](clsTSDB& others, bool) {
                        const bool begun = file(u"I001") != older[0];
                        EXPECT_EQ(change(others, 1, fORT, u"Ulm"), 0);
                        EXPECT_TRUE(!begun || consistent(others));
                    });
}

// Who holds the lock reads without asking for others, but not in indexes that a death left and that cannot be
// built anew.
TEST_P(Beside, WhatCannotBeMendedIsNotSearchedUnderTheLock) {
    makeFive();
    const auto may = [&](platform::SystemError error) { disk.failOpening(path(u"I001"), error); };
    const auto look = [](clsTSDB& others, bool mended) {
        for (const TextView day : {u"28021999", u"01022003", u"31122003"})
            EXPECT_TRUE(others.Exist(day, 3) || (!mended && others.Error() == 70)) << toUtf8(day);
    };
    dieAtEachChange([](clsTSDB& victim) { change(victim, 2, fTAG, u"01011970"); },
                    [&](clsTSDB& others, bool) {
                        may(platform::SystemError::accessDenied);
                        ASSERT_TRUE(others.LockDB(true));
                        look(others, false);
                        may(platform::SystemError::none);
                        look(others, true);
                        EXPECT_TOLD("0|yes", others.Error(), others.LockDB(false));
                        EXPECT_TRUE(consistent(others));
                    });
}

// The machine went down, and the counter of serial numbers with it: whoever dies while he settles that leaves
// it for the next one.
TEST_P(Beside, ACounterThatWasLostIsRaisedBeforeTheSignGoes) {
    db = makeFields(fieldsOf({{u"NAME", tsAlphanumerisch, 12}, {u"NR", tsAutowert, 8}}),
                    u"  1  0  0  2  0  0");
    const auto add = [](clsTSDB& to) {
        const auto record = addRecord(to, {});
        return record ? record->Satznummer() : 0;
    };
    ASSERT_EQ(add(*db), 1);
    const Bytes old = file(u"Autowert.tsd");
    for (int32 n = 2; n <= 5; ++n) ASSERT_EQ(add(*db), n);
    put(u"Autowert.tsd", old);
    const auto before = disk.snapshot();
    int64 n = 1;
    for (bool died = true; died; ++n) {
        SCOPED_TRACE(testing::Message() << "killed at change " << n);
        disk.restore(before);
        files.as(static_cast<int32>(n) + 1);
        files.dieAt(n, LastWrite::none, CrashingFiles::Manner::silently);
        clsTSDB(rtm).Oeffne(kFolder);
        died = files.died();
        const auto next = openAs(0);
        EXPECT_TOLD("6|00000006", add(*next), next->GetField(6, 2));
    }
    EXPECT_GT(n, 2);
}

// --- Older programs, that know no marks

TEST_P(Beside, AMarkThatAnOlderProgramWroteOverIsNotForgotten) {
    makeFive();
    dieAtEachChange(
        [](clsTSDB& victim) {
            stored(victim.Record(3), {{fNAME, u"Zander"}});
        },
        [&](clsTSDB& others, bool) {
            put(u"Count.tsd", file(u"Count.tsd").replace(0, 10, "5\r        "));
            EXPECT_EQ(addAddress(others, {u"Neu", u"Ulm", u"1.00", u""}), 6);
            EXPECT_TRUE(consistent(others));
        });
}

// An older program died when the new record was in the trees and not yet in the file.
TEST_P(Beside, EntriesWithoutARecordAreFoundByWhoAddsNext) {
    openBoth();
    const Bytes data = file(u"Data.tsd");
    put(u"Data.tsd", data.substr(0, data.size() / 5 * 4));
    EXPECT_EQ(addAddress(*db, {u"Neu", u"Ulm", u"1.00", u""}), 5);
    EXPECT_TRUE(consistent(*db));
}

// --- The count of changes

TEST_P(Beside, WhoReadsFindsTheCountOfChangesThatCameLater) {
    makeFive();
    ASSERT_FALSE(platform::failed(disk.remove(path(u"Stand.tsd"))));
    const auto reader = there(rtm.OpenTSDB(kFolder, true));
    reader->SetIndex(1);
    reader->Gehezu(u"Berg");
    const auto writer = openAs(kOther);
    EXPECT_EQ(change(*writer, 1, fNAME, u"Zander"), 0);
    const auto before = disk.openings();
    reader->Gehezu(u"Zander");
    EXPECT_TOLD("1|1", reader->AktSatzNr(), disk.openings() - before);
}

TEST_P(Beside, WhoCannotCountHisChangesIsRefused) {
    makeFive();
    disk.failOpening(path(u"Stand.tsd"), platform::SystemError::accessDenied);
    for (const bool readOnly : {false, true})
        for (const bool alone : {false, true})
            EXPECT_EQ(clsTSDB(rtm).Oeffne(kFolder, readOnly, alone), readOnly || alone ? 0 : 70);
}

// Rows that are loaded have no entries yet: nobody else writes meanwhile.
TEST_P(Beside, NothingIsWrittenWhileRowsAreLoaded) {
    makeFive();
    db = rtm.OpenTSDB(kFolder, false, true);
    ASSERT_TRUE(db && db->LockDB(true));
    db->AktSatzNr(1);
    {
        BulkLoader loader(*db);
        loader.set(fNAME, u"Aal");
        loader.set(fBETRAG, u"5.25");
        EXPECT_TRUE(loader.add());
        const std::function<void()> writes[] = {[&] { db->Update(); }, [&] { db->Append(); },
                                                [&] { db->Delete(1); }, [&] { db->Sort(); }};
        for (const auto& write : writes) EXPECT_EQ((write(), db->Error()), 70);
        EXPECT_TOLD("no|yes", BulkLoader(*db).finish(), loader.finish());
    }
    EXPECT_TOLD("6|5.25|0", db->AnzahlDSaetze(), db->GetField(6, fBETRAG), change(*db, 1, fNAME, u"Zander"));
    EXPECT_TRUE(consistent(*db));
}

INSTANTIATE_TEST_SUITE_P(Database, Beside, kBothForms, formName);

}  // namespace
}  // namespace tsRtm::test
