// Records between memory and the file, record objects, and the notices of both.
#include <random>

#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/Table.hpp"
#include "tsRtm/frame/text/NumberCode.hpp"

namespace tsRtm::test {
namespace {

class Records : public FiveAddresses {};

TEST_F(MemoryDatabase, NumbersAreTypedInTheFormOfTheLocale) {
    const std::tuple<int32, TextView, TextView, TextView> rows[] = {
        {2, u"1.234,5", u"1234.5", u"1234,50"},
        {2, u"1234.5", u"1234.5", u"1234,50"},
        {2, u"-0,004", u"-0.004", u"0,00"},
        {2, u"7", u"7", u"7,00"},
        {2, u"", u"", u""},
        {0, u"1.234", u"1234", u"1234"},
        {0, u"007", u"007", u"7"},
        {8, u"12", u"12", u"12,"},      // a flag without decimals: "##0." and no zeros
        {10, u"1,5", u"1.5", u"1,50"},  // a flag beside two decimals
    };
    for (const auto& [decimals, typed, stored, shown] : rows) {
        disk.restore({});
        const auto db = make(fieldsOf({{u"ZAHL", tsNumerisch, 10, decimals}}), kNormal);
        db->Fields(1, typed);
        EXPECT_EQ(db->Fields(1), shown);
        const auto record = db->Append();
        ASSERT_TRUE(record) << toUtf8(typed);
        EXPECT_EQ(db->GetField(db->AnzahlDSaetze(), 1), stored);
        EXPECT_EQ(record->Fields(1), decimals == 0 ? stored : shown);
    }
}

TEST_P(Records, SingleFieldsHaveTheirBounds) {
    const std::tuple<int32, int32, int32, int32> rows[] = {{1, 1, 0, 0},   {5, 4, 0, 0},   {6, 1, 0, 63},
                                                           {7, 1, 63, 63}, {0, 1, 63, 63}, {-1, 0, 63, 63},
                                                           {1, 5, 9, 9},   {1, -1, 9, 9},  {3, 0, 0, 0}};
    for (const auto& [record, field, reading, writing] : rows) {
        SCOPED_TRACE(testing::Message() << record << "/" << field);
        db->GetField(record, field);
        EXPECT_EQ(db->Error(), reading);
        db->PutField(record, field, field == 0 ? u" " : u"1");
        EXPECT_EQ(db->Error(), writing);
    }
    EXPECT_TOLD("|9|9", db->GetField(6, 1), (db->Fields(5), db->Error()),
                (db->Fields(-1, u"x"), db->Error()));
}

TEST_P(Records, WholeRecordsHaveTheirBounds) {
    EXPECT_EQ(db->GetSatz(4), u" Cohn        Bonn          2.00        ");
    for (const int32 wrong : {0, -1, 6})
        EXPECT_TOLD("|63|4", db->GetSatz(wrong), db->Error(), db->AktSatzNr());
    for (const auto& [number, told] : {std::pair{7, "63|5"}, {0, "63|5"}, {6, "0|6"}})
        EXPECT_TOLD(told, (db->PutSatz(number), db->Error()), db->AnzahlDSaetze());
    EXPECT_EQ(file(u"Count.tsd").substr(0, 9), "6\r       ");
    std::vector<Text> fields;
    db->GetSatz(4);
    EXPECT_TOLD(" | ,Cohn,Bonn,2,00,", db->Satz(fields), fields);
    EXPECT_EQ((db->ClearRecord(), db->Satz(fields), fields), std::vector<Text>(5));
}

TEST_P(Records, AScanShowsEachRecordAsItLies) {
    const auto other = open();
    other->Delete(2);
    const auto seen = [&](int32 first, int32 last, int32 added) {
        Text out;
        RecordScan scan(*db, first, last);
        while (scan.next()) {
            out += toText(scan.number()) + Text(scan.deleted() ? u"*" : u"") + Text(scan.value(fNAME));
            EXPECT_EQ(scan.columns(fORT).size() + scan.columns(99).size(), 8u);
            if (scan.number() == 5 && added-- > 0) addAddress(*other, {u"Emil", u"Ulm", u"", u""});
        }
        EXPECT_FALSE(scan.next());
        EXPECT_EQ(db->Error(), 0);
        return out;
    };
    EXPECT_TOLD("1Dorn2*Berg3Abel4Cohn5Berg6Emil|2*Berg3Abel|5Berg6Emil||", seen(1, 0, 1), seen(2, 3, 0),
                seen(5, 90, 0), seen(4, 3, 0), seen(7, 0, 0));
    RecordScan scan(*db);
    EXPECT_TRUE(scan.next() && scan.value(99).empty());
    EXPECT_EQ(db->Error(), 9);
    // What was read stays what it was, whatever the database becomes.
    other->Schliesse();
    ASSERT_TRUE(db->ConvertToUnicode());
    EXPECT_TOLD("Dorn|yes|Berg", Text(scan.value(fNAME)), scan.next(), Text(scan.value(fNAME)));
    RecordScan anew(*db, 3);
    EXPECT_TOLD("yes|Abel|16", anew.next(), Text(anew.value(fNAME)), anew.columns(fORT).size());
}

TEST_P(Records, ADeletedRecordStaysInItsPlaces) {
    db->AktSatzNr(3);
    EXPECT_TOLD("yes|*|5|yes", (db->Delete(3), db->IsDeleted()), db->GetField(3, 0), db->AnzahlDSaetze(),
                db->Exist(u"Abel Bonn", 1));
    EXPECT_TRUE(consistent(*db));
    EXPECT_TOLD("no|yes", (db->GetSatz(2), db->IsDeleted()), (db->GetSatz(3), db->IsDeleted()));
    EXPECT_TOLD("no| ", (db->Reaktivieren(3), db->IsDeleted()), db->Fields(0));
    for (const int32 wrong : {0, 6})
        EXPECT_TOLD("63|63", (db->Delete(wrong), db->Error()), (db->Reaktivieren(wrong), db->Error()));
}

// A change that concerns no key leaves every index file alone; another one only the indexes of its fields.
TEST_P(Records, UpdateTouchesOnlyTheIndexesThatChange) {
    const std::tuple<int32, TextView, int32, TextView> rows[] = {
        {fORT, u"Bonn", 0, u""},
        {fNAME, u"Zorn", 1, u"I001"},
        {fORT, u"Ulm", 1, u""},  // a part of the first index; the place in the order stays
        {fBETRAG, u"9", 1, u"I003"},
        {fTAG, u"01012030", 1, u"I004"}};
    for (const auto& [field, text, tells, changed] : rows) {
        SCOPED_TRACE(toUtf8(text));
        db->SetIndex(0);
        const auto before = disk.snapshot();
        int32 told = 0;
        const auto heard = db->IndexChange.connect([&](int32) { ++told; });
        EXPECT_EQ(change(*db, 3, field, text), 0);
        EXPECT_EQ(told, tells);
        for (const TextView name : {u"I001", u"I003", u"I004"})
            EXPECT_EQ(before.at(upper(path(name))).content != file(name), name == changed) << toUtf8(name);
        EXPECT_TRUE(consistent(*db));
    }
}

TEST_P(Records, AReaderWritesNothing) {
    const auto reader = open(true);
    reader->AktSatzNr(2);
    const auto before = disk.snapshot();
    const std::pair<const char*, std::function<void()>> works[] = {
        {"Fields", [&] { reader->Fields(1, u"x"); }},
        {"Update", [&] { reader->Update(); }},
        {"PutSatz", [&] { reader->PutSatz(2); }},
        {"PutField", [&] { reader->PutField(2, 1, u"x"); }},
        {"Delete", [&] { reader->Delete(2); }},
        {"Reaktivieren", [&] { reader->Reaktivieren(2); }},
        {"Append", [&] { EXPECT_FALSE(reader->Append()); }},
        {"Add", [&] { EXPECT_FALSE(reader->Add()); }},
        {"LockDB", [&] { EXPECT_FALSE(reader->LockDB(true)); }},
    };
    for (const auto& [name, work] : works) {
        work();
        EXPECT_EQ(reader->Error(), 5) << name;
    }
    EXPECT_TOLD("yes|no", reader->Check(false, {}), db->Gesperrt(0));
    const auto record = reader->Record(2);
    EXPECT_FALSE(stored(record, {{1, u"x"}}));
    record->Deleted(true);
    EXPECT_EQ(disk.snapshot(), before);
    EXPECT_TOLD("no|5|0", record->Deleted(), reader->Error(), reader->Error()) << "told once";
}

TEST_P(Records, NoticesTellWhatChanged) {
    Text heard;
    const auto index = db->IndexChange.connect([&](int32 n) { heard += u"index " + toText(n) + u" "; });
    const auto record = db->RecordChange.connect([&](int32 n) { heard += u"record " + toText(n) + u" "; });
    const std::pair<TextView, std::function<void()>> works[] = {
        {u"record 3 ", [&] { db->Sperren(3); }},
        {u"", [&] { db->AktSatzNr(3), db->Fields(fNAME, u"Zorn"), db->Fields(fTAG, u""); }},
        {u"index 1 index 4 record 3 ", [&] { db->Update(); }},
        {u"record 3 ", [&] { db->Entsperren(3); }},
        {u"record 2 ", [&] { db->PutField(2, fORT, u"Ulm"); }},
        {u"record 2 ", [&] { db->Delete(2); }},
        {u"", [&] { db->Reaktivieren(9); }}};
    for (const auto& [told, work] : works) EXPECT_EQ((work(), std::exchange(heard, {})), told);
    ASSERT_TRUE(db->Sort(2));
    EXPECT_TRUE(std::exchange(heard, {}).starts_with(u"index 3 "));
    ASSERT_TRUE(db->Append());
    // Written; in the flat form locked before and unlocked behind it.
    EXPECT_EQ(split(heard, u"record 6 ").size() - 1, GetParam().max == kBig ? 1u : 3u);
}

TEST_P(Records, ARecordObjectIsACopy) {
    db->AktSatzNr(1);
    const auto record = db->Record(2);
    EXPECT_TOLD("no|4,00", record->Changed(), record->NamedField(u"betrag"));
    record->NamedField(u"Betrag", u"1.000,25");
    EXPECT_TOLD("yes|1000,25|4.00", record->Changed(), record->Fields(fBETRAG), db->GetField(2, fBETRAG));
    EXPECT_EQ(record->NamedField(u"GIBTESNICHT") + record->Fields(9) + record->Fields(-1), u"");
    EXPECT_EQ(db->Error(), 0);  // reading outside tells nothing
    ASSERT_TRUE(record->Update());
    EXPECT_TOLD("no|1000.25", record->Changed(), db->GetField(2, fBETRAG));
    // The cursor of the database did not move.
    EXPECT_TOLD("1|Dorn", db->AktSatzNr(), db->Fields(fNAME));
    record->Fields(fORT, u"Ulm");
    record->Reset();
    EXPECT_TOLD("no|Bonn", record->Changed(), record->Fields(fORT));
}

TEST_P(Records, AReadOnlyRecordObjectStays) {
    const auto record = db->Record(2);
    for (const bool readOnly : {true, false}) {
        record->ReadOnly(readOnly);
        record->Fields(fORT, u"Ulm");
        EXPECT_EQ(record->Fields(fORT), readOnly ? u"Bonn" : u"Ulm");
        record->Deleted(true);
        EXPECT_NE(record->Deleted(), readOnly);
        EXPECT_EQ(db->GetField(2, 0), readOnly ? u" " : u"*");
    }
    record->Deleted(false);
    EXPECT_EQ(db->GetField(2, 0), u" ");
}

TEST_P(Records, WinningALockShowsWhatTheOtherUserStored) {
    const auto other = open();
    auto record = db->Record(2);
    EXPECT_EQ(record->Fields(fORT), u"Bonn");
    record->Fields(fBETRAG, u"99");
    const auto theirs = other->Record(2, true);
    ASSERT_TRUE(theirs && theirs->Locked());
    EXPECT_TOLD("no|no", record->Sperren(-1), record->Locked());
    ASSERT_TRUE(stored(theirs, {{fORT, u"Ulm"}}));
    // Asked again it is its own already; unsaved changes are lost.
    EXPECT_TOLD("yes|yes|yes|Ulm|4,00|yes", theirs->Entsperren(), record->Sperren(-1), record->Sperren(-1),
                record->Fields(fORT), record->Fields(fBETRAG), other->Gesperrt(2));
    record.reset();
    EXPECT_FALSE(other->Gesperrt(2));
}

// The entry that an update takes out of an index is that of the record as it is under the database lock, not
// as it was before the wait for it.
TEST_P(Records, AnUpdateThatWaitedMovesTheEntryThatIsThere) {
    const auto other = open();
    const std::pair<int32, TextView> meanwhile[] = {
        {fNAME, u"Mitte"}, {fORT, u"Ulm"}, {fNAME, u"Zorn"}, {fTAG, u"31121999"}};
    for (const auto& [field, text] : meanwhile) {
        SCOPED_TRACE(toUtf8(text));
        ASSERT_TRUE(other->LockDB(true));
        db->AktSatzNr(3);
        db->Fields(fTAG, u"01012001");
        db->Fields(fNAME, u"Zorn");
        bool first = true;
        ground.clock.onSleep = [&, field = field, text = text] {
            if (!std::exchange(first, false)) return;
            EXPECT_EQ(change(*other, 3, field, text), 0);
            other->LockDB(false);
        };
        EXPECT_TOLD("0|no", (db->Update(), db->Error()), first) << "it did not wait";
        ground.clock.onSleep = nullptr;
        EXPECT_EQ(addressAt(*other, 3), (Address{u"Zorn", u"Bonn", u"3.00", u"01012001"}));
        EXPECT_TRUE(other->Exist(u"Zorn Bonn", 1));
        EXPECT_FALSE(other->Exist(Text(text).append(u" Bonn"), 1) && text != u"Zorn");
        EXPECT_TRUE(consistent(*other));
        EXPECT_EQ(change(*db, 3, fNAME, u"Abel"), 0);
    }
}

TEST_P(Records, ANewRecordHasNoNumberBeforeItsUpdate) {
    const auto record = db->Add();
    EXPECT_TOLD("yes|yes|no", record->Satznummer() <= 0, record->Locked(), record->WorkCopy() != nullptr);
    const auto plain = std::make_shared<clsTSRecord>(db, 0);
    EXPECT_TOLD("no|yes", plain->Sperren(), plain->Locked()) << "no lock can be had";
    ASSERT_TRUE(stored(record, {{fNAME, u"Neu"}}));
    EXPECT_TOLD("6|yes", record->Satznummer(), db->Gesperrt(6));
    EXPECT_TOLD("yes|6|yes", record->Update(), db->AnzahlDSaetze(), record->WorkCopy() != nullptr)
        << "again, now as a change";
    EXPECT_TRUE(consistent(*db));
}

TEST_P(Records, ARecordOutlivesItsDatabase) {
    const auto record = db->Record(2);
    const auto added = db->Add();
    EXPECT_EQ(record->Fields(fNAME), u"Berg");
    int32 told = 0;
    const auto heard = record->Invalidated.connect([&] { ++told; });
    db.reset();
    EXPECT_TOLD("1|no", told, record->DB() != nullptr);
    for (const auto& each : {record, added}) {
        each->Fields(fNAME, u"x");
        EXPECT_NE(each->Fields(fNAME), u"x");
        EXPECT_EQ(each->Sperren(), each == added);  // Locked from its making on, without a lock
        EXPECT_TOLD("no|no|no", each->Update(), each->Entsperren(), each->WorkCopy() != nullptr);
        each->Deleted(true);
        each->Reset();
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, Records, kAllForms, nameOfForm);

TEST_F(MemoryDatabase, AListenerMayReleaseOtherRecords) {
    const auto db = makeFive(kBig);
    std::vector<std::shared_ptr<clsTSRecord>> held;
    std::vector<Subscription> heard;
    for (int32 n = 1; n <= 3; ++n) {
        held.push_back(db->Record(n));
        heard.push_back(held.back()->Invalidated.connect([&] { held.resize(1); }));
    }
    db->KillAllObjects();
    EXPECT_EQ(held.size(), 1u);
}

// The limit is told by number to the program, by a box to the user.
TEST_F(MemoryDatabase, AFullDatabaseTakesNoMore) {
    const auto db = make(fieldsOf({{u"NAME", tsAlphanumerisch, 4}}), 3, u"  1  0  0");
    for (int32 n = 1; n <= 2; ++n) ASSERT_TRUE(db->Append());
    EXPECT_FALSE(db->IsFull());
    const auto last = db->Add(), late = db->Add();
    EXPECT_TOLD("yes|no", last->Update(), late->Update());
    EXPECT_TOLD("no|7|no|7", db->Append() != nullptr, db->Error(), db->Add() != nullptr, db->Error());
    ground.ui.answers = {1};
    EXPECT_TOLD("yes|1|3", db->IsFull(), ground.ui.boxes.size(), db->AnzahlDSaetze());
    EXPECT_NE(shown().find(u"Die Datenbank ist für 3 Datensätze konfiguriert."), Text::npos);
    EXPECT_TRUE(consistent(*db));
}

// A field's text is found in the record without a look at its columns, or decoded: that comes to the same.
TEST_F(MemoryDatabase, AFieldIsOneTextHoweverItIsRead) {
    constexpr int32 kRows = 400;  // more than a scan reads in one piece
    for (const int32 lead : {1, 13, 62}) {
        const auto fields = fieldsOf({{u"VORN", tsAlphanumerisch, lead},
                                      {u"A", tsAlphanumerisch, 9},
                                      {u"N", typZIFFERN, 7},
                                      {u"VIEL", tsAlphanumerisch, 64},
                                      {u"MEHR", tsAlphanumerisch, 65},
                                      {u"B", tsNumerisch, 10, 2},
                                      {u"LANG", typZIFFERN, 64},
                                      {u"Z", tsAlphanumerisch, 1}});
        const Text folder = Text(kFolder) + toText(lead);
        ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, folder, {}, fields, kNormal, {}));
        const auto db = there(rtm.OpenTSDB(folder));
        std::mt19937 random(static_cast<uint32>(lead));
        const TextView letters = u"a \u00C4 9 \u20AC.";
        for (int32 n = 1; n <= kRows; ++n) {
            const auto record = db->Add();
            for (int32 f = 1; f <= db->CtrlEintraege(); ++f) {
                Text text;
                // Without characters that are others in Unicode in every second one.
                for (auto left = random() % static_cast<uint32>(db->Laenge(f) + 1); left > 0; --left)
                    text.push_back(letters[random() % (letters.size() - (n % 2 == 0 ? 2 : 0))]);
                record->Fields(f, text);
            }
            ASSERT_TRUE(record->Update());
            db->AktSatzNr(n);
            for (int32 f = 1; f <= db->CtrlEintraege(); ++f) {
                const Text inPlace(db->FieldView(f));
                ASSERT_EQ(inPlace, db->Fields(f)) << n << " " << f;
            }
        }
        RecordScan scan(*db);
        while (scan.next())
            for (int32 f = 1; f <= db->CtrlEintraege(); ++f)
                ASSERT_EQ(Text(scan.value(f)), db->GetField(scan.number(), f)) << scan.number() << " " << f;
        EXPECT_EQ(scan.number(), kRows);
    }
}

// Single fields in UTF-16 are reached one by one only.
TEST_F(MemoryDatabase, FieldsInUtf16InAnEightBitRecord) {
    const auto fields = fieldsOf({{u"NAME", tsAlphanumerisch, 6}, {u"WEIT", tsAlphanumerisch | fUniCode, 5}});
    const auto wide = make(fields, kNormal, {}, DBUnicode);
    EXPECT_TOLD("445|445", raisedNumber([&] { wide->GetSatz(1); }), raisedNumber([&] { wide->PutSatz(1); }));
    disk.restore({});
    const auto db = make(fields, kNormal);
    put(u"Data.tsd", Bytes(34, ' '));
    ground.clock.advance(std::chrono::seconds(60));
    ASSERT_EQ(db->AnzahlDSaetze(), 2);
    db->PutField(2, 2, u"Łódź∞∞");
    EXPECT_TOLD("0|Łódź∞|", db->Error(), db->GetField(2, 2), db->GetField(2, 1));
    const std::pair<const char*, std::function<void()>> refused[] = {{"GetSatz", [&] { db->GetSatz(1); }},
                                                                     {"PutSatz", [&] { db->PutSatz(1); }},
                                                                     {"PutSatz", [&] { db->Update(); }}};
    for (const auto& [source, work] : refused)
        EXPECT_EQ(raised(work),
                  std::string("445|clsTSDB.") + source +
                      "|Diese Funktion wird für Datenbanken mit Unicode-Feldern nicht unterstützt.");
}

// Pointers beyond five digits lie in base 94; a chain's halves stand right in their columns.
TEST_F(MemoryDatabase, PointersKeepTheirForm) {
    ground.ui.answers = {1};  // the chain's own files are not there
    const auto db = make(
        fieldsOf({{u"MEMO", tsMemo, 60}, {u"KETTE", tsKette, 10}, {u"NAME", tsAlphanumerisch, 4}}), kNormal);
    const Text large = rtmMain::EncodeNumber(100000);
    struct Row {
        Text memo, chain;
        Bytes stored;
    };
    const Bytes base94 = Bytes(large.begin(), large.end());
    ASSERT_TRUE(db->Append());
    for (const auto& row :
         {Row{u"99999", u"  123   45", "99999  123   45"},
          Row{large, large + u"    7", base94 + base94 + "    7"}, Row{u"7", u"", "    7          "}}) {
        db->PutField(1, 1, row.memo);
        db->PutField(1, 2, row.chain);
        ASSERT_EQ(db->Error(), 0);
        EXPECT_EQ(file(u"Data.tsd").substr(1, 15), row.stored);
        EXPECT_EQ(rtmMain::DecodeNumber(db->GetField(1, 1)), rtmMain::DecodeNumber(row.memo));
    }
}

}  // namespace
}  // namespace tsRtm::test
