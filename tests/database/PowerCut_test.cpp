// What a cut of the power leaves, at every change of the files: with durable writes all that was
// acknowledged; without them a sound database, and all that was not written since the last flush.
//
// TSRTM_POWER_CUTS=n makes that many cuts, spread over all cases; some thousand otherwise.
#include <cstdlib>
#include <set>

#include "tests/database/Deaths.hpp"
#include "tests/database/FullDatabase.hpp"
#include "tests/support/PowerCutFiles.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kRecords = 9;
constexpr int32 kLength = 300;  // a record lies in more than one sector
constexpr int32 kSteps = 9;     // works in a row

using Model = std::map<int32, FullRow>;

struct Case {
    bool durable;
    int32 max;
    bool windows;
};
std::string caseName(const testing::TestParamInfo<Case>& info) {
    return std::string(info.param.durable ? "durable" : "lazy") + (info.param.max == kBig ? "Tree" : "Flat") +
           (info.param.windows ? "" : "WithoutWindows");
}

Text letters(std::size_t count, uint32 seed) {
    Text out;
    for (std::size_t i = 0; i < count; ++i) out += static_cast<char16_t>(u'a' + (seed + i * i) % 26);
    return out;
}

// What has to be there, and which records were written since they were surely on the medium.
struct State {
    Model rows;
    std::set<int32> fresh;
};

struct Cut {
    MemoryFiles::Snapshot medium;
    std::shared_ptr<const State> told;   // acknowledged
    std::shared_ptr<const State> meant;  // by the work under way
    const char* work;
};

// Two objects of one program that work in turns, and the cuts at each of their changes.
class Session {
 public:
    Session(const Case& now, MemoryFiles& disk, uint32 seed)
        : case_(now), files_(disk), random_(seed), program_(files_) {}

    std::vector<Cut> run() {
        program_.rtm.Dauerhaft(case_.durable);
        for (auto& db : dbs_) db = program_.rtm.OpenTSDB(kFolder);
        for (int32 n = 1; n <= dbs_[0]->AnzahlDSaetze(); ++n) now_.rows[n] = rowAt(*dbs_[0], n);
        acknowledged();
        files_.beforeChange = [this] { cut(); };
        for (int32 step = 0; step < kSteps; ++step) {
            program_.ground.clock.sleep(std::chrono::milliseconds(random(1500)));
            work();
            cut();
        }
        for (auto& db : dbs_) db.reset();
        cut();
        files_.beforeChange = nullptr;
        return std::move(cuts_);
    }

 private:
    int32 random(int32 count) { return static_cast<int32>(random_() % static_cast<uint32>(count)); }
    Text some(int32 most) {
        return letters(1 + static_cast<std::size_t>(random(most)), static_cast<uint32>(random_()));
    }
    clsTSDB& db() { return *dbs_[dbs_[1] ? random_() % 2 : 0]; }
    void cut() { cuts_.push_back({files_.cut(random_), told_, meant_, work_}); }
    void acknowledged() { told_ = meant_ = std::make_shared<State>(now_); }

    template <class Store>
    void perform(const char* name, State next, Store store) {
        work_ = name;
        meant_ = std::make_shared<State>(next);
        EXPECT_TRUE(store()) << name;
        now_ = std::move(next);
        acknowledged();
    }
    template <class Store>
    void perform(const char* name, int32 number, const FullRow& row, Store store) {
        State next = now_;
        next.rows[number] = row;
        next.fresh.insert(number);
        now_.fresh.insert(number);
        told_ = std::make_shared<State>(now_);
        perform(name, std::move(next), store);
    }

    void work() {
        const auto count = static_cast<int32>(now_.rows.size());
        const int32 number = 1 + random(count);
        FullRow row = now_.rows.at(number);
        clsTSDB& at = db();
        switch (random(12)) {
            case 0:
            case 1:
                // By the cursor, which writes all fields and takes the mark off.
                row.text = some(kLength);
                row.deleted = false;
                return perform("a field", number, row,
                               [&] { return change(at, number, uTEXT, row.text) == 0; });
            case 2:
                row.name = some(8);
                row.deleted = false;
                return perform("a key", number, row,
                               [&] { return change(at, number, uNAME, row.name) == 0; });
            case 3:
                row.name = some(8);
                row.text = some(kLength);
                row.notiz = some(900);
                return perform("a record object", number, row, [&] { return store(at.Record(number), row); });
            case 4:
                row = {some(8), u"", u"01022003", some(kLength), some(50)};
                return perform("a new record", count + 1, row, [&] { return store(at.Add(), row); });
            case 5:
                row.notiz = random(3) == 0 ? Text() : some(400);
                at.AktSatzNr(number);
                return perform("a memo", number, row, [&] { return at.Memo(1, row.notiz), at.Error() == 0; });
            case 6:
            case 7:
                row.chain.push_back({some(25), u""});
                return perform("a row", number, row,
                               [&] { return addRow(at, number, End::tail, row.chain.back()) == 0; });
            case 8:
                row.chain.assign(static_cast<std::size_t>(random(4)), {some(25), u""});
                return perform("a chain", number, row,
                               [&] { return writeChain(at, number, row.chain) == 0; });
            case 9:
                row.deleted = !row.deleted;
                return perform("a mark", number, row, [&] {
                    return at.PutField(number, 0, row.deleted ? u"*" : u" "), at.Error() == 0;
                });
            default:
                bulk();
        }
    }
    // All indexes, or all files, by one who is alone.
    void bulk() {
        dbs_[1].reset();
        if (random(2) == 0) {
            perform("Sort", now_, [&] { return dbs_[0]->Sort(); });
        } else {
            State packed;
            for (const auto& [number, row] : now_.rows) {
                if (row.deleted) continue;
                const auto n = static_cast<int32>(packed.rows.size()) + 1;
                packed.rows[n] = row;
                if (now_.fresh.contains(number)) packed.fresh.insert(n);
            }
            if (packed.rows.empty()) return;
            perform("Pack", std::move(packed), [&] { return dbs_[0]->Pack() && dbs_[0]->PackMemoKette(); });
        }
        dbs_[1] = program_.rtm.OpenTSDB(kFolder);
    }

    Case case_;
    PowerCutFiles files_;
    std::mt19937 random_;
    Process program_;
    std::shared_ptr<clsTSDB> dbs_[2];
    State now_;
    std::shared_ptr<const State> told_, meant_;
    const char* work_ = "nothing";
    std::vector<Cut> cuts_;
};

class PowerCut : public testing::TestWithParam<Case> {
 protected:
    // Of a machine that starts again.
    static Text differs(clsTSDB& db, const State& state, bool durable) {
        for (const auto& [number, row] : state.rows) {
            if (!durable && state.fresh.contains(number)) continue;
            if (number > db.AnzahlDSaetze()) return u"record " + toText(number) + u" is gone";
            const FullRow there = rowAt(db, number);
            if (there == row) continue;
            return u"record " + toText(number) +
                   (there.name != row.name     ? u" key " + there.name
                    : there.text != row.text   ? u" text"
                    : there.notiz != row.notiz ? u" memo " + there.notiz
                    : there.chain != row.chain
                        ? u" chain of " + toText(static_cast<int64>(there.chain.size()))
                        : Text(u" mark"));
        }
        return {};
    }
    static void expectWhole(MemoryFiles& disk, const Cut& cut, bool durable) {
        disk.restore(cut.medium);
        Process program(disk);
        const auto db = there(program.rtm.OpenTSDB(kFolder));
        EXPECT_TRUE(consistent(*db));
        const Text told = differs(*db, *cut.told, durable);
        if (told.empty()) return;
        const Text meant = differs(*db, *cut.meant, durable);
        EXPECT_TRUE(meant.empty()) << toUtf8(told) << ", " << toUtf8(meant);
    }
};

TEST_P(PowerCut, LeavesWhatWasAcknowledged) {
    const char* const wanted = std::getenv("TSRTM_POWER_CUTS");
    const int64 most = wanted ? std::atoll(wanted) / 8 : 450;
    MemoryFiles disk;
    disk.offerWindows(GetParam().windows);
    MemoryFiles::Snapshot before;
    {
        Process program(disk);
        const auto db = makeFull(program.rtm, kFolder, {GetParam().max, GetParam().windows, 8, kLength});
        for (int32 n = 1; n <= kRecords; ++n) {
            const auto seed = static_cast<uint32>(n);
            ASSERT_TRUE(store(db->Add(),
                              {u"K" + toText(n), u"", u"", letters(kLength / 2, seed), letters(60, seed)}));
            ASSERT_EQ(writeChain(*db, n, {{u"a" + toText(n)}, {u"b" + toText(n)}}), 0);
        }
    }
    before = disk.snapshot();
    int64 cuts = 0;
    for (uint32 seed = 1; cuts < most; ++seed) {
        disk.restore(before);
        const auto all = std::make_unique<Session>(GetParam(), disk, seed)->run();
        for (std::size_t i = 0; i < all.size() && cuts < most; ++i, ++cuts) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", cut " << i << " at " << all[i].work);
            expectWhole(disk, all[i], GetParam().durable);
            if (HasFailure()) return;
        }
    }
    RecordProperty("cuts", std::to_string(cuts));
}

// Somebody who keeps no list writes where a durable write was: his bytes stay, where they came to the medium.
// What did not come there is mended.
TEST(DurableWrites, GiveWayToWhatOthersWroteLater) {
    const Text data = path(u"Data.tsd");
    for (const bool others : {true, false}) {
        MemoryFiles disk;
        MemoryFiles::Snapshot cut;
        Bytes before;
        {
            Process program(disk);
            const auto db = makeFull(program.rtm, kFolder, {kBig, true, 8, kLength});
            db->Dauerhaft(true);
            ASSERT_TRUE(addRecord(*db, {{uTEXT, u"alt"}}));
            before = disk.dump(data);
            ASSERT_EQ(change(*db, 1, uTEXT, u"neu"), 0);
            cut = disk.snapshot();
        }
        auto& content = cut.at(upper(data)).content;
        if (others)
            content.replace(content.find("neu"), 3, "ihr");
        else
            content = before;
        disk.restore(cut);
        Process program(disk);
        const auto db = there(program.rtm.OpenTSDB(kFolder));
        EXPECT_EQ(db->GetField(1, uTEXT), others ? u"ihr" : u"neu");
        EXPECT_TRUE(consistent(*db));
    }
}

TEST(DurableWrites, KeepTheirListShort) {
    MemoryFiles disk;
    Process program(disk);
    const auto db = makeFull(program.rtm, kFolder, {kBig, true, 8, kLength});
    db->Dauerhaft(true);
    ASSERT_TRUE(db->Append());
    const auto list = [&] { return disk.dump(path(u"Update.tsd")); };
    for (uint32 i = 1; i <= 3000; ++i) ASSERT_EQ(change(*db, 1, uTEXT, letters(kLength, i)), 0);
    EXPECT_LE(list().size(), 1u << 20);
    db->Schliesse();
    EXPECT_EQ(list().substr(0, 8), Bytes(8, '\0')) << "nothing counts behind a clean end";
}

INSTANTIATE_TEST_SUITE_P(Database, PowerCut,
                         testing::Values(Case{true, kNormal, true}, Case{true, kBig, true},
                                         Case{true, kNormal, false}, Case{true, kBig, false},
                                         Case{false, kNormal, true}, Case{false, kBig, true},
                                         Case{false, kNormal, false}, Case{false, kBig, false}),
                         caseName);

}  // namespace
}  // namespace tsRtm::test
