// Texts of the memo cells of a chain's rows, through the records that stand for the rows.
#include "tests/database/ChainDatabase.hpp"
#include "tests/database/Deaths.hpp"
#include "tests/support/ChildProcess.hpp"

namespace tsRtm::test {
namespace {

// The chain of the first of two records has the rows "a" and "b".
std::shared_ptr<clsTSDB> makeRows(clsRtm& rtm, const Text& folder = Text(kChainFolder)) {
    auto db = makeTextRows(rtm, folder, 2);
    return db && writeChain(*db, 1, {{u"a", {}}, {u"b", {}}}) == 0 ? db : nullptr;
}

// Name and text of each row, "a=text b= ".
Text shownIn(clsTSDB& db, int32 record) {
    const auto set = db.Record(record)->Kette(fPOS);
    Text out;
    for (int32 n = 1; n <= set->Count(); ++n) {
        const auto row = set->Record(n);
        out += row->Fields(rNAME) + u"=" + row->Fields(rTEXT) + u" ";
    }
    return out;
}

bool write(const std::shared_ptr<clsTSRecord>& row, TextView text) {
    return stored(row, {{rTEXT, Text(text)}});
}

class RowTexts : public MemoryDatabase {
 protected:
    static constexpr TextView kStore = u"Memo-002.002";

    std::shared_ptr<clsTSDB> db = makeRows(rtm);
    std::shared_ptr<clsTSDB> other = open();
};

TEST_F(RowTexts, AreReadAndStoredWithTheirRows) {
    ASSERT_TRUE(db && other);
    const auto parent = db->Record(1);
    const auto set = parent->Kette(fPOS);
    const auto a = set->Record(1), b = set->Record(2);
    EXPECT_EQ(a->Fields(rTEXT), u"");
    a->Fields(rTEXT, u"Übergabe an der Tür");
    EXPECT_EQ(a->Fields(rTEXT), u"Übergabe an der Tür");
    EXPECT_EQ(shownIn(*other, 1), u"a= b= ");
    ASSERT_TRUE(a->Update());
    EXPECT_EQ(shownIn(*other, 1), u"a=Übergabe an der Tür b= ");
    // Longer than a block, beside a field of the same row; then none.
    const Text longer(3000, u'x');
    b->Fields(rNAME, u"B");
    ASSERT_TRUE(write(b, longer));
    ASSERT_TRUE(write(a, u""));
    EXPECT_EQ(shownIn(*other, 1), u"a= B=" + longer + u" ");
    // Rows that are new, those of a record that is new, and a text that is given up again.
    const auto front = set->Add(true);
    front->Fields(rNAME, u"v");
    ASSERT_TRUE(write(front, u"vorn"));
    const auto record = db->Add();
    record->Fields(fKEY, u"3");
    const auto row = record->Kette(fPOS)->Add();
    row->Fields(rNAME, u"n");
    ASSERT_TRUE(write(row, u"neu"));
    EXPECT_EQ(row->Fields(rTEXT), u"neu");
    ASSERT_TRUE(record->Update());
    EXPECT_EQ(row->Fields(rTEXT), u"neu");
    row->Fields(rTEXT, u"nie gespeichert");
    row->Reset();
    EXPECT_EQ(row->Fields(rTEXT), u"neu");
    EXPECT_EQ(shownIn(*other, 1) + shownIn(*other, 3), u"v=vorn a= B=" + longer + u" n=neu ");
    EXPECT_TRUE(consistent(*db));
    // Packed by the other: the texts have moved.
    db->Schliesse();
    other->AktSatzNr(1);
    ASSERT_TRUE(other->PackMemoKette());
    EXPECT_EQ(shownIn(*other, 1) + shownIn(*other, 3), u"v=vorn a= B=" + longer + u" n=neu ");
    EXPECT_TRUE(consistent(*other));
}

TEST_F(RowTexts, OfTwoUsersAreBothKeptOrOneIsTold) {
    ASSERT_TRUE(db && other);
    const auto mine = db->Record(1)->Kette(fPOS), theirs = other->Record(1)->Kette(fPOS);
    const auto a = mine->Record(1), b = mine->Record(2), theirA = theirs->Record(1),
               theirB = theirs->Record(2);
    ASSERT_TRUE(write(a, u"eins"));
    // The same row: nothing is written, and nothing stays behind in the store.
    const auto size = file(kStore).size();
    EXPECT_FALSE(write(theirA, u"mein Wort"));
    EXPECT_EQ(theirA->Error(), 70);
    EXPECT_EQ(file(kStore).size(), size);
    EXPECT_EQ(theirA->Fields(rTEXT), u"mein Wort");
    ASSERT_TRUE(write(theirB, u"zwei"));
    // So does a row that has gone from its set since another one was stored.
    const auto late = db->Record(1)->Kette(fPOS)->Record(2);
    EXPECT_EQ(b->Fields(rNAME) + late->Fields(rTEXT), u"bzwei");
    ASSERT_TRUE(write(a, u"eins"));
    EXPECT_FALSE(write(b, u"drei"));
    EXPECT_EQ(b->Error(), 70);
    EXPECT_EQ(shownIn(*db, 1), u"a=eins b=zwei ");
    EXPECT_TRUE(consistent(*db));
}

// Packing gives a text the place that another row's text had.
TEST_F(RowTexts, OfRowsThatWerePackedAreTheirOwn) {
    ASSERT_TRUE(db && other);
    other->Schliesse();
    ASSERT_EQ(writeChain(*db, 1, {{u"a", {}}, {u"a", {}}}), 0);
    const auto set = db->Record(1)->Kette(fPOS);
    const auto first = set->Record(1), second = set->Record(2);
    ASSERT_TRUE(write(second, u"zwei") && write(first, u"eins"));
    db->AktSatzNr(1);
    ASSERT_TRUE(db->PackMemoKette());
    EXPECT_NE(first->Fields(rTEXT), u"zwei");
    first->Fields(rTEXT, u"neu");
    first->Update();
    const Text now = shownIn(*db, 1);
    EXPECT_TRUE(now == u"a=neu a=zwei " || now == u"a=eins a=zwei ") << toUtf8(now);
}

class RowTextDeaths : public DyingUsers, public testing::TestWithParam<bool> {};

TEST_P(RowTextDeaths, LeaveTheOldTextOrTheNewOne) {
    disk.offerWindows(GetParam());
    ASSERT_TRUE(write(makeRows(rtm)->Record(1)->Kette(fPOS)->Record(2), u"alt"));
    bool told = false;
    dieAtEachChange(
        [&](clsTSDB& victim) {
            told = write(victim.Record(1)->Kette(fPOS)->Record(2), u"neu") && !files.died();
        },
        [&](clsTSDB& other, bool) {
            const Text now = shownIn(other, 1);
            EXPECT_TRUE(now == u"a= b=neu " || (!told && now == u"a= b=alt ")) << toUtf8(now);
            EXPECT_TRUE(write(other.Record(1)->Kette(fPOS)->Record(1), u"weiter"));
            EXPECT_TRUE(shownIn(other, 1).starts_with(u"a=weiter b="));
            EXPECT_TRUE(consistent(other));
        });
}

INSTANTIATE_TEST_SUITE_P(Windows, RowTextDeaths, testing::Bool());

// Three programs add rows with texts to one record, and one of them is killed: what was told is there, each
// row with its own text.
TEST(RowTextUsers, AreKeptBesideADeath) {
    constexpr int32 kUsers = 3, kRows = 20, kRounds = 5;
    const TempFolder temp;
    TestGround ground;
    const StartedLibrary library(ground, platform::posixPlatform().files, platform::posixPlatform().clock);
    const auto textOf = [](const Text& name) {
        Text text;
        for (int32 i = 0; i < 60; ++i) text += name;
        return text;
    };
    for (int32 round = 0; round < kRounds; ++round) {
        const Text folder = temp.name(u"Akten" + toText(round));
        {
            clsRtm rtm;
            ASSERT_TRUE(makeRows(rtm, folder));
        }
        std::vector<std::unique_ptr<ChildProcess>> users;
        for (int32 user = 0; user < kUsers; ++user)
            users.push_back(std::make_unique<ChildProcess>([&, user](ChildProcess::Line& line) {
                clsRtm rtm;
                const auto db = rtm.OpenTSDB(folder);
                if (!db) return 1;
                line.hear();
                for (int32 i = 0; i < kRows; ++i) {
                    const auto row = db->Record(1)->Kette(fPOS)->Add(i % 3 == 0);
                    const Text name = Text(1, static_cast<char16_t>(u'A' + user)) + toText(10 + i);
                    row->Fields(rNAME, name);
                    row->Fields(rTEXT, textOf(name));
                    if (!row->Update()) return 2;
                    line.say('S');
                }
                return 0;
            }));
        for (const auto& user : users) user->line().say('G');
        std::map<char16_t, int32> told;
        for (int32 i = 0; i <= round * 3; ++i, ++told[u'A']) ASSERT_EQ(users[0]->line().hear(), 'S');
        users[0]->kill();
        for (int32 user = 1; user < kUsers; ++user) {
            EXPECT_EQ(users[static_cast<std::size_t>(user)]->wait(), 0);
            told[static_cast<char16_t>(u'A' + user)] = kRows;
        }
        clsRtm rtm;
        const auto db = rtm.OpenTSDB(folder);
        ASSERT_TRUE(db);
        std::map<Text, int32> found;
        const auto set = db->Record(1)->Kette(fPOS);
        for (int32 n = 1; n <= set->Count(); ++n) {
            const auto row = set->Record(n);
            const Text name = row->Fields(rNAME);
            EXPECT_EQ(++found[name], 1) << toUtf8(name);
            if (name.size() > 1) {
                EXPECT_EQ(row->Fields(rTEXT), textOf(name)) << toUtf8(name);
            }
        }
        for (const auto& [user, rows] : told)
            for (int32 i = 0; i < rows; ++i) EXPECT_TRUE(found.contains(Text(1, user) + toText(10 + i)));
        EXPECT_TRUE(consistent(*db));
    }
}

}  // namespace
}  // namespace tsRtm::test
