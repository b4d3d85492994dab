// What may not be lost: counters, pointers, locks and files, when openings, stores and deaths cross.
#include "tests/database/ChainDatabase.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::test {
namespace {

class Safety : public MemoryDatabase {
 protected:
    char sign() const { return file(u"Count.tsd").at(9); }
    // The first two entries of an index change places.
    void swapFirst(int32 max) {
        Bytes index = file(u"I001");
        const std::size_t first = max == kBig ? 512 + 12 : 0;
        std::swap(index.at(first), index.at(first + (max == kBig ? 12 : 2)));
        put(u"I001", index);
    }
};

// --- Openings

TEST_F(Safety, AnUncleanEndIsFoundBeforeAnybodyReads) {
    for (const int32 max : {kNormal, kBig}) {
        auto db = makeFive(max);
        EXPECT_EQ(sign(), '+');
        killAll(db);
        swapFirst(max);  // the machine went down: an index is older than the records, and no mark tells
        db = open();
        EXPECT_TRUE(consistent(*db));
        // One that reads only changes nothing; the last one who wrote takes the sign back.
        db.reset();
        EXPECT_NE(sign(), '+');
        db = open();
        const auto reader = open();
        EXPECT_NE(sign(), '+');
        EXPECT_TOLD("0|+", change(*db, 1, fORT, u"Ulm"), Bytes(1, sign()));
        db.reset();
        EXPECT_NE(sign(), '+');
        EXPECT_TRUE(consistent(*reader));
    }
}

// Who may only read cannot mend what a death left, and still gets the right answers.
TEST_F(Safety, AReaderOfADamagedIndexIsNotMisled) {
    for (const int32 max : {kNormal, kBig}) {
        makeFive(max).reset();
        swapFirst(max);
        patch(u"Count.tsd", 9, "*");
        patch(u"Stand.tsd", 0, Bytes(1, static_cast<char>(file(u"Stand.tsd").at(0) + 1)));
        const auto before = disk.snapshot();
        const auto reader = open(true);
        reader->SetIndex(1);
        std::vector<int32> seen;
        for (reader->MoveFirst(); !reader->EOFile(); reader->MoveNext()) seen.push_back(reader->AktSatzNr());
        EXPECT_TOLD("3,5,2,4,1|yes|3", seen, reader->Exist(u"Abel Bonn", 1), reader->Rang(u"Berg Bonn"));
        EXPECT_EQ(disk.snapshot(), before);
        // Somebody who writes heals, and the reader goes on with the file.
        const auto writer = open();
        EXPECT_TRUE(consistent(*writer));
        EXPECT_EQ(addAddress(*writer, {u"Aal", u"Ulm", u"", u""}), 6);
        EXPECT_EQ((reader->Gehezu(u"Aal"), reader->AktSatzNr()), 6);
    }
}

TEST_F(Safety, AMissingDataFileIsNoEmptyDatabase) {
    makeFive(kBig).reset();
    const Bytes data = file(u"Data.tsd");
    ASSERT_FALSE(platform::failed(disk.rename(path(u"Data.tsd"), path(u"Data.tmp"), false)));
    const auto before = disk.snapshot();
    // Of another length than Count.tsd tells: nothing is made, and the user hears which file is missing.
    put(u"Data.tmp", data.substr(1));
    ground.ui.defaultAnswer = 1;
    EXPECT_TOLD("no|70|no", rtm.OpenTSDB(kFolder) != nullptr, rtmMain::state().F,
                disk.exists(path(u"Data.tsd")));
    EXPECT_NE(shown().find(u"Data.tsd"), Text::npos);
    disk.restore(before);
    const auto db = open();
    EXPECT_EQ(file(u"Data.tsd"), data);
    EXPECT_TRUE(consistent(*db));
}

TEST_F(Safety, AMissingControlFileComesFromAWholeOneBeside) {
    make(kBig).reset();
    const Bytes control = file(u"Control.tsd") + "0\r\n";
    ASSERT_FALSE(platform::failed(disk.remove(path(u"Control.tsd"))));
    put(u"Control.tmp", control.substr(0, control.size() / 2));
    EXPECT_TOLD("no|52", rtm.OpenTSDB(kFolder) != nullptr, rtmMain::state().F);
    put(u"Control.tmp", control);
    EXPECT_TRUE(open());
    EXPECT_EQ(file(u"Control.tsd"), control);
}

TEST_F(Safety, ADatabaseIsNeverMadeOverAnother) {
    const auto db = makeFive(kBig);
    const auto before = disk.snapshot();
    EXPECT_FALSE(rtm.DB_Create(kFolder, addressFields(), 10, u""));
    EXPECT_EQ(disk.snapshot(), before);
    // Made, and not opened yet: who comes second opens what is there.
    const Text other = u"/daten/Neu";
    EXPECT_TRUE(rtm.DB_Create(other, addressFields(), 10, u""));
    EXPECT_TOLD("no|10", rtm.DB_Create(other, addressFields(), 20, u""), rtm.OpenTSDB(other)->MaxData());
}

// Another database takes the place of ours, of which the index and the chains would be opened only now.
TEST_F(Safety, AReplacedDirectoryIsNotMixedWithTheOpenOne) {
    const auto db = makeChains(disk, rtm, {}, 1);
    const auto late = open();
    disk.restore(disk.snapshot());
    EXPECT_EQ(raisedNumber([&] { late->Exist(u"A", 1); }), 70);
    EXPECT_TOLD("70|no", writeChain(*db, 1, rowsNamed(u"a")), disk.exists(path(u"KetteDat.002")));
    db->Dauerhaft(true);
    EXPECT_TOLD("70|no", change(*db, 1, 1, u"B"), disk.exists(path(u"Update.tsd")));
    late->Schliesse();
    EXPECT_TOLD("no|70|no|70", db->PackMemoKette(), db->Error(), DatabaseCare(*db).copy({}), db->Error());
}

// --- Serial numbers

// Two users of a database whose records have a NAME and a number of four digits.
class SerialNumbers : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> makeNumbered(int32 columns) {
        return make(fieldsOf({{u"NAME", tsAlphanumerisch, 4}, {u"NR", tsAutowert, columns}}), kBig,
                    u"  1  0  0");
    }
    std::shared_ptr<clsTSDB> one = makeNumbered(4);
    std::shared_ptr<clsTSDB> two = open();
};

// The counter has its own lock: two users never get the same number.
TEST_F(SerialNumbers, ComeOnce) {
    const auto a = one->Add(), b = two->Add();
    EXPECT_TOLD("0001|0002|yes", a->Fields(2), b->Fields(2), b->Update());
    EXPECT_EQ(one->Add()->Fields(2), u"0003");  // the last one goes back
    ASSERT_TRUE(a->Update());
    EXPECT_EQ(two->Add()->Fields(2), u"0003");
    // A record without a number does not take one that waits for its record.
    ASSERT_TRUE(one->Append());
    const auto d = one->Add();
    EXPECT_EQ(d->Fields(2), u"0003");
    EXPECT_TOLD("0003|0003|", one->Record(3)->Fields(2), two->Record(3)->Fields(2), two->GetField(3, 2))
        << "shown, not stored";
    EXPECT_TOLD("yes|0003", d->Update(), two->Record(3)->Fields(2));
    EXPECT_TRUE(consistent(*two));
}

// Before any call of one who gives a number up, or stores the one that an empty field shows, somebody draws
// numbers, too.
TEST(SerialNumbersBeside, ComeOnce) {
    for (const bool givesUp : {true, false})
        for (int64 n = 1, end = 0; end == 0; ++n) {
            MemoryFiles disk;
            FailingFiles calls{disk};
            TestGround ground;
            const StartedLibrary library{ground, calls};
            clsRtm rtm;
            ASSERT_TRUE(rtm.DB_Create(u"/daten/Akten",
                                      fieldsOf({{u"NAME", tsAlphanumerisch, 4}, {u"NR", tsAutowert, 4}}),
                                      kBig, u"  1  0  0"));
            const auto one = rtm.OpenTSDB(u"/daten/Akten"), two = rtm.OpenTSDB(u"/daten/Akten");
            for (int32 i = 0; i < 3; ++i) ASSERT_TRUE(one->Append());
            auto given = givesUp ? one->Add() : nullptr;
            std::shared_ptr<clsTSRecord> drawn;
            calls.beforeCall(n, [&] {
                const auto counter = disk.open(u"/daten/Akten.DBD/Autowert.tsd", {});
                if (*(*counter)->isLocked({0, 1})) return;  // they would wait for it
                drawn = two->Add();
                if (givesUp) drawn.reset(), two->Record(1)->Fields(2);
            });
            givesUp ? given.reset() : static_cast<void>(one->Record(1)->Fields(2));
            end = calls.othersWorked() ? 0 : n;
            calls.disarm();
            if (!drawn) drawn = two->Add();
            ASSERT_TRUE(drawn && drawn->Update());
            EXPECT_NE(drawn->Fields(2), one->GetField(1, 2)) << "before call " << n;
        }
}

TEST_F(SerialNumbers, ComeOnceWhateverWasLost) {
    for (const auto* number : {u"0007", u"0003"}) ASSERT_TRUE(addRecord(*one, {{2, number}}));
    // The last record does not have the greatest number.
    rtm.CloseRTMDBs();
    ASSERT_FALSE(platform::failed(disk.remove(path(u"Autowert.tsd"))));
    EXPECT_EQ(open()->Add()->Fields(2), u"0008");
    // A counter that cannot be had gives no empty number.
    disk.failOpening(path(u"Autowert.tsd"), platform::SystemError::accessDenied);
    const auto without = open();
    EXPECT_TOLD("no|70", without->Add() != nullptr, without->Error());
}

TEST_F(SerialNumbers, OneThatDoesNotFitIsNone) {
    disk.restore({});
    const auto db = makeNumbered(1);
    for (int32 n = 1; n <= 9; ++n) ASSERT_TRUE(db->Add()->Update()) << n;
    EXPECT_TOLD("no|7", db->Add() != nullptr, db->Error());
}

TEST_F(SerialNumbers, GoBackOnlyIfNoStoreWasTried) {
    auto record = one->Add();
    disk.setFreeSpace(0);
    EXPECT_FALSE(record->Update());
    disk.setFreeSpace(std::nullopt);
    record.reset();
    EXPECT_EQ(one->Add()->Fields(2), u"0002");
}

// An empty number that is shown is stored where that disturbs nobody, and moves its index along.
TEST_F(SerialNumbers, ThatAreShownStandInTheirIndex) {
    for (int32 n = 1; n <= 3; ++n) ASSERT_TRUE(one->Append());
    EXPECT_TOLD("0002|", open(true)->Record(2)->Fields(2), one->GetField(2, 2)) << "by who only reads";
    ASSERT_TRUE(two->LockDB(true));
    EXPECT_TOLD("0002|", one->Record(2)->Fields(2), one->GetField(2, 2)) << "beside who holds the database";
    ASSERT_TRUE(two->LockDB(false));
    EXPECT_TOLD("0002|0002", one->Record(2)->Fields(2), one->GetField(2, 2));
    EXPECT_TRUE(consistent(*one));
    EXPECT_EQ(one->Add()->Fields(2), u"0003");
    EXPECT_EQ((one->AktSatzNr(2), one->Fields(2)), u"2") << "the database shows it as a number";
}

// --- Stores

// Columns that name places in side files belong to those who write there.
TEST_F(Safety, PlacesInSideFilesNeverComeFromMemory) {
    ground.ui.defaultAnswer = 1;  // the chain's own files are not there
    const auto db =
        make(fieldsOf({{u"NAME", tsAlphanumerisch, 4}, {u"MEMO", tsMemo, 60}, {u"KETTE", tsKette, 10}}),
             kNormal, u"  1  0  0");
    ASSERT_TRUE(db->Append());
    const auto places = [&](int32 n) {
        return file(u"Data.tsd").substr(static_cast<std::size_t>(n) * 20 - 15, 15);
    };
    db->AktSatzNr(1);
    const auto record = db->Record(1);
    EXPECT_EQ(record->Fields(1), u"");
    // Somebody stores a memo while the record is in memory.
    open()->PutField(1, 2, u"7");
    open()->PutField(1, 3, u"    3    4");
    const Bytes stored = "    7    3    4";
    ASSERT_EQ(places(1), stored);
    db->Fields(2, u"ein Text");
    db->Fields(1, u"eins");
    db->Update();
    EXPECT_TRUE(test::stored(record, {{1, u"zwei"}}));
    db->PutSatz(1);
    EXPECT_EQ(places(1), stored);
    // A copy of a record has none of its own.
    db->GetSatz(1);
    ASSERT_TRUE(db->Append());
    EXPECT_EQ(places(2) + places(1), Bytes(15, ' ') + stored);
}

TEST_F(Safety, TheMarkIsWrittenAsGiven) {
    const auto db = makeFive(kNormal);
    const std::size_t length = file(u"Data.tsd").size() / 5;
    for (const auto& [mark, byte] : {std::pair{u"X", 'X'}, {u"*", '*'}, {u"", ' '}}) {
        db->PutField(2, 0, mark);
        EXPECT_EQ(file(u"Data.tsd").at(length), byte);
    }
}

// The lock of a new record is tried once under the database lock: who holds it may be waiting for just that.
TEST_F(Safety, ANewRecordWaitsForNoRecordLock) {
    for (const int32 max : {kNormal, kBig}) {
        const auto db = makeFive(max), other = open();
        ASSERT_TRUE(other->Sperren(5, -1));
        // The record that the other one holds goes away, its number is the next one's.
        const std::size_t length = file(u"Data.tsd").size() / 5;
        put(u"Data.tsd", file(u"Data.tsd").substr(0, 4 * length));
        const auto mine = open();
        const float64 start = seconds();
        EXPECT_TOLD("0|4", addAddress(*mine, {u"Neu", u"Ulm", u"", u""}), mine->AnzahlDSaetze());
        EXPECT_LT(seconds() - start, 1);
    }
}

// A store that fails midway gives the lock of its new record back, or the next one would wait for it for
// ever; and what follows it writes no record that the indexes do not know.
TEST_F(Safety, AFailedStoreLeavesNoLockAndNoHalfRecord) {
    const auto db = makeFive(kBig), other = open();
    const auto record = db->Add();
    record->Fields(fNAME, u"Neu");
    db->AktSatzNr(2);
    disk.setFreeSpace(0);
    EXPECT_TOLD("no|61|no|61", record->Update(), record->Error(), db->Append() != nullptr, db->Error());
    disk.setFreeSpace(std::nullopt);
    db->Fields(fNAME, u"Neu");
    db->Update();
    EXPECT_TRUE(consistent(*db));
    EXPECT_TOLD("6|yes", addAddress(*other, {u"Neu", u"Ulm", u"", u""}), record->Update());
    EXPECT_TRUE(consistent(*db));
}

// A new record stands in the indexes before it stands in the file. Whoever opens the index in between waits
// or looks again; a listener of the same object reads it as blank.
TEST_F(Safety, AnIndexIsSearchedWhileARecordIsAdded) {
    const auto db = makeFive(kBig), other = open();
    std::vector<std::string> told;
    const auto heard = db->IndexChange.connect([&](int32) {
        told.push_back(raised([&] { other->Exist(u"Abel Bonn", 1); }));
        told.push_back(raised([&] { db->Exist(u"Neu Ulm", 1); }));
    });
    ASSERT_GT(addAddress(*db, {u"Neu", u"Ulm", u"", u""}), 0);
    EXPECT_EQ(told, std::vector<std::string>(told.size()));
    EXPECT_TRUE(consistent(*db));
}

// Handlers run when all is written, and may write; in the middle of a write only reading is free.
TEST_F(Safety, HandlersMayWriteOnlyWhenTheWriteIsWhole) {
    for (const int32 max : {kNormal, kBig}) {
        const auto db = makeFive(max);
        db->SetIndex(1);
        std::vector<int32> inside;
        const auto index = db->IndexChange.connect([&](int32) {
            db->PutField(1, fORT, u"Ulm");
            inside.push_back(db->Error());
            EXPECT_FALSE(db->Append());
            inside.push_back(db->Error());
        });
        bool again = false;
        const auto record = db->RecordChange.connect([&](int32 n) {
            if (std::exchange(again, true)) return;
            EXPECT_EQ(change(*db, n == 4 ? 5 : 4, fTAG, u"02022002"), 0);
        });
        ASSERT_EQ(change(*db, 2, fNAME, u"Zorn"), 0);
        EXPECT_FALSE(inside.empty());
        EXPECT_EQ(inside, std::vector<int32>(inside.size(), 70));
        EXPECT_TOLD("Zorn|02022002|Bonn|5", addressAt(*db, 2).name, addressAt(*db, 4).tag,
                    addressAt(*db, 1).ort, db->AnzahlDSaetze());
        EXPECT_TRUE(consistent(*db));
    }
}

// --- Fields

TEST_F(Safety, TextsOfSpecialFormsComeBack) {
    const std::tuple<eDBTyp, FieldRow, TextView, Bytes, TextView> rows[] = {
        // given, how its stored form begins, shown
        {DBAnsi, {u"T", int32{tsText} + fUTF8, 12}, u"αβ", "~\xCE\xB1\xCE\xB2       ", u"αβ"},
        {DBAnsi, {u"T", int32{tsText} + fUTF8, 8}, u"abcdefghijk", "abcdefgh", u"abcdefgh"},
        {DBAnsi, {u"T", int32{tsText} + fUTF8, 8}, u"ααααα", "~\xCE\xB1\xCE\xB1\xCE\xB1 ", u"ααα"},
        {DBUnicode, {u"T", int32{tsText} + fUTF8, 12}, u"αβ", toUtf16Le(u"~\u00CE\u00B1\u00CE"), u"αβ"},
        {DBUnicode, {u"T", tsText, 12}, u"αβ", {}, u"αβ"},
        {DBAnsi, {u"D", tsDate, 8, 7}, u"01022003", "J2452672", u"01022003"},
        {DBAnsi, {u"D", tsDate, 10}, u"J2452672", "  J2452672", u"01022003"},
        {DBAnsi, {u"Z", tsNumerisch, 8, 1}, u"1234.5", "  1234.5", u"1234.5"}};
    for (const auto& [form, field, given, stored, shown] : rows) {
        disk.restore({});
        const auto db = make(fieldsOf({field, {u"N", tsAlphanumerisch, 3}}), kNormal, u"  1  0  0", form);
        const auto begins = [&, form = form, size = stored.size()] {
            return file(u"Data.tsd").substr(form == DBUnicode ? 2 : 1, size);
        };
        ASSERT_TRUE(db->Append());
        db->PutField(1, 2, u"xyz");
        db->PutField(1, 1, given);
        EXPECT_EQ(begins(), stored);
        EXPECT_TOLD(toUtf8(shown) + "|xyz", db->GetField(1, 1), db->GetField(1, 2)) << "and its neighbour";
        db->GetSatz(1);
        const Text read = field.typ == tsNumerisch ? Text(u"1234,5") : Text(shown);
        EXPECT_TRUE(db->Fields(1) == read && db->FieldView(1) == read) << toUtf8(db->Fields(1));
        // With the whole record it is stored in the same form.
        EXPECT_EQ((db->PutField(1, 1, u""), change(*db, 1, 1, read)), 0);
        EXPECT_TRUE(given != shown || begins() == stored) << toUtf8(given);
    }
}

}  // namespace
}  // namespace tsRtm::test
