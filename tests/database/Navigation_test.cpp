// Positions, keys and searches, on both forms of an index.
#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {
namespace {

class Navigation : public FiveAddresses {};

TEST_P(Navigation, GehezuStandsOnTheFirstKeyThatIsNotBelow) {
    const std::tuple<int32, TextView, int32, int32> rows[] = {
        {1, u"Berg", 2, 5},     {1, u"Berg Bonn", 3, 2}, {1, u"berg bonn", 3, 2}, {1, u"Berz", 4, 4},
        {1, u"Zorn", 6, 1},     {1, u"", 1, 3},          {1, u"#1", 1, 3},        {1, u"#4", 4, 4},
        {1, u"#0", 1, 3},       {1, u"#-3", 1, 3},       {1, u"#6", 6, 1},        {1, u"#99999999999", 6, 1},
        {1, u"#-1E300", 1, 3},  {0, u"", 1, 1},          {0, u"3", 3, 3},         {0, u"#3", 3, 3},
        {0, u"x", 1, 1},        {0, u"9", 6, 5},         {3, u"", 1, 4},          {3, u" ", 1, 4},
        {3, u"01011990", 2, 3}, {3, u"01022003", 3, 1},  {3, u"02022003", 4, 5},  {3, u"01012010", 6, 2}};
    for (const auto& [index, key, position, record] : rows) {
        SCOPED_TRACE(toUtf8(toText(index) + u" " + Text(key)));
        db->MoveFirst();
        db->SetIndex(index);
        db->Gehezu(key);
        EXPECT_TRUE(db->LogSatz() == position && db->AktSatzNr() == record)
            << db->LogSatz() << " " << db->AktSatzNr();
        EXPECT_TRUE(db->EOFile() == (position == 6) && db->BOFile() == (position == 1));
        EXPECT_TOLD(toUtf8(db->GetField(record, fNAME)) + "|0", db->Fields(fNAME), db->Error());
    }
}

TEST_P(Navigation, ExistTellsWholeKeysAndStaysWhereItIs) {
    const std::tuple<int32, TextView, const char*> rows[] = {
        {1, u"Berg Bonn", "yes|0"}, {1, u"Berg", "no|0"},     {1, u"berg bonn", "no|0"},
        {1, u"Zorn", "no|0"},       {1, u"#1", "yes|0"},      {1, u"#5", "yes|0"},
        {1, u"#0", "no|0"},         {1, u"#6", "no|0"},       {1, u"", "yes|0"},
        {0, u"3", "yes|0"},         {0, u"6", "no|0"},        {0, u"x", "no|0"},
        {3, u"28021999", "yes|0"},  {3, u"19990228", "no|0"}, {9, u"Berg", "no|53"},
        {-1, u"Berg", "no|53"},
    };
    db->SetIndex(1);
    db->Gehezu(u"Cohn");
    for (const auto& [index, key, told] : rows) {
        EXPECT_TOLD(told, db->Exist(key, index), db->Error()) << toUtf8(key);
        EXPECT_TOLD("4|4|1|Cohn", db->LogSatz(), db->AktSatzNr(), db->ActiveIndex(), db->Fields(fNAME));
    }
}

TEST_P(Navigation, MovesThroughAnOrderAndStopsAtItsEnds) {
    db->SetIndex(1);
    std::vector<int32> seen;
    db->MoveFirst();
    EXPECT_TRUE(db->BOFile());
    for (; !db->EOFile(); db->MoveNext()) seen.push_back(db->AktSatzNr());
    EXPECT_TOLD("3,5,2,4,1|62|Dorn", seen, db->Error(), db->Fields(fNAME)) << "nothing was read";
    EXPECT_TOLD("1|no", (db->MovePrevious(), db->AktSatzNr()), db->EOFile());
    seen.clear();
    db->MoveLast();
    for (; db->Error() == 0; db->MovePrevious()) seen.push_back(db->AktSatzNr());
    EXPECT_TOLD("1,4,2,5,3|yes|3|3", seen, db->BOFile(), db->AktSatzNr(), (db->MoveNext(), db->AktSatzNr()));
}

TEST_P(Navigation, SetIndexTakesOnlyWhatThereIs) {
    const std::pair<int32, const char*> rows[] = {{1, "0|1|NAME"},     {2, "0|3|BETRAG"}, {4, "53|3|BETRAG"},
                                                  {-1, "53|3|BETRAG"}, {3, "0|4|TAG"},    {0, "0|0|"}};
    for (const auto& [number, told] : rows)
        EXPECT_TOLD(told, (db->SetIndex(number), db->Error()), db->ActiveIndex(), db->IndexName()) << number;
}

TEST_P(Navigation, PositionsAndRecordNumbersFindEachOther) {
    const int32 positions[] = {5, 3, 1, 4, 2};
    db->SetIndex(1);
    for (int32 n = 1; n <= 5; ++n) {
        db->AktSatzNr(n);
        EXPECT_EQ(db->LogSatz(), positions[n - 1]);
        EXPECT_EQ(db->Fields(fNAME), db->GetField(n, fNAME));
        EXPECT_EQ(db->Index(positions[n - 1]), n);
    }
    for (const int32 wrong : {0, -1, 6, 2147483647})
        EXPECT_TOLD("63|5|0|63|2", (db->AktSatzNr(wrong), db->Error()), db->AktSatzNr(), db->Index(wrong),
                    db->Error(), db->LogSatz());
    EXPECT_EQ((db->SetIndex(0), db->Index(5)), 5);
}

TEST_P(Navigation, FindeSearchesAroundAndStaysOnAMiss) {
    db->SetIndex(1);
    db->MoveFirst();
    for (const int32 wanted : {5, 2, 5}) {  // behind, and around to the start
        const auto record = db->Finde(u"bERG");
        ASSERT_TRUE(record);
        EXPECT_TRUE(record->Satznummer() == wanted && db->AktSatzNr() == wanted) << db->AktSatzNr();
    }
    // The current one comes last.
    EXPECT_TOLD("5|no|2|5", db->Finde(u"Aachen")->Satznummer(), db->Finde(u"Zorn") != nullptr, db->LogSatz(),
                db->AktSatzNr());
    ASSERT_GT(addAddress(*db, {u"Müller", u"Köln", u"", u""}), 0);
    EXPECT_EQ(db->Finde(u"MÜLLER")->Satznummer(), 6);
}

TEST_P(Navigation, AReaderLearnsOfNewRecordsInTime) {
    const auto other = open();
    ASSERT_EQ(addAddress(*db, {u"Neu", u"Ulm", u"", u""}), 6);
    const auto later = [&](int32 seconds) {
        ground.clock.advance(std::chrono::seconds(seconds));
        return other->AnzahlDSaetze();
    };
    EXPECT_TOLD("5|5|6", later(0), later(30), later(1));
    // Who asks for a record that it does not know looks again at once.
    ASSERT_EQ(addAddress(*db, {u"Neuer", u"Ulm", u"", u""}), 7);
    EXPECT_EQ(other->GetField(7, fNAME), u"Neuer");
}

// Five records come in front of all others: what was there is found all the same, by whatever way, also by
// who counted the records before.
TEST_P(Navigation, RecordsThatOthersAddHideNothing) {
    struct Row {
        const char* name;
        std::function<int32(clsTSDB&)> record;  // where it stands then
        int32 number, position;
    };
    // The order is now 6 to 10, then 3, 5, 2, 4, 1.
    const Row rows[] = {
        {"Gehezu", [](clsTSDB& d) { return d.Gehezu(u"Dorn Bonn"), d.AktSatzNr(); }, 1, 10},
        {"Gehezu the middle", [](clsTSDB& d) { return d.Gehezu(u"Berg Aachen"), d.AktSatzNr(); }, 5, 7},
        {"MoveFirst", [](clsTSDB& d) { return d.MoveFirst(), d.AktSatzNr(); }, 6, 1},
        {"MoveLast", [](clsTSDB& d) { return d.MoveLast(), d.AktSatzNr(); }, 1, 10},
        {"Index", [](clsTSDB& d) { return d.Index(1); }, 6, 1},
        {"Index of the last", [](clsTSDB& d) { return d.Index(10); }, 1, 10},
        {"AktSatzNr", [](clsTSDB& d) { return d.AktSatzNr(1), d.AktSatzNr(); }, 1, 10},
        {"Finde", [](clsTSDB& d) { return d.Finde(u"Dorn") ? d.AktSatzNr() : 0; }, 1, 10},
    };
    std::vector<std::shared_ptr<clsTSDB>> readers;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        readers.push_back(open());
        readers.back()->SetIndex(1);
        readers.back()->MoveFirst();
        ASSERT_EQ(readers.back()->AktSatzNr(), 3);
    }
    const auto other = open();
    for (const auto* name : {u"Aa", u"Ab", u"Ac", u"Ad", u"Ae"})
        ASSERT_GT(addAddress(*other, {name, u"Bonn", u"", u""}), 0);
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].name);
        auto& reader = *readers[i];
        EXPECT_EQ(rows[i].record(reader), rows[i].number);
        EXPECT_EQ(reader.LogSatz(), rows[i].position);
        EXPECT_TOLD("no|0", reader.EOFile(), reader.Error());
    }
}

INSTANTIATE_TEST_SUITE_P(Forms, Navigation, kAllForms, nameOfForm);

class WithoutRecords : public MemoryDatabase, public testing::WithParamInterface<int32> {
 protected:
    static void expectNothingToStandOn(clsTSDB& db) {
        EXPECT_TOLD("0|NAME", db.AnzahlDSaetze(), db.Caption(1));
        EXPECT_FALSE(db.Finde(u"a") || db.Record(1) || db.Record() || db.Sperren(1) || db.Gesperrt(0));
        for (const int32 index : {0, 1, 2, 3}) {
            SCOPED_TRACE(index);
            db.SetIndex(index);
            for (const auto move :
                 {&clsTSDB::MoveFirst, &clsTSDB::MoveLast, &clsTSDB::MoveNext, &clsTSDB::MovePrevious}) {
                (db.*move)();
                EXPECT_TOLD("62|0", db.Error(), db.AktSatzNr());
            }
            for (const TextView key : {u"", u"#1", u"Abel"}) {
                EXPECT_TOLD("no|1", db.Exist(key, index), db.Rang(key));
                db.Gehezu(key);
                EXPECT_TOLD("0|0|0", db.Error(), db.LogSatz(), db.AktSatzNr());
            }
            EXPECT_TOLD("0|63", db.Index(1), db.Error());
        }
        EXPECT_TRUE(consistent(db));
    }
};

TEST_P(WithoutRecords, ThereIsNothingToStandOn) { expectNothingToStandOn(*make(GetParam())); }

// While it is being reorganised, somebody has it alone, or the medium forbids it.
TEST_P(WithoutRecords, AViewOfWhatCannotBeHadIsEmpty) {
    addFive(*make(GetParam()));
    for (const bool somebodyAlone : {true, false}) {
        const auto alone = somebodyAlone ? open(false, true) : nullptr;
        const auto refusal =
            somebodyAlone ? platform::SystemError::none : platform::SystemError::sharingViolation;
        disk.failOpening(path(u"Count.tsd"), refusal);
        for (const bool readOnly : {true, false}) {
            const auto view = open(readOnly);
            ASSERT_TRUE(view && view->IsReadOnly());
            expectNothingToStandOn(*view);
            EXPECT_EQ(view->GetSatz(1) + view->GetField(1, fNAME) + view->GetField(1, 0) + view->Fields(0),
                      u"");
            EXPECT_FALSE(view->Add() || view->Sort());
            view->Update();
            EXPECT_EQ(view->Error(), 5);
        }
    }
    disk.failOpening(path(u"Count.tsd"), platform::SystemError::none);
    EXPECT_EQ(open()->AnzahlDSaetze(), 5);
}

INSTANTIATE_TEST_SUITE_P(Forms, WithoutRecords, kBothForms, formName);

// The flat form compares the saved index number with a field number.
TEST_F(MemoryDatabase, TheFlatUpdateMixesIndexAndFieldNumbers) {
    const auto db = make(kNormal);
    addFive(*db);
    // BETRAG is field 3 and index 2: the position follows under index 3, and stays under index 2.
    for (const auto& [active, position] : {std::pair{2, 1}, {3, 5}}) {
        db->PutField(5, fBETRAG, u"1.00");
        ASSERT_TRUE(db->Sort());
        db->SetIndex(active);
        ASSERT_EQ(change(*db, 5, fBETRAG, u"9.00"), 0);
        EXPECT_EQ(db->LogSatz(), position) << active;
    }
}

// Six items lead the file; the last field's width is never taken from it.
TEST_F(MemoryDatabase, AViewSetsTheWidths) {
    const auto db = make(kNormal);
    const auto widths = [&] {
        std::vector<int32> out;
        for (int32 i = 1; i <= db->CtrlEintraege(); ++i) out.push_back(db->ViewLaenge(i));
        return out;
    };
    const std::vector<int32> lengths{12, 8, 10, 8};
    EXPECT_EQ(widths(), lengths);
    EXPECT_FALSE(db->OpenView(u"Fehlt"));
    const std::pair<BytesView, std::vector<int32>> rows[] = {
        {"1,2,3,4,5,6", lengths},
        {"1,2,3,4,5,6,20", {20, 8, 10, 8}},
        {"1,2,3,4,5,6,21,22,23,24,25\r\n", {21, 22, 23, 8}}};
    for (const auto& [content, expected] : rows) {
        put(u"Liste.viw", content);
        EXPECT_TRUE(db->OpenView(u"Liste"));
        EXPECT_EQ(widths(), expected) << content;
    }
    put(u"Standard.viw", "1,2,3,4,5,6,30,31,32");
    EXPECT_EQ(open()->ViewLaenge(2), 31);
}

}  // namespace
}  // namespace tsRtm::test
