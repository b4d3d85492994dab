// Random steps by several users with all that an application can do to records, against a plain table: users
// within one program, and users each of whom is a process. The seed and the number of steps can be given:
// TSRTM_MODEL_SEED, TSRTM_MODEL_STEPS.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

#include "tests/database/Deaths.hpp"
#include "tests/database/FullDatabase.hpp"
#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/ChildProcess.hpp"
#include "tests/support/ShareClients.hpp"
#include "tsRtm/frame/text/TextOrder.hpp"

namespace tsRtm::test {
namespace {

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

class Model {
 public:
    // One of the users, a process, or all of them: then at machines of their own, if there are such.
    // Processes draw the same steps and keep the same table, and each acts where it is its turn.
    explicit Model(Text folder, ShareClients* machines = nullptr)
        : folder_(std::move(folder)), machines_(machines) {}
    Model(Text folder, int32 me, ChildProcess::Line& others)
        : folder_(std::move(folder)), me_(me), others_(&others) {}

    void openAll() {
        for (int32 i = 0; i < (others_ ? 1 : kUsers); ++i) {
            sitDownAt(i);
            users.push_back(rtm.OpenTSDB(folder_));
            ASSERT_TRUE(users.back()) << rtmMain::state().F;
        }
    }
    void run() {
        openAll();
        const int32 steps = given("TSRTM_MODEL_STEPS", 1200);
        for (int32 i = 0; i < steps && !testing::Test::HasFatalFailure(); ++i) {
            const int32 action = below(100);
            SCOPED_TRACE(testing::Message() << "step " << i << " action " << action);
            step(action);
            meet();
            if (!testing::Test::HasFatalFailure() && i % 1000 == 999) compareAll();
            meet();
        }
        if (!testing::Test::HasFatalFailure()) compareAll();
    }

 private:
    Text folder_;
    ShareClients* machines_ = nullptr;
    int32 me_ = -1;
    ChildProcess::Line* others_ = nullptr;
    clsRtm rtm;
    std::mt19937 random{static_cast<uint32>(given("TSRTM_MODEL_SEED", 20261122))};
    std::vector<std::shared_ptr<clsTSDB>> users;
    std::vector<Row> rows;  // record n at n - 1

    int32 below(int32 n) { return static_cast<int32>(random() % static_cast<uint32>(n)); }
    // Who is drawn for what comes next; nobody where that is another process.
    clsTSDB* anybody() {
        const int32 user = below(kUsers);
        sitDownAt(user);
        if (!others_) return users[static_cast<std::size_t>(user)].get();
        return user == me_ ? users.front().get() : nullptr;
    }
    void sitDownAt(int32 user) {
        if (machines_) machines_->as(user);
    }
    // With the others; fails where one of them has given up or does not come.
    void meet() {
        if (!others_ || testing::Test::HasFatalFailure()) return;
        ASSERT_TRUE(others_->say('M') && others_->hear() == 'G');
    }
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

    void step(int32 action) {
        if ((action < 20 && rows.size() < 400) || rows.size() < 5)
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
        else if (below(4) == 0 || rows.size() == 400)
            pack();
    }
    void add() {
        Row row;
        row.name = anyName();
        row.ort = below(2) == 0 ? u"Bonn" : u"Ulm";
        if (below(2) == 0) row.memo = anyText();
        for (int32 i = below(3); i > 0; --i) row.chain.push_back(anyCells());
        rows.push_back(row);
        clsTSDB* const db = anybody();
        if (!db) return;
        const auto record = db->Add();
        record->Fields(uNAME, row.name);
        record->Fields(uORT, row.ort);
        if (!row.memo.empty()) record->Fields(uNOTIZ, row.memo);
        for (const auto& cells : row.chain)
            ASSERT_TRUE(stored(record->Kette(uPOS)->Add(), {{1, cells[0]}, {2, cells[1]}}));
        ASSERT_TRUE(record->Update());
        ASSERT_EQ(record->Satznummer(), static_cast<int32>(rows.size()));
    }
    // Through two objects that were loaded before: each stores what it was given.
    void update() {
        const int32 number = anyNumber();
        clsTSDB* const one = anybody();
        clsTSDB* const other = anybody();
        const auto mine = one ? one->Record(number) : nullptr;
        const auto theirs = other ? other->Record(number)->WorkCopy() : nullptr;
        for (const auto& record : {mine, theirs})
            ASSERT_EQ(record ? record->Fields(uNAME) : at(number).name, at(number).name);
        meet();
        auto& row = at(number);
        row.ort = below(2) == 0 ? u"Köln" : u"";
        const Text key(1, static_cast<char16_t>(u'A' + below(5)));
        row.props[key] = toText(below(100));
        if (theirs) {
            theirs->Fields(uORT, row.ort);
            theirs->Property(key, row.props[key]);
            ASSERT_TRUE(theirs->Update());
        }
        meet();
        const bool name = below(2) == 0, memo = below(3) == 0;
        if (name) row.name = anyName();
        if (memo) row.memo = anyText();
        if (!mine) return;
        if (name) mine->Fields(uNAME, row.name);
        if (memo) mine->Fields(uNOTIZ, row.memo);
        ASSERT_TRUE(mine->Update());
    }
    void mark() {
        const int32 number = anyNumber();
        at(number).deleted = below(3) != 0;
        if (clsTSDB* const db = anybody()) db->Record(number)->Deleted(at(number).deleted);
    }
    void changeChain() {
        const int32 number = anyNumber();
        auto& chain = at(number).chain;
        const TextTable before = chain;
        clsTSDB* const db = anybody();
        if (below(3) == 0) {
            chain.push_back(anyCells());
            ASSERT_TRUE(!db || addRow(*db, number, End::tail, chain.back()) == 0);
            return;
        }
        const auto set = db ? db->Record(number)->Kette(uPOS) : nullptr;
        ASSERT_EQ(set ? set->Inhalt() : before, before);
        if (!chain.empty() && below(2) == 0) {
            const int32 place = 1 + below(static_cast<int32>(chain.size()));
            const auto which = chain.begin() + (place - 1);
            if (below(2) == 0) {
                ASSERT_TRUE(!set || (set->Remove(place) && set->Update()));
                chain.erase(which);
                return;
            }
            (*which)[0] = u"x";
            ASSERT_TRUE(!set || stored(set->Record(place), {{1, u"x"}}));
            return;
        }
        const bool front = below(2) == 0;
        const auto cells = anyCells();
        chain.insert(front ? chain.begin() : chain.end(), cells);
        ASSERT_TRUE(!set || stored(set->Add(front), {{1, cells[0]}, {2, cells[1]}}));
    }
    void navigate() {
        clsTSDB* const db = anybody();
        const auto order = db ? ordered() : std::vector<int32>(rows.size());
        const auto cursor = db ? db->Records()->Index(uNAME) : nullptr;
        const bool down = below(2) == 0;
        const int32 start = below(static_cast<int32>(order.size()));
        const auto ways = random();  // on or back, a bit each
        const Text wanted = anyName();
        if (!cursor) return;
        cursor->Descending(down);
        cursor->AktSatzNr(order[static_cast<std::size_t>(start)]);
        int32 place = start;
        for (int32 i = 0; i < 5; ++i) {
            const bool on = (ways >> i & 1) != 0;
            const auto record = on ? cursor->MoveNext() : cursor->MovePrevious();
            place += on == down ? -1 : 1;
            place = std::clamp(place, -1, static_cast<int32>(order.size()));
            const bool there = place >= 0 && place < static_cast<int32>(order.size());
            ASSERT_EQ(record ? record->Satznummer() : 0, there ? order[static_cast<std::size_t>(place)] : 0);
        }
        const auto found = std::find_if(order.begin(), order.end(),
                                        [&](int32 n) { return compareText(wanted, keyOf(at(n))) <= 0; });
        const auto record = cursor->MoveTo(wanted);
        ASSERT_EQ(record ? record->Satznummer() : 0, found == order.end() ? 0 : *found);
    }
    void ranges() {
        const Text from = anyName(), to = anyName();
        clsTSDB* const db = anybody();
        if (!db) return;
        const auto set = db->Records()->GetRange(uNAME, from, to);
        std::vector<int32> expected, got;
        for (const int32 n : ordered()) {
            const bool above = from.empty() || compareText(from, keyOf(at(n))) <= 0;
            const bool whole = compareText(to, at(n).name.empty() ? u" " : TextView(at(n).name)) == 0;
            if (above && (to.empty() || whole || compareText(keyOf(at(n)), to) <= 0)) expected.push_back(n);
        }
        for (int32 i = 1; i <= set->Count(); ++i) got.push_back(set->Record(i)->Satznummer());
        ASSERT_EQ(got, expected) << toUtf8(from) << " to " << toUtf8(to);
        got.clear();
        Variant none;
        const auto heard = db->Action.connect([&](int32 number, bool&, Variant&) { got.push_back(number); });
        db->ActionLoop(uNAME, u"", u"", false, none);
        expected = ordered();
        std::erase_if(expected,
                      [&](int32 n) { return at(n).deleted || compareText(keyOf(at(n)), u"ŽŽ") > 0; });
        ASSERT_EQ(got, expected);
    }
    // Nobody else may have it open.
    void pack() {
        users.clear();
        meet();
        if (me_ <= 0) {
            const auto alone = rtm.OpenTSDB(folder_);
            ASSERT_TRUE(alone && alone->Pack() && alone->PackMemoKette());
        }
        std::erase_if(rows, [](const Row& row) { return row.deleted; });
        meet();
        openAll();
    }
    void compareAll() {
        clsTSDB* const who = anybody();
        if (!who) return;
        auto& db = *who;
        db.Stand();  // the number of records may be half a minute old
        ASSERT_EQ(db.AnzahlDSaetze(), static_cast<int32>(rows.size()));
        for (int32 n = 1; n <= db.AnzahlDSaetze(); ++n) {
            const auto record = db.Record(n)->WorkCopy();
            ASSERT_EQ(record->Fields(uNAME) + u"|" + record->Fields(uORT), at(n).name + u"|" + at(n).ort);
            ASSERT_EQ(record->Fields(uNOTIZ), at(n).memo);
            for (const auto& [key, value] : at(n).props) ASSERT_EQ(record->Property(lower(key)), value);
            ASSERT_EQ(record->Deleted(), at(n).deleted);
            ASSERT_EQ(record->Kette(uPOS)->Inhalt(), at(n).chain);
        }
        std::vector<int32> order;
        const auto cursor = db.Records()->Index(uNAME);
        while (const auto record = cursor->MoveNext()) order.push_back(record->Satznummer());
        ASSERT_EQ(order, ordered());
        ASSERT_TRUE(consistent(db));
    }
};

class UsersModel : public testing::TestWithParam<Form> {};

TEST_P(UsersModel, AgreesWithATable) {
    MemoryFiles disk;
    disk.offerWindows(GetParam().windows);
    Process program(disk);
    ASSERT_TRUE(makeFull(program.rtm, kFolder, {.max = GetParam().max}));
    Model(Text(kFolder)).run();
}
INSTANTIATE_TEST_SUITE_P(Forms, UsersModel, kAllForms, nameOfForm);

TEST(UsersModelOnAShare, AgreesWithATable) {
    for (const int32 max : {kNormal, kBig}) {
        MemoryFiles server;
        server.setDriveKind(platform::DriveKind::remote);
        ShareClients machines(server);
        Process program(machines);
        ASSERT_TRUE(makeFull(program.rtm, kFolder, {.max = max}));
        Model(Text(kFolder), &machines).run();
    }
}

TEST(UsersModelProcesses, AgreeWithATable) {
    for (const int32 max : {kNormal, kBig}) {
        RealFiles real;
        const Text folder = real.temp.name(u"Modell");
        ASSERT_TRUE(makeFull(real.rtm, folder, {.max = max}));
        std::vector<std::unique_ptr<ChildProcess>> processes;
        for (int32 me = 0; me < kUsers; ++me)
            processes.push_back(std::make_unique<ChildProcess>([&, me](ChildProcess::Line& line) {
                Model(folder, me, line).run();
                std::fflush(stdout);
                return testing::Test::HasFatalFailure() ? 1 : 0;
            }));
        for (bool all = true; all;) {
            for (const auto& process : processes) all = process->line().hear() == 'M' && all;
            for (const auto& process : processes) process->line().say(all ? 'G' : 'E');
        }
        for (const auto& process : processes) EXPECT_EQ(process->wait(), 0);
    }
}

}  // namespace
}  // namespace tsRtm::test
