// Random steps by several users with all that an application can do to records, against a plain table. The
// seed and the number of steps can be given: TSRTM_MODEL_SEED, TSRTM_MODEL_STEPS.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

#include "tests/database/MemoryDatabase.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::test {
namespace {

enum ModelField : int32 { dNAME = 1, dORT, dNOTIZ, dPROPS, dPOS };
constexpr int32 kUsers = 3;

struct Row {
    Text name, ort, memo;
    std::map<Text, Text> props;
    TextTable chain;
    bool deleted = false;
};

int32 given(const char* name, int32 otherwise) {
    const char* const text = std::getenv(name);
    return text ? std::atoi(text) : otherwise;
}

class UsersModel : public testing::TestWithParam<Form> {
 protected:
    MemoryFiles disk;
    TestGround ground;
    StartedLibrary library{ground, disk};
    clsRtm rtm;
    std::mt19937 random{static_cast<uint32>(given("TSRTM_MODEL_SEED", 20261122))};
    std::vector<std::shared_ptr<clsTSDB>> users;
    std::vector<Row> rows;  // record n at n - 1

    int32 below(int32 n) { return static_cast<int32>(random() % static_cast<uint32>(n)); }
    clsTSDB& anybody() { return *users[static_cast<std::size_t>(below(kUsers))]; }
    int32 anyNumber() { return 1 + below(static_cast<int32>(rows.size())); }
    Row& at(int32 number) { return rows[static_cast<std::size_t>(number - 1)]; }

    Text anyName() {
        static const Text names[] = {u"Müller", u"Muller", u"MÜLLER", u"Meyer-Lüd",
                                     u"Straße", u"Žižka",  u"",       u"van Dyk"};
        return names[below(8)] + (below(3) == 0 ? Text() : toText(below(30)));
    }
    Text anyText() {
        return Text(static_cast<std::size_t>(below(300)), static_cast<char16_t>(u'a' + below(26)));
    }
    std::vector<Text> anyCells() {
        return {Text(1, static_cast<char16_t>(u'a' + below(26))), toText(below(1000))};
    }
    static Text keyOf(const Row& row) {
        return (row.name.empty() ? u" " : row.name) + u" " + (row.ort.empty() ? u" " : row.ort);
    }
    std::vector<int32> ordered() const {
        std::vector<int32> numbers(rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i) numbers[i] = static_cast<int32>(i) + 1;
        std::stable_sort(numbers.begin(), numbers.end(), [this](int32 a, int32 b) {
            return compareText(keyOf(rows[static_cast<std::size_t>(a - 1)]),
                               keyOf(rows[static_cast<std::size_t>(b - 1)])) < 0;
        });
        return numbers;
    }

    void SetUp() override {
        disk.offerWindows(GetParam().windows);
        const auto fields = fieldsOf({{u"NAME", tsAlphanumerisch, 12},
                                      {u"ORT", tsAlphanumerisch, 6},
                                      {u"NOTIZ", tsMemo, 60},
                                      {u"PROPS", tsProperties, 60},
                                      {u"POS", tsKette, 8}});
        ground.ui.defaultAnswer = 1;
        ASSERT_TRUE(
            rtm.DBCreateExt(DBAnsi, u"/daten/Modell", {}, fields, GetParam().max, u"  1  2  0  2  0  0"));
        disk.put(u"/daten/Modell.DBD/KetteCtl.005",
                 "TS1,2\r\n0,1,1,6,1,\"Text@@7TEXT\"\r\n0,2,1,4,5,\"Zahl@@7ZAHL\"\r\n11,100,0\r\n0\r\n");
        openAll();
    }
    void openAll() {
        for (int32 i = 0; i < kUsers; ++i) {
            users.push_back(rtm.OpenTSDB(u"/daten/Modell"));
            ASSERT_TRUE(users.back());
        }
    }

    void add() {
        const auto record = anybody().Add();
        Row row;
        record->Fields(dNAME, row.name = anyName());
        record->Fields(dORT, row.ort = below(2) == 0 ? u"Bonn" : u"Ulm");
        if (below(2) == 0) record->Fields(dNOTIZ, row.memo = anyText());
        for (int32 i = below(3); i > 0; --i) {
            row.chain.push_back(anyCells());
            const auto cells = record->Kette(dPOS)->Add();
            cells->Fields(1, row.chain.back()[0]);
            cells->Fields(2, row.chain.back()[1]);
            ASSERT_TRUE(cells->Update());
        }
        ASSERT_TRUE(record->Update());
        ASSERT_EQ(record->Satznummer(), static_cast<int32>(rows.size()) + 1);
        rows.push_back(row);
    }
    // Through two objects that were loaded before: each stores what it was given.
    void update() {
        const int32 number = anyNumber();
        const auto mine = anybody().Record(number), theirs = anybody().Record(number)->WorkCopy();
        ASSERT_EQ(mine->Fields(dNAME) + theirs->Fields(dNAME), at(number).name + at(number).name);
        if (below(2) == 0) mine->Fields(dNAME, at(number).name = anyName());
        if (below(3) == 0) mine->Fields(dNOTIZ, at(number).memo = anyText());
        theirs->Fields(dORT, at(number).ort = below(2) == 0 ? u"Köln" : u"");
        const Text key(1, static_cast<char16_t>(u'A' + below(5)));
        theirs->Property(key, at(number).props[key] = toText(below(100)));
        ASSERT_TRUE(theirs->Update());
        ASSERT_TRUE(mine->Update());
    }
    void mark() {
        const int32 number = anyNumber();
        at(number).deleted = below(3) != 0;
        anybody().Record(number)->Deleted(at(number).deleted);
    }
    void changeChain() {
        const int32 number = anyNumber();
        auto& chain = at(number).chain;
        auto& db = anybody();
        if (below(3) == 0) {
            db.AktSatzNr(number);
            TextTable table{{}, anyCells()};
            int32 count = 1;
            db.KetteAction(5, dPOS, table, count);
            ASSERT_EQ(db.Error(), 0);
            chain.push_back(table[1]);
            return;
        }
        const auto set = db.Record(number)->Kette(dPOS);
        ASSERT_EQ(set->Inhalt(), chain);
        if (!chain.empty() && below(2) == 0) {
            const int32 place = 1 + below(static_cast<int32>(chain.size()));
            const auto which = chain.begin() + (place - 1);
            if (below(2) == 0) {
                ASSERT_TRUE(set->Remove(place) && set->Update());
                chain.erase(which);
                return;
            }
            const auto row = set->Record(place);
            row->Fields(1, (*which)[0] = u"x");
            ASSERT_TRUE(row->Update());
            return;
        }
        const bool front = below(2) == 0;
        const auto cells = anyCells();
        const auto row = set->Add(front);
        row->Fields(1, cells[0]);
        row->Fields(2, cells[1]);
        ASSERT_TRUE(row->Update());
        chain.insert(front ? chain.begin() : chain.end(), cells);
    }
    void navigate() {
        const auto order = ordered();
        const auto cursor = anybody().Records()->Index(dNAME);
        cursor->Descending(below(2) == 0);
        const int32 start = below(static_cast<int32>(order.size()));
        cursor->AktSatzNr(order[static_cast<std::size_t>(start)]);
        int32 place = start;
        for (int32 i = 0; i < 5; ++i) {
            const bool on = below(2) == 0;
            const auto record = on ? cursor->MoveNext() : cursor->MovePrevious();
            place += on == cursor->Descending() ? -1 : 1;
            place = std::clamp(place, -1, static_cast<int32>(order.size()));
            const bool there = place >= 0 && place < static_cast<int32>(order.size());
            ASSERT_EQ(record ? record->Satznummer() : 0, there ? order[static_cast<std::size_t>(place)] : 0);
        }
        const Text wanted = anyName();
        const auto found = std::find_if(order.begin(), order.end(),
                                        [&](int32 n) { return compareText(wanted, keyOf(at(n))) <= 0; });
        const auto record = cursor->MoveTo(wanted);
        ASSERT_EQ(record ? record->Satznummer() : 0, found == order.end() ? 0 : *found);
    }
    void ranges() {
        const Text from = anyName(), to = anyName();
        const auto set = anybody().Records()->GetRange(dNAME, from, to);
        std::vector<int32> expected, got;
        for (const int32 n : ordered()) {
            const bool above = from.empty() || compareText(from, keyOf(at(n))) <= 0;
            const bool whole = compareText(to, at(n).name.empty() ? u" " : TextView(at(n).name)) == 0;
            if (above && (to.empty() || whole || compareText(keyOf(at(n)), to) <= 0)) expected.push_back(n);
        }
        for (int32 i = 1; i <= set->Count(); ++i) got.push_back(set->Record(i)->Satznummer());
        ASSERT_EQ(got, expected) << toUtf8(from) << " to " << toUtf8(to);
        auto& db = anybody();
        got.clear();
        Variant none;
        const auto heard = db.Action.connect([&](int32 number, bool&, Variant&) { got.push_back(number); });
        db.ActionLoop(dNAME, u"", u"", false, none);
        expected = ordered();
        std::erase_if(expected,
                      [&](int32 n) { return at(n).deleted || compareText(keyOf(at(n)), u"ŽŽ") > 0; });
        ASSERT_EQ(got, expected);
    }
    // Nobody else may have it open.
    void pack() {
        const auto alone = users.front();
        users.clear();
        ASSERT_TRUE(alone->Pack());
        ASSERT_TRUE(alone->PackMemoKette());
        std::erase_if(rows, [](const Row& row) { return row.deleted; });
        alone->Schliesse();
        openAll();
    }
    void compareAll() {
        auto& db = anybody();
        ASSERT_EQ(db.AnzahlDSaetze(), static_cast<int32>(rows.size()));
        for (int32 n = 1; n <= db.AnzahlDSaetze(); ++n) {
            const auto record = db.Record(n)->WorkCopy();
            ASSERT_EQ(record->Fields(dNAME) + u"|" + record->Fields(dORT), at(n).name + u"|" + at(n).ort);
            ASSERT_EQ(record->Fields(dNOTIZ), at(n).memo);
            for (const auto& [key, value] : at(n).props) ASSERT_EQ(record->Property(lower(key)), value);
            ASSERT_EQ(record->Deleted(), at(n).deleted);
            ASSERT_EQ(record->Kette(dPOS)->Inhalt(), at(n).chain);
        }
        std::vector<int32> order;
        const auto cursor = db.Records()->Index(dNAME);
        while (const auto record = cursor->MoveNext()) order.push_back(record->Satznummer());
        ASSERT_EQ(order, ordered());
        ASSERT_TRUE(consistent(db));
    }
};

TEST_P(UsersModel, AgreesWithATable) {
    const int32 steps = given("TSRTM_MODEL_STEPS", 1200);
    for (int32 step = 0; step < steps && !HasFatalFailure(); ++step) {
        const int32 action = below(100);
        SCOPED_TRACE(testing::Message() << "step " << step << " action " << action);
        if (action < 20 || rows.size() < 5)
            add();
        else if (action < 50)
            update();
        else if (action < 60)
            mark();
        else if (action < 85)
            changeChain();
        else if (action < 96)
            navigate();
        else if (action < 99)
            ranges();
        else if (below(4) == 0 || rows.size() > 400)
            pack();
        if (!HasFatalFailure() && step % 1000 == 999) compareAll();
        // Waiting for nobody: what was left open is given back.
        if (rows.size() > 600) pack();
    }
    if (!HasFatalFailure()) compareAll();
}

INSTANTIATE_TEST_SUITE_P(Forms, UsersModel, kAllForms, nameOfForm);

}  // namespace
}  // namespace tsRtm::test
