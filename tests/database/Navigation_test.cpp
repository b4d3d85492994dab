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
        EXPECT_EQ(db->LogSatz(), position);
        EXPECT_EQ(db->AktSatzNr(), record);
        EXPECT_EQ(db->EOFile(), position == 6);
        EXPECT_EQ(db->BOFile(), position == 1);
        EXPECT_EQ(db->Fields(fNAME), db->GetField(record, fNAME));
        EXPECT_EQ(db->Error(), 0);
    }
}

TEST_P(Navigation, ExistTellsWholeKeysAndStaysWhereItIs) {
    struct Row {
        int32 index;
        TextView key;
        bool there;
        int32 error = 0;
    };
    const Row rows[] = {
        {1, u"Berg Bonn", true}, {1, u"Berg", false},     {1, u"berg bonn", false}, {1, u"Zorn", false},
        {1, u"#1", true},        {1, u"#5", true},        {1, u"#0", false},        {1, u"#6", false},
        {1, u"", true},          {0, u"3", true},         {0, u"6", false},         {0, u"x", false},
        {3, u"28021999", true},  {3, u"19990228", false}, {9, u"Berg", false, 53},  {-1, u"Berg", false, 53},
    };
    db->SetIndex(1);
    db->Gehezu(u"Cohn");
    for (const auto& row : rows) {
        SCOPED_TRACE(toUtf8(row.key));
        EXPECT_EQ(db->Exist(row.key, row.index), row.there);
        EXPECT_EQ(db->Error(), row.error);
        EXPECT_EQ(db->LogSatz(), 4);
        EXPECT_EQ(db->AktSatzNr(), 4);
        EXPECT_EQ(db->ActiveIndex(), fNAME);
        EXPECT_EQ(db->Fields(fNAME), u"Cohn");
    }
}

TEST_P(Navigation, MovesThroughAnOrderAndStopsAtItsEnds) {
    db->SetIndex(1);
    std::vector<int32> seen;
    db->MoveFirst();
    EXPECT_TRUE(db->BOFile());
    for (; !db->EOFile(); db->MoveNext()) seen.push_back(db->AktSatzNr());
    EXPECT_EQ(seen, (std::vector<int32>{3, 5, 2, 4, 1}));
    EXPECT_EQ(db->Error(), 62);
    EXPECT_EQ(db->Fields(fNAME), u"Dorn");  // nothing was read
    db->MovePrevious();
    EXPECT_EQ(db->AktSatzNr(), 1);
    EXPECT_FALSE(db->EOFile());

    seen.clear();
    db->MoveLast();
    for (; db->Error() == 0; db->MovePrevious()) seen.push_back(db->AktSatzNr());
    EXPECT_EQ(seen, (std::vector<int32>{1, 4, 2, 5, 3}));
    EXPECT_TRUE(db->BOFile());
    EXPECT_EQ(db->AktSatzNr(), 3);
    db->MoveNext();
    EXPECT_EQ(db->AktSatzNr(), 3);
}

TEST_P(Navigation, SetIndexTakesOnlyWhatThereIs) {
    const std::tuple<int32, int32, TextView, int32> rows[] = {
        {1, fNAME, u"NAME", 0},       {2, fBETRAG, u"BETRAG", 0}, {4, fBETRAG, u"BETRAG", 53},
        {-1, fBETRAG, u"BETRAG", 53}, {3, fTAG, u"TAG", 0},       {0, 0, u"", 0}};
    for (const auto& [number, field, name, error] : rows) {
        db->SetIndex(number);
        EXPECT_EQ(db->Error(), error) << number;
        EXPECT_EQ(db->ActiveIndex(), field) << number;
        EXPECT_EQ(db->IndexName(), name) << number;
    }
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
    for (const int32 wrong : {0, -1, 6, 2147483647}) {
        db->AktSatzNr(wrong);
        EXPECT_EQ(db->Error(), 63);
        EXPECT_EQ(db->AktSatzNr(), 5);
        EXPECT_EQ(db->Index(wrong), 0);
        EXPECT_EQ(db->Error(), 63);
        EXPECT_EQ(db->LogSatz(), 2);
    }
    db->SetIndex(0);
    EXPECT_EQ(db->Index(5), 5);
}

TEST_P(Navigation, FindeSearchesAroundAndStaysOnAMiss) {
    db->SetIndex(1);
    db->MoveFirst();
    for (const int32 wanted : {5, 2, 5}) {  // behind, and around to the start
        const auto record = db->Finde(u"bERG");
        ASSERT_TRUE(record);
        EXPECT_EQ(record->Satznummer(), wanted);
        EXPECT_EQ(db->AktSatzNr(), wanted);
    }
    EXPECT_EQ(db->Finde(u"Aachen")->Satznummer(), 5);  // the current one comes last
    EXPECT_FALSE(db->Finde(u"Zorn"));
    EXPECT_EQ(db->LogSatz(), 2);
    EXPECT_EQ(db->AktSatzNr(), 5);
    ASSERT_GT(addAddress(*db, {u"Müller", u"Köln", u"", u""}), 0);
    EXPECT_EQ(db->Finde(u"MÜLLER")->Satznummer(), 6);
}

TEST_P(Navigation, AReaderLearnsOfNewRecordsInTime) {
    const auto other = open();
    ASSERT_EQ(addAddress(*db, {u"Neu", u"Ulm", u"", u""}), 6);
    EXPECT_EQ(other->AnzahlDSaetze(), 5);
    ground.clock.advance(std::chrono::seconds(30));
    EXPECT_EQ(other->AnzahlDSaetze(), 5);
    ground.clock.advance(std::chrono::seconds(1));
    EXPECT_EQ(other->AnzahlDSaetze(), 6);
    // Who asks for a record that it does not know looks again at once.
    ASSERT_EQ(addAddress(*db, {u"Neuer", u"Ulm", u"", u""}), 7);
    EXPECT_EQ(other->GetField(7, fNAME), u"Neuer");
}

INSTANTIATE_TEST_SUITE_P(Forms, Navigation, kAllForms, nameOfForm);

class EmptyDatabase : public MemoryDatabase, public testing::WithParamInterface<int32> {};

TEST_P(EmptyDatabase, HasNothingToStandOn) {
    const auto db = make(GetParam());
    for (int32 index = 0; index <= 3; ++index) {
        db->SetIndex(index);
        for (const auto move :
             {&clsTSDB::MoveFirst, &clsTSDB::MoveLast, &clsTSDB::MoveNext, &clsTSDB::MovePrevious}) {
            ((*db).*move)();
            EXPECT_EQ(db->Error(), 62);
            EXPECT_EQ(db->AktSatzNr(), 0);
        }
        for (const TextView key : {u"", u"#1", u"Abel"}) {
            db->Gehezu(key);
            EXPECT_EQ(db->LogSatz(), 0);
            EXPECT_EQ(db->AktSatzNr(), 0);
            EXPECT_EQ(db->Error(), 0);
            EXPECT_FALSE(db->Exist(key, index));
        }
        EXPECT_EQ(db->Index(1), 0);
        EXPECT_EQ(db->Error(), 63);
        EXPECT_FALSE(db->Finde(u"a"));
        EXPECT_FALSE(db->Record());
        EXPECT_EQ(db->Error(), 63);
    }
    EXPECT_TRUE(consistent(*db));
}

INSTANTIATE_TEST_SUITE_P(Forms, EmptyDatabase, kBothForms, formName);

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
