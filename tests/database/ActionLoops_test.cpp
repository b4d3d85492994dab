// Loops over ranges that call a handler for each record.
#include "tests/database/MemoryDatabase.hpp"

namespace tsRtm::test {
namespace {

using Numbers = std::vector<int32>;

// 3 Abel, 5 Berg Aachen, 2 Berg Bonn, 4 Cohn, 1 Dorn.
class ActionLoops : public FiveAddresses {
 protected:
    Variant zusatz;

    Numbers visited(int32 field, TextView from, TextView to, bool all = false) {
        Numbers out;
        const auto heard = db->Action.connect([&](int32 number, bool&, Variant&) { out.push_back(number); });
        db->ActionLoop(field, from, to, all, zusatz);
        return out;
    }
};

TEST_P(ActionLoops, OfTheDatabaseGoThroughARange) {
    const struct {
        int32 field;
        Text from, to;
        Numbers expected;
    } rows[] = {
        {fNAME, u"", u"", {3, 5, 2, 4, 1}},
        {fNAME, u"B", u"Be", {5, 2}},
        {fNAME, u"berg bonn", u"C", {2, 4}},
        {fNAME, u"E", u"", {}},
        {fTAG, u"", u"", {4, 3, 1, 5, 2}},
        {fTAG, u"01.01.2003", u"31.12.2003", {1, 5}},
        {0, u"2", u"4", {2, 3, 4}},
        {0, u"", u"", {1, 2, 3, 4, 5}},
        {0, u"4", u"99", {4, 5}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(visited(row.field, row.from, row.to), row.expected) << toUtf8(row.from) << toUtf8(row.to);
    db->Delete(5);
    EXPECT_TOLD("2|5,2", visited(fNAME, u"B", u"Be"), visited(fNAME, u"B", u"Be", true));
    EXPECT_TOLD("|1", visited(fORT, u"", u""), db->Error());
    const auto reader = open(true);
    EXPECT_EQ((reader->ActionLoop(fNAME, u"", u"", true, zusatz, true), reader->Error()), 5);
}

TEST_P(ActionLoops, OfTheDatabaseStandOnEachRecord) {
    Text told;
    const auto starts = db->ActionStart.connect([&](Variant& z) {
        told += u"start ";
        z = Variant(7);
    });
    const auto ends = db->ActionEnd.connect([&](Variant& z) { told += u"end" + toText(*z.number()); });
    const auto visits = db->Action.connect([&](int32 number, bool& store, Variant& z) {
        told += toText(db->LogSatz()) + u":" + db->Fields(fNAME) + u" ";
        z = Variant(*z.number() + 1);
        EXPECT_EQ(db->AktSatzNr(), number);
        EXPECT_FALSE(store);
        if (number == 2) {
            db->Fields(fORT, u"Ulm");
            store = true;
        }
        if (number == 4) db->CancelAction(true);
    });
    db->ActionLoop(fNAME, u"B", u"", false, zusatz);
    EXPECT_TOLD("start 2:Berg 3:Berg 4:Cohn end10|Ulm|0", told, db->GetField(2, fORT), db->Error());
}

// A price is raised once, wherever its record goes by that.
TEST_P(ActionLoops, VisitEachRecordOnceWhateverItBecomes) {
    const auto raise = [](const Text& text) { return toText(roundToInt32(Val(text)) + 3) + u".00"; };
    const auto heard = db->Action.connect([&](int32, bool& store, Variant&) {
        db->Fields(fBETRAG, raise(db->Fields(fBETRAG)));
        store = true;
    });
    db->ActionLoop(fBETRAG, u"", u"", true, zusatz, true);
    const auto cursor = db->Records()->Index(fBETRAG);
    const auto too = cursor->Action.connect(
        [&](auto& record, Variant&) { record->Fields(fBETRAG, raise(record->Fields(fBETRAG))); });
    cursor->ActionLoop(u"", u"", true, zusatz, true);
    for (int32 n = 1; n <= 5; ++n) EXPECT_EQ(db->GetField(n, fBETRAG), toText(6 - n + 6) + u".00");
    EXPECT_TRUE(consistent(*db));
}

TEST_P(ActionLoops, PassOverWhatHasLeftTheRange) {
    const auto other = open();
    Numbers out;
    const auto heard = db->Action.connect([&](int32 number, bool&, Variant&) {
        out.push_back(number);
        if (number == 3) {
            EXPECT_EQ(change(*other, 2, fNAME, u"Zett"), 0);
            other->Delete(4);
            ASSERT_EQ(addAddress(*other, {u"Celan", u"", u"", u""}), 6);
        }
    });
    db->ActionLoop(fNAME, u"", u"D", false, zusatz);
    EXPECT_EQ(out, (Numbers{3, 5, 1}));
    out.clear();
    const auto cursor = db->Records()->Index(fNAME);
    const auto too = cursor->Action.connect([&](auto& record, Variant&) {
        out.push_back(record->Satznummer());
        if (record->Satznummer() == 6) {
            EXPECT_EQ(change(*other, 1, fNAME, u"Abel"), 0);
        }
    });
    cursor->ActionLoop(u"C", u"D", false, zusatz);
    EXPECT_EQ(out, (Numbers{6}));
    cursor->Descending(true);
    out.clear();
    cursor->ActionLoop(u"", u"B", true, zusatz);
    EXPECT_EQ(out, (Numbers{5, 3, 1}));
}

TEST_P(ActionLoops, OfACursorGiveBackTheLocksTheyWon) {
    const auto other = open();
    const auto records = db->Records();
    const auto held = db->Record(4, true);
    Text told;
    const auto cursor = records->Index(fNAME);
    const auto heard = cursor->Action.connect([&](auto& record, Variant&) {
        for (int32 n = 1; n <= 5; ++n) told += other->Gesperrt(n) ? u"x" : u"-";
        told += u" ";
        if (record->Satznummer() == 2) record->Fields(fORT, u"Ulm");
        if (record->Satznummer() == 4) cursor->CancelAction(true);
    });
    cursor->ActionLoop(u"Berg Bonn", u"", false, zusatz, true);
    EXPECT_EQ(told, u"-x-x- ---x- ");
    EXPECT_TOLD("yes|no|Ulm", other->Gesperrt(4), other->Gesperrt(2), db->GetField(2, fORT));
    records->ReadOnly(true);
    EXPECT_EQ(raised([&] { cursor->ActionLoop(u"", u"", true, zusatz, true); }),
              "70|clsTSIndex.ActionLoop|Der Recordset ist Readonly");
}

// 2 is locked by somebody else.
struct Answer {
    std::vector<eLockedAction> said;
    std::vector<int32> boxes;  // what the user answers
    Text told;                 // asked, visited
    int32 freedAt = 0;         // when asked so often the other gives up
};

TEST_P(ActionLoops, OfACursorMeetLockedRecords) {
    const Answer answers[] = {
        {{Cancel}, {}, u"3 5 ?0 end", 0},
        {{Ignore}, {}, u"3 5 ?0 4 1 end", 0},
        {{Retry, Retry, Ignore}, {}, u"3 5 ?0 ?5 ?5 4 1 end", 0},
        {{Retry, Retry}, {}, u"3 5 ?0 ?5 2 4 1 end", 2},
        {{Delay}, {}, u"3 5 ?0 4 1 2 end", 1},
        {{Delay, Ignore}, {}, u"3 5 ?0 4 1 ?5 end", 0},
        {{Delay, Delay}, {5}, u"3 5 ?0 4 1 ?5 end", 0},
        {{AskUser, Ignore}, {4}, u"3 5 ?0 ?5 4 1 end", 0},
        {{AskUser}, {5}, u"3 5 ?0 4 1 end", 0},
        {{AskUser}, {3}, u"3 5 ?0 end", 0},
    };
    const auto other = open();
    for (const auto& answer : answers) {
        ASSERT_TRUE(other->Sperren(2));
        ground.ui.boxes.clear();
        ground.ui.answers.assign(answer.boxes.begin(), answer.boxes.end());
        const auto cursor = db->Records()->Index(fNAME);
        Text told;
        std::size_t asked = 0;
        const auto visits = cursor->Action.connect(
            [&](auto& record, Variant&) { told += toText(record->Satznummer()) + u" "; });
        const auto ends = cursor->ActionEnd.connect([&] { told += u"end"; });
        const auto asks = cursor->ActionLocked.connect([&](auto& record, Variant&, eLockedAction& action) {
            EXPECT_EQ(record->Satznummer(), 2);
            told += u"?" + toText(action) + u" ";
            if (asked < answer.said.size()) action = answer.said[asked];
            if (static_cast<int32>(++asked) == answer.freedAt) other->Entsperren(2);
        });
        cursor->ActionLoop(u"", u"", true, zusatz, true);
        EXPECT_TRUE(told == answer.told && ground.ui.boxes.size() == answer.boxes.size()) << toUtf8(told);
        const Text reason = answer.said[0] == Delay ? u"noch immer gesperrt" : u"von einem anderen Benutzer";
        EXPECT_NE(
            answer.boxes.empty(),
            shown().find(u"Nummer 2: \"Berg\" kann nicht bearbeitet werden, weil er " + reason) != Text::npos)
            << toUtf8(shown());
        EXPECT_TOLD("yes|0", other->Entsperren(2), db->Error());
    }
}

TEST_P(ActionLoops, OfACursorEndEvenWhereTheRangeIsEmpty) {
    for (const bool empty : {false, true}) {
        const auto set = empty ? db->Records()->GetSelection({}) : db->Records();
        const auto cursor = set->Index(fNAME);
        int32 ended = 0;
        const auto heard = cursor->ActionEnd.connect([&] { ++ended; });
        cursor->ActionLoop(u"Zz", u"Zz", true, zusatz);
        EXPECT_EQ(ended, empty ? 0 : 1);
    }
}

// Handlers may end what they are called from.
TEST_P(ActionLoops, BearHandlersThatCloseOrPack) {
    Numbers out;
    for (const bool pack : {true, false}) {
        const auto cursor = db->Records()->Index(fNAME);
        const auto heard = cursor->Action.connect([&](auto& record, Variant&) {
            out.push_back(record->Satznummer());
            if (!pack) return db->Schliesse();
            db->Delete(1);
            EXPECT_TRUE(db->Pack());
        });
        cursor->ActionLoop(u"", u"", false, zusatz, true);
        EXPECT_TOLD("1|no", std::exchange(out, {}).size(), cursor->RecordSet() != nullptr);
    }
    db = open();
    const auto heard = db->Action.connect([&](int32 number, bool& store, Variant&) {
        out.push_back(number);
        store = true;
        db->Schliesse();
    });
    db->ActionLoop(fNAME, u"", u"", false, zusatz);
    EXPECT_TOLD("1|0", out.size(), db->AnzahlDSaetze());
    EXPECT_TRUE(consistent(*open()));
}

INSTANTIATE_TEST_SUITE_P(Forms, ActionLoops, kAllForms, nameOfForm);

}  // namespace
}  // namespace tsRtm::test
