// One user's operation, and before each call of its files in turn another user's whole operation: each is
// told the truth, and what they were told to be stored is there.
#include "tests/database/Deaths.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tsRtm/database/DatabaseCare.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kLong = 5000;  // a record in more than one page

enum Field : int32 { fKEY = 1, fDAY = 2, fOURS = 3, fTEXT = 4, fTHEIRS = 5, fLAST = 6 };
// One of ours, one of theirs, one that both change; nobody changes the fourth.
enum : int32 { kOurs = 1, kTheirs = 2, kBoth = 3, kFixed = 4, kRecords = 5 };

struct Case {
    int32 max;
    bool windows;
    int32 text;  // length of fTEXT
};
std::string caseName(const testing::TestParamInfo<Case>& info) {
    return std::string(info.param.max == kBig ? "tree" : "flat") + (info.param.text == kLong ? "Long" : "") +
           (info.param.windows ? "" : "WithoutWindows");
}

Text letters(int32 count, char16_t letter) { return Text(static_cast<std::size_t>(count), letter); }

class Interleaved : public testing::TestWithParam<Case> {
 protected:
    enum : int32 { kUs, kThem, kDead = 2 };
    MemoryFiles disk;
    CrashingFiles users{disk};
    FailingFiles calls{users};
    TestGround ground;
    StartedLibrary library{ground, calls};
    clsRtm rtm;
    std::shared_ptr<clsTSDB> us, them;
    std::map<std::pair<int32, int32>, Text> told;
    MemoryFiles::Snapshot new_, before_;
    int32 dead_ = kDead;
    bool theyWrote_ = false;  // their first write, which takes the lock, lies behind them

    void SetUp() override {
        ground.ui.defaultAnswer = 7;
        disk.offerWindows(GetParam().windows);
        const auto fields = fieldsOf({{u"KEY", tsAlphanumerisch, 8},
                                      {u"DAY", tsDate, 8},
                                      {u"OURS", tsAlphanumerisch, 8},
                                      {u"TEXT", tsAlphanumerisch, GetParam().text},
                                      {u"THEIRS", tsAlphanumerisch, 8},
                                      {u"LAST", tsAlphanumerisch, 8}});
        ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, kFolder, {}, fields, GetParam().max, u"  1  0  0  2  0  0"));
        new_ = disk.snapshot();
        const auto db = rtm.OpenTSDB(kFolder);
        for (int32 n = 1; n <= kRecords; ++n)
            ASSERT_TRUE(addRecord(*db, {{fKEY, keyOf(n)}, {fTEXT, letters(GetParam().text, u'A')}}));
    }
    static Text keyOf(int32 n) { return u"Key" + toText(n); }
    // An update died in the middle: the first page of a long record is the new one.
    void dieInAnUpdate(int64 n) {
        users.as(dead_);
        const auto db = rtm.OpenTSDB(kFolder);
        const auto record = db->Record(kFixed + 1);
        users.dieAt(n, CrashingFiles::LastWrite::firstHalf, CrashingFiles::Manner::silently);
        stored(record, {{fKEY, u"A"}, {fTEXT, letters(GetParam().text, u'B')}});
        ++dead_;
    }
    // What a user does, and what he is told to be stored.
    void store(clsTSDB& db, int32 number, FieldTexts fields) {
        if (!stored(db.Record(number), fields)) return;
        for (const auto& [field, text] : fields) told[{number, field}] = text;
    }
    void put(clsTSDB& db, int32 number, int32 field, const Text& text) {
        db.PutField(number, field, text);
        if (db.Error() == 0) told[{number, field}] = text;
    }
    void add(clsTSDB& db, const Text& key) {
        if (const auto record = addRecord(db, {{fKEY, key}})) told[{record->Satznummer(), fKEY}] = key;
    }
    void whole(clsTSDB& db, int32 number, int32 field, const Text& text) {
        if (change(db, number, field, text) == 0) told[{number, field}] = text;
    }
    // Searches that no work of others changes the answers of.
    void look(clsTSDB& db) {
        EXPECT_TRUE(db.Exist(keyOf(kFixed), 1));
        db.SetIndex(1);
        db.Gehezu(keyOf(kFixed));
        EXPECT_TOLD("4|Key4|0", db.AktSatzNr(), db.Fields(fKEY), db.Error());
    }
    void read(clsTSDB& db) {
        RecordScan scan(db);
        while (scan.next()) {
            const TextView scanned = scan.value(fTEXT);
            EXPECT_TRUE(scanned.empty() || scanned == letters(GetParam().text, scanned[0]))
                << "half a record";
        }
        db.AktSatzNr(kFixed + 1);
        const Text text = db.Fields(fTEXT);
        EXPECT_TRUE(text == letters(GetParam().text, text[0])) << "half a record";
        EXPECT_EQ(db.Error(), 0);
    }

    // Of one whom others move: either it was searched before that, or after it.
    void lookForTheirs(clsTSDB& db) {
        db.SetIndex(1);
        const std::function<void()> searches[] = {[&] { db.Gehezu(keyOf(kTheirs)); },
                                                  [&] { db.Gehezu(u"#" + toText(kTheirs)); },
                                                  [&] { db.Gehezu(keyOf(kOurs)), db.MoveNext(); }};
        for (const auto& search : searches) {
            search();
            EXPECT_TRUE(db.AktSatzNr() != kTheirs || db.Fields(fKEY) == keyOf(kTheirs));
        }
    }

    using Work = std::function<void(clsTSDB&)>;
    std::vector<Work> readings() {
        return {[this](clsTSDB& db) { look(db); }, [this](clsTSDB& db) { read(db); },
                [this](clsTSDB& db) { lookForTheirs(db); }};
    }
    std::vector<Work> writings(int32 own, int32 field) {
        return {[=, this](clsTSDB& db) {
                    store(db, own, {{fKEY, u"Z"}, {fDAY, u"01022003"}});
                },
                [=, this](clsTSDB& db) {
                    store(db, kBoth, {{field, u"stored"}});
                },
                [=, this](clsTSDB& db) { put(db, kBoth, field, u"put"); },
                [=, this](clsTSDB& db) { whole(db, own, field, u"whole"); },
                [this](clsTSDB& db) { add(db, u"New"); }};
    }
    // `ours` with `theirs` in the midst of it, before each call in turn.
    void sweep(const Work& ours, const Work& theirs, bool readOnly, int64 death = 0) {
        for (int64 n = 1; n < 1000; ++n) {
            SCOPED_TRACE(testing::Message() << "before call " << n);
            disk.restore(before_);
            told.clear();
            open(readOnly);
            if (death > 0) dieInAnUpdate(death);
            users.as(kUs);
            calls.beforeCall(n, [&] { asThem([&] { theirs(*them); }); });
            ours(*us);
            const bool all = !calls.othersWorked();
            calls.disarm();
            expectTruth();
            us.reset();
            them.reset();
            if (all || HasFailure()) return;
        }
        FAIL() << "no end";
    }
    template <class Theirs>
    void asThem(Theirs work) {
        users.as(kThem);
        asAnotherProgram(work);
        users.as(kUs);
    }
    void open(bool readOnly) {
        users.as(kUs);
        us = rtm.OpenTSDB(kFolder, readOnly);
        users.as(kThem);
        them = rtm.OpenTSDB(kFolder);
        for (const auto& db : {us, them})
            for (const int32 index : {1, 2}) db->Exist(u"X", index);
        if (theyWrote_) whole(*them, kTheirs, fTHEIRS, u"first");
        users.as(kUs);
    }
    void expectTruth() {
        users.as(kThem);
        look(*them);
        expectTold(*them);
    }
    void expectTold(clsTSDB& db) {
        for (const auto& [place, text] : told)
            EXPECT_EQ(db.GetField(place.first, place.second), text)
                << "field " << place.second << " of record " << place.first;
        EXPECT_TRUE(consistent(db));
    }
};

TEST_P(Interleaved, ReadersAreToldTheTruth) {
    before_ = disk.snapshot();
    for (const auto& reading : readings())
        for (const auto& writing : writings(kTheirs, fTHEIRS))
            for (const bool readOnly : {false, true}) sweep(reading, writing, readOnly);
}

// In a new database, which has no file of records yet, somebody else stores the first one; in one with
// records somebody changes, packs or sorts them, or gives them another structure.
TEST_P(Interleaved, AnOpeningFindsWhatOthersMade) {
    before_ = disk.snapshot();
    const Work adds = [this](clsTSDB& db) { add(db, u"Theirs"); };
    const std::pair<MemoryFiles::Snapshot*, Work> others[] = {
        {&new_, adds},
        {&before_, adds},
        {&before_,
         [this](clsTSDB& db) {
             store(db, kTheirs, {{fKEY, u"Z"}});
         }},
        {&before_, [](clsTSDB& db) { db.Pack(); }},
        {&before_, [](clsTSDB& db) { db.Sort(); }},
        {&before_, [](clsTSDB& db) { db.CreateIndex(fLAST); }},
        {&before_, [](clsTSDB& db) { db.ConvertToUnicode(); }}};
    for (std::size_t i = 0; i < std::size(others); ++i)
        for (int64 n = 1; n < 1000; ++n) {
            SCOPED_TRACE(testing::Message() << "work " << i << " before call " << n);
            disk.restore(*others[i].first);
            told.clear();
            users.as(kUs);
            calls.beforeCall(n, [&] {
                asThem([&] {
                    them = rtm.OpenTSDB(kFolder);
                    ASSERT_TRUE(them);
                    others[i].second(*them);
                });
            });
            us = rtm.OpenTSDB(kFolder);
            const bool all = !calls.othersWorked();
            calls.disarm();
            ASSERT_TRUE(us);
            EXPECT_EQ((add(*us, u"Ours"), us->Error()), 0);
            them.reset();
            expectTold(*us);
            us.reset();
            expectTold(*rtm.OpenTSDB(kFolder));
            if (all || HasFailure()) break;
        }
}

// A mark of an application's own does not outlive an unclean end.
TEST_P(Interleaved, WhoLeavesHasNotDied) {
    before_ = disk.snapshot();
    const Work works[] = {
        [](clsTSDB& db) { db.LockDB(true); }, [](clsTSDB& db) { db.Check(false, {}); },
        [](clsTSDB& db) {
            const DatabaseCare::Copying nowhere{[](TextView, uint64) {}, [](BytesView) {}, {}};
            DatabaseCare(db).copy(nowhere);
        },
        nullptr};
    for (const auto& theirs : works)
        for (int64 n = 1; n < 1000; ++n) {
            disk.restore(before_);
            open(false);
            if (!theirs) them.reset();
            put(*us, kBoth, 0, u"x");
            const auto leave = [&] { us.reset(); };
            const auto work = [&] { them ? theirs(*them) : static_cast<void>(them = rtm.OpenTSDB(kFolder)); };
            if (theirs) {
                // In the middle of his work.
                calls.beforeCall(n, [&] { users.as(kUs), leave(), users.as(kThem); });
                asThem(work);
            } else {
                calls.beforeCall(n, [&] { asThem(work); });
                leave();
            }
            const bool all = !calls.othersWorked();
            calls.disarm();
            us.reset();
            them.reset();
            EXPECT_EQ(rtm.OpenTSDB(kFolder)->GetField(kBoth, 0), u"x") << "before call " << n;
            if (all || HasFailure()) break;
        }
}

TEST_P(Interleaved, WritersLoseNothing) {
    before_ = disk.snapshot();
    if (GetParam().text == kLong) return;  // all of it is done under the lock
    const auto ours = writings(kOurs, fOURS);
    const auto theirs = writings(kTheirs, fTHEIRS);
    for (std::size_t i = 0; i < ours.size(); ++i)
        for (std::size_t k = 0; k < theirs.size(); ++k) {
            SCOPED_TRACE(testing::Message() << "writing " << i << " beside " << k);
            sweep(ours[i], theirs[k], false);
        }
}

// Who writes all fields without the lock, between two looks of one who changes fields on both sides of his.
TEST_P(Interleaved, AnUpdateIsNotLaidOverByAStore) {
    theyWrote_ = true;
    if (GetParam().text == kLong) return;  // all of it is done under the lock
    before_ = disk.snapshot();
    for (const Text& key : {keyOf(kBoth), Text(u"Z")}) {  // where it stands, and on its way elsewhere
        const Work ours = [&](clsTSDB& db) {
            store(db, kBoth, {{fKEY, key}, {fOURS, u"stored"}, {fLAST, u"stored"}});
        };
        sweep(
            ours, [this](clsTSDB& db) { whole(db, kBoth, fTHEIRS, u"whole"); }, false);
        for (const auto& [field, text] : {std::pair{fTHEIRS + 0, u"put"}, {0, u"*"}})
            sweep(
                ours, [&, field = field, text = text](clsTSDB& db) { put(db, kBoth, field, text); }, false);
    }
}

// The mark of a dead update stands, and somebody comes to heal it while a reader, who may not, looks past it.
TEST_P(Interleaved, ReadersAreToldTheTruthBesideWhoHeals) {
    before_ = disk.snapshot();
    const Work theirs = [this](clsTSDB& db) {
        store(db, kTheirs, {{fKEY, u"Z"}});
        store(db, kFixed + 1, {{fTEXT, letters(GetParam().text, u'C')}});
    };
    auto readings = this->readings();
    readings.push_back([](clsTSDB& db) { EXPECT_TRUE(consistent(db)); });
    for (int64 death = 2; death <= 10; death += 2)
        for (std::size_t i = 0; i + 1 < readings.size(); ++i) {
            SCOPED_TRACE(testing::Message() << "dead at change " << death << ", reading " << i);
            sweep(readings[i], theirs, true, death);
        }
    sweep(readings.back(), theirs, true);
}

INSTANTIATE_TEST_SUITE_P(Database, Interleaved,
                         testing::Values(Case{kNormal, false, 20}, Case{kBig, false, 20},
                                         Case{kBig, false, kLong}, Case{kBig, true, kLong}),
                         caseName);

}  // namespace
}  // namespace tsRtm::test
