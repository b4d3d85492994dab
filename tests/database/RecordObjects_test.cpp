// Record objects: one for a record, whose lock is whose, and their properties.
#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {
namespace {

class RecordObjects : public FiveAddresses {};

TEST_P(RecordObjects, ThereIsOneForARecord) {
    const auto mine = db->Record(2);
    EXPECT_TRUE(db->Record(2) == mine && db->Record(3) != mine && mine->WorkCopy() != mine);
    // A change shows in it, by whomever, but never over what is not stored yet.
    EXPECT_TOLD("Bonn|Ulm", mine->Fields(fORT), (db->PutField(2, fORT, u"Ulm"), mine->Fields(fORT)));
    const auto other = open();
    EXPECT_EQ((other->PutField(2, fORT, u"Kiel"), db->Record(2)->Fields(fORT)), u"Kiel");
    mine->Fields(fNAME, u"Neu");
    db->PutField(2, fBETRAG, u"9.00");
    EXPECT_TOLD("Neu|yes", db->Record(2)->Fields(fNAME), mine->Update());
    EXPECT_EQ(addressAt(*db, 2), (Address{u"Neu", u"Kiel", u"9.00", u"01022004"}));
    // An added one is found by its number as soon as anybody hears of that.
    std::vector<bool> found;
    const auto added = db->Add();
    const auto heard =
        db->RecordChange.connect([&](int32 number) { found.push_back(db->Record(number) == added); });
    ASSERT_TRUE(stored(added, {{fNAME, u"Zuse"}}));
    EXPECT_TOLD("no|0", found.empty(), std::count(found.begin(), found.end(), false));
    // Whoever holds an object of his own is asked for it.
    const auto copy = added->WorkCopy();
    const auto held = db->HalloSatz.connect([&](int32 n, std::shared_ptr<clsTSRecord>& record) {
        if (n == 6) record = copy;
    });
    EXPECT_EQ(db->Record(6), copy);
}

// Whoever won a lock gives it back, nobody else.
TEST_P(RecordObjects, ALockHasOneOwner) {
    const auto other = open();
    const auto record = db->Record(2);
    const auto copy = record->WorkCopy();
    EXPECT_TOLD("yes|no|yes|yes|yes", record->Sperren(), copy->Sperren(-1), copy->Entsperren(),
                record->Locked(), other->Gesperrt(2));
    EXPECT_TOLD("yes|no|yes", db->Entsperren(2), record->Locked(), db->Sperren(2));
    EXPECT_TRUE(stored(record, {{fNAME, u"Neu"}}));
    record->Entsperren();
    db->Record(2).reset();
    EXPECT_TOLD("yes|yes", other->Gesperrt(2), db->Entsperren(2));
    for (const bool locked : {true, false}) EXPECT_EQ((record->Locked(locked), other->Gesperrt(2)), locked);
    ASSERT_TRUE(record->Sperren());
    EXPECT_FALSE((db->KillAllObjects(), other->Gesperrt(2)));
}

// One that a handler ends while it is stored or locked stands for nothing any more, and holds no lock.
TEST_P(RecordObjects, MayEndInTheMiddleOfTheirWork) {
    const auto other = open();
    auto added = db->Add();
    added->Fields(fNAME, u"Neu");
    auto ending = db->IndexChange.connect([&](int32) { db->KillAllObjects(); });
    added->Update();
    auto locked = db->Record(2);
    ending = db->RecordChange.connect([&](int32) { db->KillAllObjects(); });
    EXPECT_FALSE(locked->Sperren());
    added.reset();
    locked.reset();
    ending = {};
    EXPECT_TOLD("no|no", other->Gesperrt(2), other->Gesperrt(6));
    EXPECT_TOLD("Neu|Berg", db->Record(6)->Fields(fNAME), db->Record(2)->Fields(fNAME));
}

// Whoever hears that his record has ended asks for it again, by the number that it had.
TEST_P(RecordObjects, NoneOutlivesItsNumber) {
    std::vector<std::shared_ptr<clsTSRecord>> held, anew;
    std::shared_ptr<clsTSRecordSet> some;
    for (int32 n = 1; n <= 5; ++n) held.push_back(db->Record(n));
    const auto again = held[0]->Invalidated.connect([&] {
        for (int32 n = 2; n <= 5; ++n) anew.push_back(db->Record(n)->WorkCopy());
        some = db->Records()->GetRange(fNAME, u"Berg", u"Dorn");
    });
    db->Delete(1);
    ASSERT_TRUE(db->Pack());
    for (const auto& record : anew) {
        record->Fields(fORT, u"Nirgends");
        record->Update();
    }
    for (int32 n = 1; n <= 4; ++n) EXPECT_NE(db->GetField(n, fORT), u"Nirgends") << n;
    EXPECT_EQ(some->Count(), 0);
    // Nor does one that is asked for while the database is closed.
    const auto kept = db->Record(2);
    std::shared_ptr<clsTSRecord> late;
    const auto closing = kept->Invalidated.connect([&] { late = db->Record(3)->WorkCopy(); });
    db->Schliesse();
    ASSERT_EQ(db->Oeffne(kFolder), 0);
    EXPECT_FALSE(stored(late, {{fORT, u"Nirgends"}}));
    // The database ends before its records.
    bool told = false;
    const auto last = db->Record(1);
    const auto end = last->Invalidated.connect([&] { told = true; });
    held.clear(), some.reset();
    db.reset();
    EXPECT_TRUE(told);
}

INSTANTIATE_TEST_SUITE_P(Forms, RecordObjects, kAllForms, nameOfForm);

enum PropertyField : int32 { pNAME = 1, pPROPS, pX, pY };

class Properties : public MemoryDatabase {
 protected:
    std::shared_ptr<clsTSDB> db = make(fieldsOf({{u"NAME", tsAlphanumerisch, 8},
                                                 {u"PROPS", tsProperties, 60},
                                                 {u"X:Fenster(1).Links", tsAlphanumerisch, 6},
                                                 {u"Y:Fenster.Oben", tsAlphanumerisch, 6}}),
                                       kBig, u"  1  0  0");
    void SetUp() override {
        for (int32 n = 0; n < 2; ++n) ASSERT_TRUE(db->Append());
    }
};

TEST_F(Properties, AreLinesOfTheMemo) {
    const auto record = db->Record(1);
    record->Fields(pPROPS, u"Farbe=rot\rohne Wert\rGröße=5=6\rFARBE=blau");
    EXPECT_TOLD("rot|5=6||", record->Property(u"farbe"), record->Property(u"Größe"),
                record->Property(u"ohne Wert"), record->Property(u""));
    record->Property(u"FARBE", u"grün");
    record->Property(u"neu", u"");
    ASSERT_TRUE(record->Update());
    EXPECT_EQ(open()->Record(1)->Fields(pPROPS), u"Farbe=grün\rohne Wert\rGröße=5=6\rFARBE=blau\rneu=");
    const auto table = record->Properties();
    EXPECT_TOLD("4|Größe|5=6", table->Count(), table->Item(2, 1), table->Item(2, 2));
    for (const auto& wrong : {std::pair{u"", u"x"}, {u"a=b", u"x"}, {u"a\rb", u"x"}, {u"a", u"x\ny"}})
        EXPECT_EQ(raised([&] { record->Property(wrong.first, wrong.second); }).substr(0, 24),
                  "380|clsTSRecord.Property");
    db->Record(2)->Property(u"nie gespeichert", u"1");
    EXPECT_TOLD("3|Farbe|1", db->FindPropertyNames(), db->PropertyNames()->Item(1, 1),
                db->PropertyNames()->Item(1, 2));
}

TEST_F(Properties, OfSeveralUsersStayBesideEachOther) {
    const auto other = open();
    const auto mine = db->Record(1), theirs = other->Record(1);
    mine->Property(u"A", u"1");
    theirs->Property(u"B", u"2");
    EXPECT_TOLD("1|yes|yes|A=1\rB=2", mine->Property(u"a"), mine->Update(), theirs->Update(),
                mine->Fields(pPROPS));
    // What is there already is not written once more.
    const Bytes before = file(u"Memo-000.002");
    mine->Property(u"b", u"2");
    ASSERT_TRUE(mine->Update());
    EXPECT_EQ(file(u"Memo-000.002"), before);
    // A whole text takes the place of all, with the keys set behind it.
    theirs->Property(u"C", u"3");
    mine->Property(u"D", u"4");
    mine->Fields(pPROPS, u"E=5");
    mine->Property(u"F", u"6");
    EXPECT_TOLD("yes|yes|E=5\rF=6", theirs->Update(), mine->Update(), db->Record(1)->Fields(pPROPS));
    // A new record has them from its first store on.
    const auto added = db->Add();
    added->Property(u"G", u"7");
    EXPECT_TOLD("yes|7", added->Update(), other->Record(3)->Property(u"G"));
}

struct Window : iPropertyTarget {
    Text set;
    bool Set(TextView Name, TextView Wert) override {
        set.append(Name).append(u"=").append(Wert).append(u";");
        return Name != u"LINKS" && Name != u"Links";
    }
};

TEST_F(Properties, AnObjectTakesTheFieldsThatNameIt) {
    const auto record = db->Record(1);
    record->Fields(pX, u"10");
    record->Fields(pY, u"20");
    Window one, other, none;
    EXPECT_TOLD("yes|yes|no", record->GetObject(u"Fenster", one, 1), record->GetObject(u"fenster", other, 2),
                record->GetObject(u"Tisch", none));
    EXPECT_TOLD("LINKS=10;OBEN=20;|OBEN=20;|", upper(one.set), upper(other.set), none.set);
}

}  // namespace
}  // namespace tsRtm::test
