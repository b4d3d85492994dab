// Chains as sets of row records, and what several who work on one chain do.
#include "tests/database/ChainDatabase.hpp"
#include "tests/support/CrashingFiles.hpp"

namespace tsRtm::test {
namespace {

class ChainSets : public MemoryDatabase, public testing::WithParamInterface<ChainForm> {
 protected:
    std::shared_ptr<clsTSDB> db = makeChains(disk, rtm, GetParam(), 2);
    std::shared_ptr<clsTSDB> other = open();
};

TEST_P(ChainSets, RowsAreRecords) {
    ASSERT_EQ(writeChain(*db, 1, rowsNamed(u"abc")), 0);
    const auto parent = db->Record(1);
    const auto set = parent->Kette(fPOS);
    ASSERT_TRUE(set);
    EXPECT_TRUE(parent->Kette(fPOS) == set && set->Parent() == parent);
    EXPECT_TOLD("2|3|2", set->KettenFeldNr(), set->Count(), set->Control()->Felder());
    const auto row = set->Record(2);
    EXPECT_TRUE(row->IsKetteRecord() && row->Parent() == set && row == set->Record(2));
    EXPECT_EQ(row->Fields(1) + row->NamedField(u"ZAHL"), u"b2");
    EXPECT_FALSE(row->Sperren() || row->Locked() || row->Deleted() || row->WorkCopy() || row->Kette(fPOS));
    row->Fields(1, u"B");
    EXPECT_TOLD("no|yes|a1 B2 c3 ", set->Changed(), row->Update(), shownIn(*other, 1));
    // In front, behind, and out.
    const auto first = set->Add(true), last = set->Add();
    first->Fields(1, u"v");
    first->Fields(2, u"0");
    last->Fields(1, u"h");
    EXPECT_TOLD("3|yes|yes|a1 B2 c3 h9 ", row->Satznummer(), set->Changed(), stored(last, {{2, u"9"}}),
                shownIn(*other, 1));
    EXPECT_TOLD("yes|no|yes|4", first->Update(), set->Changed(), set->Remove(2), set->FolgeNummer(*last));
    EXPECT_EQ(raised([&] { set->Remove(5); }),
              "9|clsTSRecordSet.Remove|Satz 5 ist nicht in der Kette mit 4 Sätzen enthalten.");
    EXPECT_TOLD("v0 a1 B2 c3 h9 |yes|v0 B2 c3 h9 ", shownIn(*other, 1), set->Update(), shownIn(*other, 1));
    set->Inhalt(rowsOf({{u"v", u"0"}, {u"x", u"7"}}));
    EXPECT_TOLD("x|yes|v0 x7 ", row->Fields(1), set->Update(), shownIn(*other, 1));
    EXPECT_EQ(set->Inhalt(), rowsOf({{u"v", u"0"}, {u"x", u"7"}}));
    EXPECT_TOLD("2|yes||yes", set->Clear(), set->Update(), shownIn(*other, 1), db->Check(false, {}));
    EXPECT_TOLD("no|53", db->Record(1)->Kette(fKEY) != nullptr, db->Error());
}

TEST_P(ChainSets, RowsOfANewRecordAreStoredWithIt) {
    const auto record = db->Add();
    record->Fields(fKEY, u"neu");
    for (const auto* text : {u"eins", u"zwei"}) EXPECT_TRUE(stored(record->Kette(fPOS)->Add(), {{1, text}}));
    EXPECT_TOLD("yes|2", record->Kette(fPOS)->Update(), db->AnzahlDSaetze());
    EXPECT_TOLD("yes|eins zwei ", record->Update(), shownIn(*other, 3));
    const auto set = record->Kette(fPOS);
    EXPECT_EQ(set->Count(), 2);
    // Only the row that is stored goes there.
    const auto one = set->Record(1), two = set->Record(2);
    one->Fields(1, u"EINS");
    EXPECT_TOLD("yes|eins zwei2 |yes", stored(two, {{2, u"2"}}), shownIn(*other, 3), db->Check(false, {}));
}

// Each line: what the one and the other do to "abcd", and what becomes of both; conflicts write nothing.
TEST_P(ChainSets, OthersRowsStay) {
    using Work = std::function<void(clsTSRecordSet&)>;
    const auto set = [](int32 place, TextView text) {
        return [=](clsTSRecordSet& rows) {
            TextTable table = rows.Inhalt();
            table[static_cast<std::size_t>(place - 1)][0] = text;
            rows.Inhalt(table);
        };
    };
    const auto add = [set](bool front, TextView text) {
        return [=](clsTSRecordSet& rows) {
            rows.Add(front);
            set(front ? 1 : rows.Count(), text)(rows);
        };
    };
    const auto remove = [](int32 place) { return [=](clsTSRecordSet& rows) { rows.Remove(place); }; };
    const struct {
        const char* what;
        Work mine, theirs;
        bool stored;
        Text expected;
    } rows[] = {
        {"two rows", set(1, u"A"), set(3, u"C"), true, u"A1 b2 C3 d4 "},
        {"both ends", add(true, u"v"), add(false, u"h"), true, u"v a1 b2 c3 d4 h "},
        {"both behind", add(false, u"m"), add(false, u"t"), true, u"a1 b2 c3 d4 t m "},
        {"change, remove another", set(4, u"D"), remove(1), true, u"b2 c3 D4 "},
        {"remove, change another", remove(2), set(3, u"C"), true, u"a1 C3 d4 "},
        {"same row", set(2, u"X"), set(2, u"Y"), false, u"a1 Y2 c3 d4 "},
        {"changed, removed", set(2, u"X"), remove(2), false, u"a1 c3 d4 "},
        {"removed, changed", remove(2), set(2, u"Y"), false, u"a1 Y2 c3 d4 "},
        {"all removed, added", [](clsTSRecordSet& all) { all.Clear(); }, add(false, u"t"), true, u"t "},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(writeChain(*db, 1, rowsNamed(u"abcd")), 0);
        SCOPED_TRACE(row.what);
        const auto mine = db->Record(1)->Kette(fPOS), theirs = other->Record(1)->Kette(fPOS);
        ASSERT_EQ(mine->Count() + theirs->Count(), 8);
        row.mine(*mine);
        row.theirs(*theirs);
        ASSERT_TRUE(theirs->Update());
        EXPECT_TOLD(row.stored ? "yes|0|no|yes" : "no|70|yes|yes", mine->Update(), db->Error(),
                    mine->Changed(), db->Check(false, {}));
        EXPECT_EQ(shownIn(*other, 1), row.expected);
    }
}

TEST_P(ChainSets, ShowWhatIsWrittenElsewhere) {
    ASSERT_EQ(writeChain(*db, 1, rowsNamed(u"ab")), 0);
    const auto set = db->Record(1)->Kette(fPOS);
    EXPECT_EQ(set->Count(), 2);
    int32 told = 0;
    const auto heard = set->Change.connect([&] { ++told; });
    ASSERT_EQ(addRow(*db, 1, End::tail, {u"c", u"3"}), 0);
    EXPECT_GE(told, 1);
    // A row that was loaded before is stored all the same.
    const auto second = set->Record(2);
    second->Fields(1, u"B");
    ASSERT_EQ(addRow(*db, 1, End::head, {u"v", u"0"}), 0);
    EXPECT_TOLD("yes|v0 a1 B2 c3 |4|3", second->Update(), shownIn(*other, 1), set->Count(),
                second->Satznummer());
    // Sorted, searched, selected.
    ASSERT_EQ(writeChain(*db, 1, rowsOf({{u"c", u"10"}, {u"a", u"9"}, {u"b", u"100"}})), 0);
    const auto cursor = set->Index(1);
    EXPECT_TOLD("a|100|1", cursor->MoveFirst()->Fields(1), cursor->MoveTo(u"b")->Fields(2),
                cursor->FindRecord(u"c")->Satznummer());
    const auto some = set->GetRange(1, u"b", u"");
    ASSERT_EQ(some->Count(), 2);
    EXPECT_EQ(some->Record(1)->Fields(1) + some->Record(2)->Fields(1), u"bc");
    Text seen;
    Variant zusatz;
    const auto action = cursor->Action.connect([&](auto& row, Variant&) {
        seen += row->Fields(1);
        row->Fields(2, u"1");
        set->Add(true);
    });
    cursor->ActionLoop(u"", u"", false, zusatz, true);
    EXPECT_EQ(seen, u"abc");
    set->Parent()->DB()->KillAllObjects();
    EXPECT_TOLD("0|0|no", set->Count(), some->Count(), set->Update());
}

TEST_P(ChainSets, RowsAndFieldsOfBothStay) {
    TextTable all;
    db->AktSatzNr(1);
    other->AktSatzNr(1);
    for (int32 n = 0; n < 12; ++n) {
        auto& here = n % 2 == 0 ? *db : *other;
        const std::vector<Text> row{u"r", toText(n)};
        TextTable table{{}, row};
        int32 count = 1;
        // Neither reads the record again: its pointers in memory are old by then.
        const bool atHead = n % 3 == 0;
        here.KetteAction(atHead ? 7 : 5, fPOS, table, count);
        all.insert(atHead ? all.begin() : all.end(), row);
        auto& there = n % 2 == 0 ? *other : *db;
        there.Fields(fKEY, u"K" + toText(n));
        EXPECT_TOLD("0|0", here.Error(), (there.Update(), there.Error()));
        if (n == 5) there.PutSatz(1);
        TextTable read;
        EXPECT_TRUE(there.KetteLesen(1, read));
        EXPECT_EQ(read, all);
        EXPECT_EQ(here.GetField(1, fKEY), u"K" + toText(n));
    }
    EXPECT_TRUE(consistent(*db));
}

// Byte 0 is held by somebody who takes no other lock: waited for in silence, and then nothing is written.
TEST_P(ChainSets, TheLockOfTheFileIsWaitedForInSilence) {
    ASSERT_EQ(addRow(*db, 1, End::tail, {u"a", u"1"}), 0);
    auto older = std::move(*disk.open(path(u"KetteDat.002"), {.access = platform::Access::readWrite}));
    ASSERT_FALSE(failed(older->tryLock({0, 1})));
    const auto before = disk.snapshot();
    const float64 start = seconds();
    EXPECT_EQ(addRow(*db, 1, End::tail, {u"b", u"2"}), 70);
    EXPECT_TRUE(seconds() - start >= 5 && ground.ui.boxes.empty());
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
    EXPECT_EQ(chainAt(*db, 1), rowsNamed(u"ab"));
    // The lock is given back.
    EXPECT_FALSE(failed(older->tryLock({0, 1})));
}

INSTANTIATE_TEST_SUITE_P(Forms, ChainSets,
                         testing::Values(ChainForm{8}, ChainForm{5}, ChainForm{10, DBUnicode},
                                         ChainForm{6, DBAnsi, true, kBig}),
                         [](const auto& form) {
                             return std::string(1, static_cast<char>('a' + form.index));
                         });

// An older program takes no lock while it is given a row: it keeps the row, and ours goes elsewhere.
TEST(ChainRaces, ARowThatWasGivenToTwoIsLeftToTheOther) {
    MemoryFiles disk;
    CrashingFiles files(disk);
    TestGround ground;
    const StartedLibrary library(ground, files);
    clsRtm rtm;
    const auto db = makeChains(disk, rtm, {}, 1);
    const Text name = path(u"KetteDat.002");
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

}  // namespace
}  // namespace tsRtm::test
