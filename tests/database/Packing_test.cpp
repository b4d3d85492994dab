// Work that makes whole files anew: what it does, and what others see.
#include "tests/database/Deaths.hpp"
#include "tests/database/FullDatabase.hpp"
#include "tests/support/Told.hpp"

namespace tsRtm::test {
namespace {

constexpr int32 kCount = 48;  // more than a node

class Packing : public DyingUsers, public testing::TestWithParam<int32> {
 protected:
    FullRows all, kept;  // before and behind the deletion of every third
    std::shared_ptr<clsTSDB> db;

    void SetUp() override {
        db = makeFull(rtm, kFolder, {GetParam()});
        for (int32 n = 1; n <= kCount; ++n) {
            ASSERT_TRUE(store(db->Add(), {u"N" + toText(100 + n * 37 % 97), u"O" + toText(n % 7), u"", u"",
                                          Text(static_cast<std::size_t>(n * 5 % 300), u'x') + toText(n)}));
            // Rows of an earlier chain stay behind as free ones.
            for (int32 rows = 3; rows >= n % 4; --rows) ASSERT_EQ(writeChain(*db, n, chainOf(rows)), 0);
        }
        all = rowsOf(*db);
        for (std::size_t i = 0; i < all.size(); ++i)
            if (i % 3 != 2) kept.push_back(all[i]);
        db.reset();
        db = openAs(0);
    }
    void deleteEveryThird() {
        for (int32 n = 3; n <= kCount; n += 3) db->Delete(n);
    }
    static TextTable chainOf(int32 rows) {
        TextTable out;
        for (int32 i = 1; i <= rows; ++i) out.push_back({u"Zeile", toText(i)});
        return out;
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
    const auto before = file(u"Data.tsd");
    int32 packed = 0;
    const auto told = db->Packed.connect([&] { ++packed; });
    EXPECT_TOLD("yes|0", db->Pack(), packed);
    EXPECT_EQ(file(u"Data.tsd"), before) << "nothing is deleted";
    deleteEveryThird();
    const auto held = db->Record(1);
    bool ended = false;
    const auto gone = held->Invalidated.connect([&] { ended = true; });
    const auto progress = db->UpdateProgress.connect([&](int32, int32, int32) {
        db->Delete(1);  // nobody writes meanwhile
        EXPECT_EQ(db->Error(), 70);
    });
    EXPECT_TOLD("yes|1|yes|32", db->Pack(), packed, ended, db->AnzahlDSaetze());
    EXPECT_EQ(rowsOf(*db), kept);
    EXPECT_TRUE(consistent(*db));
    EXPECT_TOLD("yes|", store(db->Add(), {u"Zorn"}), leftovers());
}

TEST_P(Packing, OfNothingLeftTakesAllAway) {
    for (int32 n = 1; n <= kCount; ++n) db->Delete(n);
    EXPECT_TOLD("yes|0|no|no", db->Pack(), db->AnzahlDSaetze(), disk.exists(path(u"Memo-000.005")),
                disk.exists(path(u"KetteDat.007")));
    const FullRow first{u"Neu", u"", u"", u"", u"erster"};
    EXPECT_TRUE(store(db->Add(), first));
    EXPECT_EQ(rowsOf(*db), FullRows{first});
    EXPECT_TOLD("0|0|", (db->Zap(), db->Error()), db->AnzahlDSaetze(), file(u"Data.tsd"));
    EXPECT_TRUE(consistent(*db));
}

TEST_P(Packing, OfMemosKeepsTheirTexts) {
    ground.clock.advance(std::chrono::seconds(5));
    for (int32 n = 1; n <= kCount; ++n) {
        db->AktSatzNr(n);
        db->Memo(1, all[static_cast<std::size_t>(n - 1)].notiz);
    }
    const auto held = db->Record(2);
    const auto size = file(u"Memo-000.005").size();
    EXPECT_TRUE(db->PackMemoKette());
    EXPECT_LT(file(u"Memo-000.005").size() * 3, size * 2);
    // Its head, and three rows of two pointers of four and 34 characters for each two records.
    EXPECT_EQ(file(u"KetteDat.007").size(), (1 + kCount * 3 / 2) * 42u);
    EXPECT_EQ(file(u"KetteDat.007").substr(0, 8), "  73  74");
    EXPECT_EQ(held->Fields(uNOTIZ), all[1].notiz) << "no object ends";
    EXPECT_EQ(rowsOf(*db), all);
    deleteEveryThird();
    EXPECT_TRUE(db->Rebuild());
    EXPECT_EQ(rowsOf(*db), kept);
    EXPECT_TRUE(consistent(*db));
}

TEST_P(Packing, IndexesComeAndGo) {
    db->SetIndex(1);
    for (const auto& [field, error] : {std::pair{uNOTIZ + 0, 9}, {uNAME, 53}, {0, 9}, {77, 9}})
        EXPECT_EQ((db->CreateIndex(field), db->Error()), error) << field;
    db->CreateIndex(uORT, uNAME);
    EXPECT_TOLD("0|3|1", db->Error(), db->AnzahlIndizes(), db->ActiveIndex());
    EXPECT_TRUE(consistent(*db));
    db->SetIndex(3);
    EXPECT_EQ((db->MoveFirst(), db->Fields(uORT)), u"O0");
    EXPECT_TOLD("yes|3", store(db->Add(), {u"Zorn", u"A"}), openAs(0, true)->AnzahlIndizes());
    EXPECT_EQ((db->MoveFirst(), db->AktSatzNr()), kCount + 1);
    db->DelIndex(uNAME);
    EXPECT_TOLD("0|2|no|53", db->Error(), db->ActiveIndex(), disk.exists(path(u"I001")),
                (db->DelIndex(uNAME), db->Error()));
    EXPECT_TRUE(consistent(*db));
}

// An index may be searched while it is sorted. A new one is none before it is built, nor where that failed.
TEST_P(Packing, AListenerToTheProgressOfAnIndexMayStandInIt) {
    auto progress = db->UpdateProgress.connect([&](int32, int32, int32) {
        db->SetIndex(2);
        db->MoveFirst();
        EXPECT_EQ((db->PutField(1, uTEXT, u"anders"), db->Error()), 70);
    });
    EXPECT_TRUE(db->Sort());
    EXPECT_EQ(rowsOf(*db), all);
    EXPECT_TRUE(consistent(*db));
    int32 refused = 0;
    progress = db->UpdateProgress.connect([&](int32, int32, int32) {
        db->SetIndex(3);
        refused += db->Error() == 53;
        db->Gehezu(u"O");
    });
    disk.setFreeSpace(0);
    db->CreateIndex(uORT);
    EXPECT_TOLD("61|2|3", db->Error(), db->AnzahlIndizes(), db->ActiveIndex());
    disk.setFreeSpace({});
    db->CreateIndex(uORT);
    EXPECT_TOLD("0|3|3", db->Error(), db->AnzahlIndizes(), db->ActiveIndex());
    EXPECT_GT(refused, 0);
    EXPECT_TRUE(consistent(*db));
    EXPECT_EQ((db->AktSatzNr(2), db->Fields(uNAME)), all[1].name);
}

TEST_P(Packing, IsRefusedBesideOthersAndBesideReadersOnly) {
    deleteEveryThird();
    const auto other = openAs(0);
    ASSERT_TRUE(other && db->Sperren(1));
    const auto before = file(u"Data.tsd");
    const std::function<bool()> works[] = {[&] { return db->Pack(); },
                                           [&] { return db->PackMemoKette(); },
                                           [&] { return db->Rebuild(); },
                                           [&] { return db->Zap(), false; },
                                           [&] { return db->CreateIndex(2), false; },
                                           [&] { return db->DelIndex(1), false; }};
    for (const auto& work : works) EXPECT_TOLD("no|70|yes", work(), db->Error(), db->Gesperrt(1));
    EXPECT_EQ(file(u"Data.tsd"), before);
    EXPECT_FALSE(openAs(0, true)->Pack());
}

// While files change their names nobody opens the database, neither we nor a program that knows no exchange.
TEST_P(Packing, OthersWaitOrAreRefusedInTheMiddle) {
    deleteEveryThird();
    db.reset();
    const auto before = disk.snapshot();
    for (const bool alone : {false, true}) {
        disk.restore(before);
        db = openAs(0, false, alone);
        int32 refused = 0, looks = 0;
        inEachChange(
            [&] {
                for (const bool readOnly : {false, true}) {
                    clsTSDB other(rtm);
                    const int32 error = other.Oeffne(kFolder, readOnly);
                    // All of it before, then an empty view, or nothing; never half of it.
                    const int32 seen = other.AnzahlDSaetze();
                    EXPECT_TRUE(error == 70 || (error == 0 && (seen == 0 || seen == kCount))) << error;
                    refused += error == 70;
                    ++looks;
                }
                clsControl control(rtm);
                bool dos = false;
                EXPECT_EQ(control.Oeffne(path(u"Control.tsd"), dos),
                          !file(u"Control.tsd").starts_with("TS3"));
            },
            [&] { EXPECT_TRUE(db->Pack()); });
        EXPECT_TRUE(looks > 10 && refused > 3);
        EXPECT_EQ(rowsOf(*db), kept);
    }
}

// Who opens the database has its control open for a moment, and who exchanges files holds it alone for one.
TEST_P(Packing, WaitsForWhoLooksAtTheControl) {
    std::unique_ptr<platform::File> look;
    const auto open = [&](platform::Sharing sharing) {
        auto opened = disk.open(path(u"Control.tsd"), {platform::Access::read, sharing});
        if (opened) look = std::move(*opened);
    };
    ground.clock.onSleep = [&] { look.reset(); };
    bool turn = false;
    const std::function<bool()> works[] = {[&] { return db->Rebuild(); },
                                           [&] { return db->CreateIndex(uORT), true; },
                                           [&] { return db->DelIndex(uORT), true; }};
    deleteEveryThird();
    for (const auto& work : works)
        inEachChange(
            [&] {
                turn = !turn;
                if (turn) open(platform::Sharing::all);
            },
            [&] { EXPECT_TOLD("yes|0", work(), db->Error()); });
    EXPECT_EQ(rowsOf(*db), kept);
    db.reset();
    open(platform::Sharing::none);
    EXPECT_TRUE(openAs(0));
    ground.clock.onSleep = nullptr;
}

INSTANTIATE_TEST_SUITE_P(Database, Packing, kBothForms, formName);

}  // namespace
}  // namespace tsRtm::test
