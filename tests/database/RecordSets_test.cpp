// Sets of records: all, selections, ranges; cursors over them; and what they are told.
#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {
namespace {

struct Checker : iRecordChecker {
    std::function<bool(clsTSRecord&)> okay;
    explicit Checker(std::function<bool(clsTSRecord&)> test) : okay(std::move(test)) {}
    bool Okay(const std::shared_ptr<clsTSRecord>& R) override { return okay(*R); }
};

std::vector<int32> numbersOf(clsTSRecordSet& set) {
    std::vector<int32> out;
    for (int32 i = 1; i <= set.Count(); ++i) out.push_back(set.Record(i)->Satznummer());
    return out;
}
std::vector<int32> orderOf(clsTSIndex& cursor) {
    std::vector<int32> out;
    for (auto record = cursor.MoveFirst(); record; record = cursor.MoveNext())
        out.push_back(record->Satznummer());
    return out;
}
using Numbers = std::vector<int32>;

// 3 Abel, 5 Berg Aachen, 2 Berg Bonn, 4 Cohn, 1 Dorn.
class RecordSets : public FiveAddresses {
 protected:
    std::shared_ptr<clsTSRecordSet> all = db->Records();
};

TEST_P(RecordSets, TheSetOfAllRecords) {
    EXPECT_EQ(db->Records(), all);
    EXPECT_TOLD("5|no|Adressen", all->Count(), all->IsSelection(), all->Caption());
    EXPECT_EQ(all->Record(2), db->Record(2));
    EXPECT_TOLD("4|no", all->FolgeNummer(*db->Record(4)), all->Record(0) || all->Record(6));
    all->Deleted(3, true);
    EXPECT_TRUE(all->Deleted(3) && db->Record(3)->Deleted());
    all->Deleted(3, false);
    EXPECT_TOLD("0|no", all->Clear(), all->Remove(1));
    Numbers told;
    const auto heard = all->NewRecordNumber.connect([&](int32 before, int32 now) { told = {before, now}; });
    const auto added = all->Add();
    const int32 before = added->Satznummer();
    EXPECT_LT(before, 1);
    ASSERT_TRUE(stored(added, {{fNAME, u"Emil"}}));
    EXPECT_EQ(told, (Numbers{before, 6}));
    EXPECT_EQ(all->Count(), 6);
    const std::pair<const char*, std::function<void()>> refused[] = {
        {"5|clsTSRecordSet.Inhalt|Recordset ist keine Kette", [&] { all->Inhalt(); }},
        {"5|clsTSRecordSet.Changed|Recordset ist keine Kette", [&] { all->Changed(); }},
        {"445|clsTSRecordSet.KetteTSIO|KetteTSIO nicht nutzen. Stattdessen RS.Control. ...",
         [&] { all->KetteTSIO(); }},
        {"5|clsTSRecordSet.AddRecords|Nur einer Selektion können Datensätze hinzugefügt werden",
         [&] { all->AddRecords(Variant(1)); }}};
    for (const auto& [raises, work] : refused) EXPECT_EQ(raised(work), raises);
}

TEST_P(RecordSets, Ranges) {
    const Text last(1, rtmMain::state().locale.lastChar);
    const struct {
        int32 field;
        Text from, to;
        Numbers expected;
    } rows[] = {
        {fNAME, u"Berg", u"Berg", {5, 2}},
        {fNAME, u"Berg Bonn", u"Cohn", {2, 4}},
        {fNAME, u"", u"B" + last, {3, 5, 2}},
        {fNAME, u"berg b", last, {2, 4, 1}},
        {fNAME, u"Cp", u"", {1}},
        {fNAME, u"x", u"y", {}},
        {fTAG, u"01022003", u"31122003", {1, 5}},
        {fTAG, u"28.02.1999", u"28.02.1999", {3}},
        {fTAG, u"", u"2003" + last, {4, 3, 1, 5}},
        // Sorted in memory.
        {fORT, u"B", u"Bonn", {1, 2, 3, 4}},
        {fORT, u"", u"A" + last, {5}},
    };
    db->Delete(2);
    for (const auto& row : rows)
        EXPECT_EQ(numbersOf(*all->GetRange(row.field, row.from, row.to)), row.expected)
            << toUtf8(row.from) << " " << toUtf8(row.to);
    Checker live([](clsTSRecord& record) { return !record.Deleted(); });
    const auto some = all->GetRange(fNAME, u"", u"", &live);
    EXPECT_TOLD("3,5,4,1|yes", numbersOf(*some), some->IsSelection());
    // A part of a part.
    EXPECT_TOLD("1,3,4|3,5,4,1", numbersOf(*some->GetRange(fORT, u"Bonn", u"")),
                numbersOf(*some->GetSelectedRecords(nullptr)));
    EXPECT_TOLD("no|9|0", all->GetRange(9, u"", u"") != nullptr, db->Error(),
                all->GetSelection(u"NAME=\"Berg\"")->Count());
}

// Letters that sort behind all others belong to a range without an end.
TEST_P(RecordSets, NothingLiesBehindARangeWithoutAnEnd) {
    const Text last(1, rtmMain::state().locale.lastChar);
    ASSERT_EQ(addAddress(*db, {u"Žižka", u"Žd", u"", u""}), 6);
    EXPECT_TOLD("6|6|6", numbersOf(*all->GetRange(fNAME, u"E", last)),
                numbersOf(*all->GetRange(fNAME, u"Ž", u"Ž" + last)),
                numbersOf(*all->GetRange(fORT, u"C", last)));
}

TEST_P(RecordSets, ASelectionHasARecordOnce) {
    const auto bonn = all->GetRange(fORT, u"Bonn", u"Bonn");
    const VariantList more{Variant(1), Variant(7), Variant(std::shared_ptr<Object>(db->Record(5)))};
    EXPECT_TOLD("1|0|1,2,3,4,5", bonn->AddRecords(all->GetRange(fNAME, u"Berg", u"Berg")),
                bonn->AddRecords(more), numbersOf(*bonn));
    EXPECT_TOLD("yes|no|0|2", bonn->Remove(2), bonn->Remove(2), bonn->FolgeNummer(*db->Record(2)),
                bonn->FolgeNummer(*db->Record(3)));
    Numbers told;
    const auto heard = bonn->RecordChange.connect([&](int32 number) { told.push_back(number); });
    for (const int32 n : {2, 3}) db->PutField(n, fBETRAG, u"1");
    EXPECT_EQ(told, (Numbers{3}));
    const auto added = bonn->Add();
    added->Fields(fNAME, u"Neu");
    EXPECT_TOLD("4|yes|1,3,4,5,6", bonn->Count(), added->Update(), numbersOf(*bonn));
    const auto cursor = bonn->Index(fNAME);
    EXPECT_TOLD("3,5,4,1,6|yes|3,5,1,6", orderOf(*cursor), bonn->Remove(4), orderOf(*cursor));
    EXPECT_TOLD("6,5,3,1|5", orderOf(*bonn->CreateIndex(fORT, fNAME)), cursor->MoveTo(u"b")->Satznummer());
    EXPECT_EQ(raised([&] { cursor->Satznummer(9); }),
              "9|clsTSIndex.RecNr|Falsche Indexfolgenummer 9 im Recordset");
    EXPECT_TOLD("4|no|6", bonn->Clear(), cursor->MoveFirst() != nullptr, db->AnzahlDSaetze());
}

TEST_P(RecordSets, CursorsWalkBothWaysApartFromEachOther) {
    const auto cursor = all->Index(fNAME), other = all->Index(fNAME);
    EXPECT_TOLD("3,5,2,4,1|yes", orderOf(*cursor), cursor->EOFile());
    EXPECT_TOLD("1|3", cursor->MovePrevious()->Satznummer(), other->MoveNext()->Satznummer());
    EXPECT_TOLD("yes|5|5", other->BOFile() && !other->EOFile(), cursor->LogSatz(), cursor->Satznummer(2));
    EXPECT_FALSE(other->MovePrevious());
    EXPECT_TOLD("3|1", other->MoveNext()->Satznummer(), db->LogSatz());
    other->Descending(true);
    EXPECT_TOLD("1,4,2,5,3|2", orderOf(*other), other->MoveTo(u"Berg", u"Bonn")->Satznummer());
    EXPECT_TOLD("3|5|3", other->LogSatz(), other->MoveNext()->Satznummer(), other->MoveLast()->Satznummer());
    EXPECT_EQ(raised([&] { other->Satznummer(6); }),
              "9|clsTSIndex.RecNr|Fehler in der Indexdatei bei LogSatz 6");
    EXPECT_TOLD("no|53", all->Index(fORT) != nullptr, db->Error());
    EXPECT_TOLD("5,4,3,2,1|1,2,3,4,5", orderOf(*all->CreateIndex(fORT, fBETRAG)), orderOf(*all->Index(0)));
    EXPECT_TOLD("5|2|no|2", cursor->Finde(u"AACH")->Satznummer(), cursor->LogSatz(),
                cursor->Finde(u"gibt es nicht") != nullptr, cursor->LogSatz());
}

TEST_P(RecordSets, CursorsFindKeys) {
    const auto cursor = all->Index(fNAME);
    const auto at = [](const auto& record) { return record ? record->Satznummer() : 0; };
    EXPECT_TOLD("4|0|yes", at(cursor->MoveTo(u"Bf")), at(cursor->MoveTo(u"Zz")), cursor->EOFile());
    EXPECT_TOLD("3|4|5", at(cursor->MoveTo(u"")), at(cursor->MoveTo(u"#4")), at(cursor->FindRecord(u"Berg")));
    // To the letter, and a miss leaves it there.
    EXPECT_TOLD("2|0|0|2", at(cursor->FindRecord(u"Berg", u"Bonn")), at(cursor->FindRecord(u"Ber")),
                at(cursor->FindRecord(u"berg")), cursor->AktSatzNr());
    db->Delete(5);
    EXPECT_TOLD("2|5", at(cursor->FindRecord(u"Berg")), at(cursor->FindRecord(u"Berg", {}, {}, false, true)));
    EXPECT_EQ(at(all->Index(fTAG)->FindRecord(u"28.02.1999")), 3);
    const auto held = cursor->FindRecord(u"Dorn", {}, {}, true);
    EXPECT_TRUE(held && open()->Gesperrt(1));
}

// What others move under a cursor neither repeats nor hides a record.
TEST_P(RecordSets, ACursorGoesOnFromWhereItsRecordIsNow) {
    const auto other = open();
    const auto cursor = all->Index(fNAME);
    EXPECT_EQ(cursor->MoveTo(u"Berg", u"Bonn")->Satznummer(), 2);
    for (const auto* name : {u"Aal", u"Aare"}) ASSERT_GT(addAddress(*other, {name, u"", u"", u""}), 5);
    EXPECT_TOLD("4|6|0|5|4|7", cursor->MoveNext()->Satznummer(), cursor->LogSatz(),
                change(*other, 4, fNAME, u"Abt"), cursor->MoveNext()->Satznummer(),
                cursor->MovePrevious()->Satznummer(), cursor->Count());
}

TEST_P(RecordSets, WhatEndsThem) {
    const auto some = all->GetRange(fNAME, u"B", u"");
    const auto byName = all->Index(fNAME), byAmount = all->Index(fBETRAG), listed = some->Index(fBETRAG);
    const auto record = db->Record(1);
    Text told;
    std::vector<Subscription> heard;
    heard.push_back(byAmount->Invalidated.connect([&] { told += u"amount "; }));
    heard.push_back(byName->Invalidated.connect([&] { told += u"name "; }));
    heard.push_back(some->Invalidated.connect([&] { told += u"some "; }));
    heard.push_back(byName->Changed.connect([&] { told += u"changed "; }));
    heard.push_back(all->ChangedIndex.connect([&] { told += u"index "; }));
    heard.push_back(all->IndexChange.connect([&](int32 field) { told += toText(field) + u" "; }));
    EXPECT_TOLD("0|1 changed ", change(*db, 1, fNAME, u"Born"), std::exchange(told, {}));
    EXPECT_TOLD("yes|1 changed index changed ", db->Sort(1), std::exchange(told, {}));
    db->DelIndex(fBETRAG);
    EXPECT_EQ(std::exchange(told, {}), u"amount ");
    EXPECT_TOLD("3|5|no", byName->MoveFirst()->Satznummer(), listed->MoveFirst()->Satznummer(),
                byAmount->MoveFirst() != nullptr);
    db->Delete(2);
    EXPECT_TOLD("yes|name some ", db->Pack(), std::exchange(told, {}));
    EXPECT_TOLD("no|0|no", all->DB() || some->DB() || record->DB() || byName->RecordSet(),
                all->Count() + some->Count(), all->Record(1) || some->GetRange(1, u"", u"") || all->Add());
    EXPECT_FALSE(byName->MoveFirst() || listed->MoveNext() || byName->FindRecord(u"Abel"));
    Variant zusatz;
    for (const auto& cursor : {byName, byAmount, listed})
        EXPECT_EQ(raised([&] { cursor->ActionLoop(u"", u"", true, zusatz); }),
                  "91|clsTSIndex.ActionLoop|Der Index ist nicht mehr gültig");
    EXPECT_EQ(db->Records()->Count(), 4);
}

// A set holds its database; who closes it ends the sets.
TEST_P(RecordSets, OutliveTheHandOnTheDatabase) {
    const std::weak_ptr<clsTSDB> weak = db;
    auto cursor = all->Index(fNAME);
    all.reset();
    db.reset();
    EXPECT_EQ(cursor->MoveFirst()->Fields(fNAME), u"Abel");
    weak.lock()->Schliesse();
    EXPECT_FALSE(cursor->MoveFirst());
    EXPECT_TRUE(weak.expired());
}

TEST_P(RecordSets, AnEmptyDatabaseHasEmptySets) {
    db->Zap();
    const auto cursor = db->Records()->Index(fNAME);
    EXPECT_FALSE(cursor->MoveFirst() || cursor->MoveLast() || cursor->MoveTo(u"A"));
    EXPECT_TRUE(cursor->BOFile() && !cursor->MoveFirst());
    EXPECT_TRUE(cursor->EOFile() && cursor->BOFile());
    EXPECT_EQ(db->Records()->GetRange(fNAME, u"", u"")->Count(), 0);
    Variant zusatz;
    cursor->ActionLoop(u"", u"", true, zusatz);
}

// Listeners may have objects of their own.
TEST_P(RecordSets, ListenersAreAskedFirst) {
    const auto mine = all->GetSelection(u"");
    const auto cursor = all->Index(fNAME);
    const auto heard = db->HalloRecordSet.connect([&](auto& set) { set = mine; });
    const auto heardToo = all->HalloIndex.connect([&](int32 field, auto& found) {
        if (field == fNAME) found = cursor;
    });
    EXPECT_EQ(db->Records(), mine);
    EXPECT_EQ(all->Index(fNAME), cursor);
    EXPECT_NE(all->Index(fTAG), cursor);
}

INSTANTIATE_TEST_SUITE_P(Forms, RecordSets, kAllForms, nameOfForm);

}  // namespace
}  // namespace tsRtm::test
