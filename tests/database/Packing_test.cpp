// Work that makes whole files anew: what it does, what a death in it leaves, and what others see.
#include <cstdio>

#include "tests/database/Deaths.hpp"
#include "tests/database/MemoryDatabase.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tsRtm/database/clsTSRecord.hpp"

namespace tsRtm::test {
namespace {

constexpr TextView kName = u"/daten/Notizen";
enum Field : int32 { pNAME = 1, pORT, pNOTIZ, pPOS };
constexpr int32 kCount = 48;  // more than a node

Text nameOf(int32 n) { return u"N" + toText(100 + n * 37 % 97); }
Text noteOf(int32 n) { return Text(static_cast<std::size_t>(n * 5 % 300), u'x') + toText(n); }

class Packing : public testing::TestWithParam<int32> {
 protected:
    MemoryFiles disk;
    CrashingFiles files{disk};
    TestGround ground;
    StartedLibrary library{ground, files};
    clsRtm rtm;

    void SetUp() override {
        ground.ui.defaultAnswer = 7;
        const auto fields = fieldsOf({{u"NAME", tsAlphanumerisch, 8},
                                      {u"ORT", tsAlphanumerisch, 8},
                                      {u"NOTIZ", tsMemo, 60},
                                      {u"POS", tsKette, 8}});
        ASSERT_TRUE(rtm.DBCreateExt(DBAnsi, kName, {}, fields, GetParam(), u"  1  0  0"));
        disk.put(path(u"KetteCtl.004"), "TS1,1\r\n0,1,1,6,1,\"Text@@7TEXT\"\r\n7,100,0\r\n0\r\n");
        const auto db = open();
        for (int32 n = 1; n <= kCount; ++n) {
            const auto record = db->Add();
            record->Fields(pNAME, nameOf(n));
            record->Fields(pORT, u"O" + toText(n % 7));
            record->Fields(pNOTIZ, noteOf(n));
            ASSERT_TRUE(record->Update() && record->Entsperren());
            // Rows of an earlier chain stay behind as free ones.
            db->AktSatzNr(n);
            for (int32 rows = 3; rows >= n % 4; --rows) db->KetteSchreiben(1, chainOf(rows, n));
        }
    }
    std::shared_ptr<clsTSDB> open(bool readOnly = false) { return rtm.OpenTSDB(kName, readOnly); }
    static void deleteEveryThird(clsTSDB& db) {
        for (int32 n = 3; n <= kCount; n += 3) db.Delete(n);
    }
    static TextTable chainOf(int32 rows, int32 n) {
        TextTable out;
        for (int32 i = 1; i <= rows; ++i) out.push_back({toText(n) + u"/" + toText(i)});
        return out;
    }
    static Text path(TextView file) { return Text(kName).append(u".DBD/").append(file); }
    // Names and notes of all records in the order of the index.
    static std::vector<Text> content(clsTSDB& db) {
        std::vector<Text> out;
        db.SetIndex(db.AnzahlIndizes() > 0 ? 1 : 0);
        const int32 count = db.AnzahlDSaetze();
        for (int32 i = 1; i <= count; ++i) {
            const auto record = db.Record(db.Index(i));
            out.push_back(record->Fields(pNAME) + u" " + record->Fields(pORT) + u" " +
                          record->Fields(pNOTIZ));
            TextTable rows;
            db.AktSatzNr(record->Satznummer());
            db.KetteLesen(1, rows);
            for (const auto& row : rows) out.back() += u" " + row[0];
        }
        return out;
    }
    static std::vector<Text> wanted(bool packed) {
        std::vector<std::pair<Text, int32>> rows;
        for (int32 n = 1; n <= kCount; ++n)
            if (!packed || n % 3 != 0) rows.emplace_back(nameOf(n), n);
        std::sort(rows.begin(), rows.end());
        std::vector<Text> out;
        for (const auto& [name, n] : rows) {
            out.push_back(name + u" O" + toText(n % 7) + u" " + noteOf(n));
            for (const auto& row : chainOf(n % 4, n)) out.back() += u" " + row[0];
        }
        return out;
    }
    // The disk with the database in the form of older programs; its texts are the same in both code pages.
    MemoryFiles::Snapshot asDos() {
        for (const TextView name : {u"Control.tsd", u"KetteCtl.004"}) {
            const Bytes text = disk.dump(path(Text(name)));
            disk.put(path(Text(name)), text.substr(text.find(',') + 1));
        }
        return disk.snapshot();
    }
    // Files that are neither of the set nor its own.
    std::vector<Text> leftovers() {
        std::vector<Text> names;
        for (const auto& [key, entry] : disk.snapshot())
            if (key.ends_with(u".TMP") || key.ends_with(u".OLD") || key.ends_with(u".NEW"))
                names.push_back(entry.name);
        return names;
    }
};

TEST_P(Packing, TakesTheDeletedRecordsOut) {
    const auto db = open();
    const auto before = disk.dump(path(u"Data.tsd"));
    int32 packed = 0;
    const auto told = db->Packed.connect([&] { ++packed; });
    EXPECT_TRUE(db->Pack());
    EXPECT_EQ(packed, 0);
    EXPECT_EQ(disk.dump(path(u"Data.tsd")), before) << "nothing is deleted";
    deleteEveryThird(*db);
    const auto held = db->Record(1);
    bool ended = false;
    const auto gone = held->Invalidated.connect([&] { ended = true; });
    const auto progress = db->UpdateProgress.connect([&](int32, int32, int32) {
        db->Delete(1);  // nobody writes meanwhile
        EXPECT_EQ(db->Error(), 70);
    });
    EXPECT_TRUE(db->Pack());
    EXPECT_EQ(packed, 1);
    EXPECT_TRUE(ended);
    EXPECT_EQ(db->AnzahlDSaetze(), 32);
    EXPECT_EQ(content(*db), wanted(true));
    EXPECT_TRUE(consistent(*db));
    EXPECT_EQ(addAddress(*db, {u"Zorn", u"Ulm", u"", u""}), 33);
    EXPECT_EQ(leftovers(), std::vector<Text>{});
}

TEST_P(Packing, OfNothingLeftTakesAllAway) {
    const auto db = open();
    for (int32 n = 1; n <= kCount; ++n) db->Delete(n);
    EXPECT_TRUE(db->Pack());
    EXPECT_EQ(db->AnzahlDSaetze(), 0);
    EXPECT_FALSE(disk.exists(path(u"Memo-000.003")) || disk.exists(path(u"KetteDat.004")));
    const auto record = db->Add();
    record->Fields(pNAME, u"Neu");
    record->Fields(pNOTIZ, u"erster");
    EXPECT_TRUE(record->Update());
    EXPECT_EQ(content(*db), std::vector<Text>{u"Neu  erster"});
    db->Zap();
    EXPECT_EQ(db->Error(), 0);
    EXPECT_EQ(db->AnzahlDSaetze(), 0);
    EXPECT_EQ(disk.dump(path(u"Data.tsd")), "");
    EXPECT_TRUE(consistent(*db));
}

TEST_P(Packing, OfMemosKeepsTheirTexts) {
    const auto db = open();
    ground.clock.advance(std::chrono::seconds(5));
    for (int32 n = 1; n <= kCount; ++n) {
        db->AktSatzNr(n);
        db->Memo(1, noteOf(n));
    }
    const auto held = db->Record(2);
    const auto size = disk.dump(path(u"Memo-000.003")).size();
    EXPECT_TRUE(db->PackMemoKette());
    EXPECT_LT(disk.dump(path(u"Memo-000.003")).size() * 3, size * 2);
    // Its head, and three rows of two pointers of four and a text of six for each two records.
    EXPECT_EQ(disk.dump(path(u"KetteDat.004")).size(), (1 + kCount * 3 / 2) * 14u);
    EXPECT_EQ(disk.dump(path(u"KetteDat.004")).substr(0, 8), "  73  74");
    EXPECT_EQ(held->Fields(pNOTIZ), noteOf(2)) << "no object ends";
    EXPECT_EQ(content(*db), wanted(false));
    deleteEveryThird(*db);
    EXPECT_TRUE(db->Rebuild());
    EXPECT_EQ(content(*db), wanted(true));
    EXPECT_TRUE(consistent(*db));
}

TEST_P(Packing, IndexesComeAndGo) {
    const auto db = open();
    db->SetIndex(1);
    db->CreateIndex(pNOTIZ);
    EXPECT_EQ(db->Error(), 9);
    for (const int32 field : {1, 0, 77}) {
        db->CreateIndex(field);
        EXPECT_EQ(db->Error(), field == 1 ? 53 : 9);
    }
    db->CreateIndex(pORT, pNAME);
    EXPECT_EQ(db->Error(), 0);
    EXPECT_EQ(db->AnzahlIndizes(), 2);
    EXPECT_EQ(db->ActiveIndex(), pNAME);
    EXPECT_TRUE(consistent(*db));
    db->SetIndex(2);
    db->MoveFirst();
    EXPECT_EQ(db->Fields(pORT), u"O0");
    EXPECT_EQ(addAddress(*db, {u"Zorn", u"A", u"", u""}), kCount + 1);
    EXPECT_EQ(open(true)->AnzahlIndizes(), 2);
    db->MoveFirst();
    EXPECT_EQ(db->AktSatzNr(), kCount + 1);
    db->DelIndex(pNAME);
    EXPECT_EQ(db->Error(), 0);
    EXPECT_EQ(db->ActiveIndex(), pORT);
    EXPECT_FALSE(disk.exists(path(u"I001")));
    db->DelIndex(pNAME);
    EXPECT_EQ(db->Error(), 53);
    EXPECT_TRUE(consistent(*db));
}

TEST_P(Packing, IsRefusedBesideOthersAndBesideReadersOnly) {
    const auto db = open();
    deleteEveryThird(*db);
    const auto other = open();
    ASSERT_TRUE(other && db->Sperren(1));
    const auto before = disk.dump(path(u"Data.tsd"));
    const std::function<bool()> works[] = {[&] { return db->Pack(); },
                                           [&] { return db->PackMemoKette(); },
                                           [&] { return db->Rebuild(); },
                                           [&] {
                                               db->Zap();
                                               return false;
                                           },
                                           [&] {
                                               db->CreateIndex(2);
                                               return false;
                                           },
                                           [&] {
                                               db->DelIndex(1);
                                               return false;
                                           }};
    for (const auto& work : works) {
        EXPECT_FALSE(work());
        EXPECT_EQ(db->Error(), 70);
        EXPECT_TRUE(db->Gesperrt(1)) << "a refusal changes nothing";
    }
    EXPECT_EQ(disk.dump(path(u"Data.tsd")), before);
    EXPECT_EQ(open(true)->Pack(), false);
}

// Killed at every change: the next opening finds the database as it was, or as it was to be.
TEST_P(Packing, DiesIntoOneOfTwoStates) {
    deleteEveryThird(*open());
    const auto before = disk.snapshot();
    const auto old = [&] {
        const auto db = open();
        return content(*db);
    }();
    const auto dos = asDos();
    const auto unicode = [&] {
        disk.restore(before);
        EXPECT_TRUE(open()->ConvertToUnicode());
        return disk.snapshot();
    }();
    struct Row {
        const char* name;
        std::function<void(clsTSDB&)> work;
        std::vector<Text> after;
        MemoryFiles::Snapshot before;
    };
    const Row rows[] = {{"Pack", [](clsTSDB& db) { db.Pack(); }, wanted(true), before},
                        {"PackMemoKette", [](clsTSDB& db) { db.PackMemoKette(); }, old, before},
                        {"Zap", [](clsTSDB& db) { db.Zap(); }, {}, before},
                        {"Rebuild", [](clsTSDB& db) { db.Rebuild(); }, wanted(true), before},
                        {"ConvertToUnicode", [](clsTSDB& db) { db.ConvertToUnicode(); }, old, before},
                        {"ConvertToAnsi", [](clsTSDB& db) { db.ConvertToAnsi(); }, old, unicode},
                        {"ConvertToWin", [](clsTSDB& db) { db.ConvertToWin(); }, old, dos},
                        {"CreateIndex", [](clsTSDB& db) { db.CreateIndex(pORT); }, old, before},
                        {"DelIndex",
                         [](clsTSDB& db) {
                             db.DelIndex(pNAME);
                             db.CreateIndex(pNAME);
                         },
                         old, before}};
    int32 victim = 1;
    int32 points = 0;
    for (const auto& [name, work, after, start] : rows) {
        bool sawOld = false, sawNew = false;
        bool died = true;
        for (int64 n = 1; died; ++n, ++points) {
            SCOPED_TRACE(testing::Message() << name << " killed at change " << n);
            disk.restore(start);
            files.as(++victim);
            auto db = open();
            ASSERT_TRUE(db);
            files.dieAt(n, CrashingFiles::LastWrite::none, CrashingFiles::Manner::silently);
            work(*db);
            db.reset();
            died = files.died();
            files.as(0);
            rtmMain::state().updatesUnderWay.clear();
            const auto next = open();
            ASSERT_TRUE(next);
            // An index that died between two names is not there: then the order is that of the numbers.
            auto now = content(*next);
            auto whole = old, changed = after;
            if (next->AnzahlIndizes() == 0)
                for (auto* list : {&now, &whole, &changed}) std::sort(list->begin(), list->end());
            EXPECT_TRUE(now == changed || (died && now == whole));
            sawOld = sawOld || now == whole;
            sawNew = sawNew || now == changed;
            EXPECT_TRUE(consistent(*next));
            EXPECT_GT(addAddress(*next, {u"Zuletzt", u"Ulm", u"", u""}), 0);
            EXPECT_TRUE(next->Sort()) << "somebody still has it";
            EXPECT_TRUE(consistent(*next));
        }
        EXPECT_TRUE(sawOld && sawNew) << name;
    }
    std::printf("[   INFO   ] %d crash points\n", points);
}

// While files change their names nobody opens the database, neither we nor a program that knows no exchange.
TEST_P(Packing, OthersWaitOrAreRefusedInTheMiddle) {
    deleteEveryThird(*open());
    const auto before = disk.snapshot();
    for (const bool alone : {false, true}) {
        disk.restore(before);
        files.as(alone ? 3 : 2);
        const auto db = rtm.OpenTSDB(kName, false, alone);
        ASSERT_TRUE(db);
        int32 refused = 0, looks = 0;
        files.interrupt([&] {
            files.as(1);
            for (const bool readOnly : {false, true}) {
                clsTSDB other(rtm);
                const int32 error = other.Oeffne(kName, readOnly);
                // All of it before, then an empty view, or nothing; never half of it.
                const int32 seen = other.AnzahlDSaetze();
                EXPECT_TRUE(error == 70 || (error == 0 && (seen == 0 || seen == kCount))) << error;
                refused += error == 70;
                ++looks;
            }
            clsControl control(rtm);
            bool dos = false;
            const Bytes text = disk.dump(path(u"Control.tsd"));
            EXPECT_EQ(control.Oeffne(path(u"Control.tsd"), dos), !text.starts_with("TS3"));
        });
        EXPECT_TRUE(db->Pack());
        files.interrupt(nullptr);
        EXPECT_GT(looks, 10);
        EXPECT_GT(refused, 3);
        EXPECT_EQ(content(*db), wanted(true));
    }
}

// A fault of the medium, at every call: nothing that is told as stored afterwards is lost at the next
// opening.
TEST_P(Packing, AFaultLosesNothingThatIsStoredAfterwards) {
    deleteEveryThird(*open());
    const auto before = disk.snapshot();
    FailingFiles failing(disk);
    TestGround other;
    auto platform = other.on(failing);
    rtmMain::TEST_restart(platform);
    other.ui.defaultAnswer = 7;
    int32 failures = 0, closed = 0;
    for (int64 n = 1;; ++n) {
        SCOPED_TRACE(n);
        failing.disarm();
        disk.restore(before);
        auto db = open();
        ASSERT_TRUE(db);
        failing.failAt(n, platform::SystemError::deviceError);
        const bool packed = db->Pack();
        const bool reached = failing.failures() > 0;
        failing.disarm();
        failures += !packed;
        const int32 added = addAddress(*db, {u"Danach", u"Ulm", u"", u""});
        closed += added == 0;
        db.reset();
        const auto next = open();
        ASSERT_TRUE(next);
        const int32 count = next->AnzahlDSaetze() - (added > 0);
        EXPECT_TRUE(count == kCount || count == 32) << count;
        if (added > 0) {
            EXPECT_EQ(next->GetField(added, pNAME), u"Danach");
        }
        EXPECT_TRUE(consistent(*next));
        if (!reached) break;
    }
    EXPECT_GT(failures, 20);
    EXPECT_GT(closed, 2);
    rtmMain::TEST_restart(library.platform);
}

INSTANTIATE_TEST_SUITE_P(Database, Packing, kBothForms, formName);

}  // namespace
}  // namespace tsRtm::test
