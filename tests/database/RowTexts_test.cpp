// Texts of the memo cells of a chain's rows: through the records that stand for the rows, whose they are, and
// what packing makes of damaged and left-over files.
#include "tests/database/ChainDatabase.hpp"
#include "tests/database/Deaths.hpp"
#include "tests/support/ChildProcess.hpp"

namespace tsRtm::test {
namespace {

// The chain of the first of two records has the rows "a" and "b".
std::shared_ptr<clsTSDB> makeRows(clsRtm& rtm, TextView folder = kFolder) {
    auto db = makeTextRows(rtm, folder, 2);
    return writeChain(*db, 1, {{u"a", {}}, {u"b", {}}}) == 0 ? db : nullptr;
}

// Name and text of each row, "a=text b= ".
Text textsIn(clsTSDB& db, int32 record) {
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
    const auto parent = db->Record(1);
    const auto set = parent->Kette(fPOS);
    const auto a = set->Record(1), b = set->Record(2);
    EXPECT_EQ(a->Fields(rTEXT), u"");
    a->Fields(rTEXT, u"Übergabe an der Tür");
    EXPECT_TOLD("Übergabe an der Tür|a= b= |yes|a=Übergabe an der Tür b= ", a->Fields(rTEXT),
                textsIn(*other, 1), a->Update(), textsIn(*other, 1));
    // Longer than a block, beside a field of the same row; then none.
    const Text longer(3000, u'x');
    b->Fields(rNAME, u"B");
    ASSERT_TRUE(write(b, longer) && write(a, u""));
    EXPECT_EQ(textsIn(*other, 1), u"a= B=" + longer + u" ");
    // Rows that are new, those of a record that is new, and a text that is given up again.
    const auto front = set->Add(true);
    front->Fields(rNAME, u"v");
    ASSERT_TRUE(write(front, u"vorn"));
    const auto record = db->Add();
    record->Fields(fKEY, u"3");
    const auto row = record->Kette(fPOS)->Add();
    row->Fields(rNAME, u"n");
    ASSERT_TRUE(write(row, u"neu"));
    EXPECT_TOLD("neu|yes|neu", row->Fields(rTEXT), record->Update(), row->Fields(rTEXT));
    row->Fields(rTEXT, u"nie gespeichert");
    row->Reset();
    EXPECT_EQ(row->Fields(rTEXT), u"neu");
    EXPECT_EQ(textsIn(*other, 1) + textsIn(*other, 3), u"v=vorn a= B=" + longer + u" n=neu ");
    EXPECT_TRUE(consistent(*db));
    // Packed by the other: the texts have moved.
    db->Schliesse();
    other->AktSatzNr(1);
    ASSERT_TRUE(other->PackMemoKette());
    EXPECT_EQ(textsIn(*other, 1) + textsIn(*other, 3), u"v=vorn a= B=" + longer + u" n=neu ");
    EXPECT_TRUE(consistent(*other));
}

TEST_F(RowTexts, OfTwoUsersAreBothKeptOrOneIsTold) {
    const auto mine = db->Record(1)->Kette(fPOS), theirs = other->Record(1)->Kette(fPOS);
    const auto a = mine->Record(1), b = mine->Record(2);
    const auto theirA = theirs->Record(1), theirB = theirs->Record(2);
    ASSERT_TRUE(write(a, u"eins"));
    // The same row: nothing is written, and nothing stays behind in the store.
    const auto size = file(kStore).size();
    EXPECT_TOLD("no|70|0|mein Wort|yes", write(theirA, u"mein Wort"), theirA->Error(),
                file(kStore).size() - size, theirA->Fields(rTEXT), write(theirB, u"zwei"));
    // So does a row that has gone from its set since another one was stored.
    const auto late = db->Record(1)->Kette(fPOS)->Record(2);
    EXPECT_EQ(b->Fields(rNAME) + late->Fields(rTEXT), u"bzwei");
    EXPECT_TOLD("yes|no|70|a=eins b=zwei ", write(a, u"eins"), write(b, u"drei"), b->Error(),
                textsIn(*db, 1));
    EXPECT_TRUE(consistent(*db));
}

// Packing gives a text the place that another row's text had.
TEST_F(RowTexts, OfRowsThatWerePackedAreTheirOwn) {
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
    const Text now = textsIn(*db, 1);
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
            const Text now = textsIn(other, 1);
            EXPECT_TRUE(now == u"a= b=neu " || (!told && now == u"a= b=alt ")) << toUtf8(now);
            EXPECT_TRUE(write(other.Record(1)->Kette(fPOS)->Record(1), u"weiter"));
            EXPECT_TRUE(textsIn(other, 1).starts_with(u"a=weiter b="));
            EXPECT_TRUE(consistent(other));
        });
}

INSTANTIATE_TEST_SUITE_P(Windows, RowTextDeaths, testing::Bool());

// Three programs add rows with texts to one record, and one of them is killed: what was told is there, each
// row with its own text.
class RowTextUsers : protected RealFiles, public testing::Test {};

TEST_F(RowTextUsers, AreKeptBesideADeath) {
    constexpr int32 kUsers = 3, kRows = 20, kRounds = 5;
    const auto textOf = [](const Text& name) { return replaceAll(Text(60, u'#'), u"#", name); };
    for (int32 round = 0; round < kRounds; ++round) {
        const Text folder = temp.name(u"Akten" + toText(round));
        ASSERT_TRUE(makeRows(rtm, folder));
        std::vector<std::unique_ptr<ChildProcess>> users;
        for (int32 user = 0; user < kUsers; ++user)
            users.push_back(std::make_unique<ChildProcess>([&, user](ChildProcess::Line& line) {
                clsRtm own;
                const auto db = own.OpenTSDB(folder);
                if (!db) return 1;
                line.hear();
                for (int32 i = 0; i < kRows; ++i) {
                    const auto row = db->Record(1)->Kette(fPOS)->Add(i % 3 == 0);
                    const Text name = Text(1, static_cast<char16_t>(u'A' + user)) + toText(10 + i);
                    if (!stored(row, {{rNAME, name}, {rTEXT, textOf(name)}})) return 2;
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
        const auto db = there(rtm.OpenTSDB(folder));
        std::map<Text, int32> found;
        const auto set = db->Record(1)->Kette(fPOS);
        for (int32 n = 1; n <= set->Count(); ++n) {
            const auto row = set->Record(n);
            const Text name = row->Fields(rNAME);
            EXPECT_EQ(++found[name], 1) << toUtf8(name);
            EXPECT_TRUE(name.size() == 1 || row->Fields(rTEXT) == textOf(name)) << toUtf8(name);
        }
        for (const auto& [user, rows] : told)
            for (int32 i = 0; i < rows; ++i) EXPECT_TRUE(found.contains(Text(1, user) + toText(10 + i)));
        EXPECT_TRUE(consistent(*db));
    }
}

// --- Whose they are

// Rows have a text and a memo, field 2 of the chain POS.
class RowsWithMemos : public MemoryDatabase {
 protected:
    static constexpr TextView kStore = u"Memo-002.002";
    static constexpr TextView kRows = u"KetteDat.002";
    static constexpr std::size_t kRow = 8 + 4 + 5;

    // Nobody has it open.
    void make() {
        auto db = makeTextRows(rtm, kFolder, 2);
        for (const auto& [n, first, second] : {std::tuple{1, u"a", u"b"}, {2, u"c", u"d"}})
            ASSERT_EQ(writeChain(*db, n, {{first, {}}, {second, {}}}), 0);
        db.reset();
        // The memos of rows 2, 3, 4: no entry of the face makes them.
        Bytes rows = file(kRows);
        for (std::size_t row = 2; row <= 4; ++row) rows[row * kRow - 1] = static_cast<char>('0' + row - 1);
        put(kRows, rows);
        Bytes store;
        for (const char c : {'A', 'B', 'C'}) {
            Bytes entry{26, 0, 0, 0, 3, 0, 0, 0, c, c, c};
            entry.resize(128);
            store += entry;
        }
        put(kStore, store);
    }
    // The texts that the rows of a record lead to, "-" for none.
    std::string texts(clsTSDB& db, int32 record) {
        std::string out;
        for (const auto& row : chainAt(db, record)) {
            const auto block = row[1].empty() ? 0 : std::stoul(toUtf8(row[1]));
            out += block == 0 ? '-' : file(kStore).at((block - 1) * 128 + 8);
        }
        return out;
    }
};

TEST_F(RowsWithMemos, KeepTheirOwnersWhenRowsAreWritten) {
    make();
    const auto db = open();
    ground.clock.advance(std::chrono::seconds(5));
    TextTable rows = chainAt(*db, 1);
    // One block twice: the second row gets a copy. One that is another chain's counts for nothing.
    rows.push_back({u"e", rows[0][1]});
    rows.push_back({u"f", u"3"});
    ASSERT_EQ(writeChain(*db, 1, rows), 0);
    EXPECT_TOLD("ABA-|4|C-", texts(*db, 1), chainAt(*db, 1)[2][1], texts(*db, 2));
    // The text of a row that goes becomes zeros when the chain stands.
    ground.clock.advance(std::chrono::seconds(5));
    EXPECT_TOLD("0|B", writeChain(*db, 1, {chainAt(*db, 1)[1]}), texts(*db, 1));
    EXPECT_EQ(file(kStore)[8], '\0');
    EXPECT_TRUE(consistent(*db));
    EXPECT_TOLD("yes|256|   4   5|BC-", db->PackMemoKette(), file(kStore).size(), file(kRows).substr(0, 8),
                texts(*db, 1) + texts(*db, 2));
    EXPECT_TOLD("0|-C-", addRow(*db, 2, End::head, {u"g"}), texts(*db, 2));
    EXPECT_TRUE(consistent(*db));
}

TEST_F(RowsWithMemos, AreMendedByTheCheck) {
    make();
    patch(kRows, 3 * kRow - 1, "1");  // the text of row 2
    patch(kRows, 4 * kRow - 1, "9");  // none
    auto db = open();
    EXPECT_FALSE(db->Check(false, {}));
    EXPECT_EQ(db->Befunde(),
              (std::vector<Text>{u"Memo-002.002: Satz 1, Zeile 2 und Satz 1, Zeile 3 haben denselben Text an "
                                 u"der Stelle 1",
                                 u"Memo-002.002: Satz 2, Zeile 4 zeigt auf keinen Text an der Stelle 9"}));
    EXPECT_FALSE(db->Check(true, {}));
    EXPECT_TRUE(consistent(*db));
    EXPECT_EQ(texts(*db, 1) + texts(*db, 2), "AA--");
}

// A cycle, a pointer out of the file, and one to row 1, which ends a chain.
TEST_F(RowsWithMemos, PackingRefusesACorruptChain) {
    for (const auto& [next, raises] : {std::pair{"   2", true}, {"   9", true}, {"   1", false}}) {
        make();
        patch(kRows, 2 * kRow + 4, next);  // the second row of record 1
        const Bytes rows = file(kRows);
        auto db = open();
        const std::string told = raised([&] { EXPECT_TRUE(db->PackMemoKette()); });
        EXPECT_EQ(told, raises ? "57|DB PackMemoKette|Corrupt pointer in chain #2 of record #1" : "");
        if (raises) {
            EXPECT_EQ(file(kRows), rows);
            EXPECT_FALSE(disk.exists(path(u"KetteDat.002.tmp")) || disk.exists(path(u"Data.tsd.tmp")));
            EXPECT_TRUE(open()) << "the lock was given back";
        }
        db.reset();
        disk.restore({});
    }
}

// An older program died in a reorganisation: its records may lead into what it left.
TEST_F(RowsWithMemos, NothingIsGivenFreeBesideWhatOthersLeft) {
    for (const TextView left : {u"Kette.tmp", u"KetteTmp.002", u"Memo.tmp"}) {
        make();
        put(left, "rows");
        const Bytes rows = file(kRows), store = file(kStore);
        auto db = open();
        ASSERT_EQ(db->Befunde().size(), 1u);
        EXPECT_TOLD("yes|no|70", db->Befunde()[0].starts_with(left), db->PackMemoKette(), db->Error());
        ground.clock.advance(std::chrono::seconds(5));
        EXPECT_TOLD("0|no", writeChain(*db, 1, {{u"x", {}}}), db->Check(true, {}));
        db.reset();
        EXPECT_EQ(file(kStore), store);
        EXPECT_EQ(file(kRows).substr(kRow, 3 * kRow), rows.substr(kRow, 3 * kRow));
        EXPECT_EQ(file(left), "rows");
        disk.restore({});
    }
}

// The machine went down: one record was never written, one is half there, a row leads to no text.
TEST_F(RowsWithMemos, AnOpeningMendsWhatAnUncleanEndLeft) {
    make();
    patch(u"Count.tsd", 9, "+");
    patch(kRows, 4 * kRow - 1, "9");
    put(u"Data.tsd", file(u"Data.tsd") + "X" + Bytes(16, '\0') + " Torn    ");
    auto db = open();
    EXPECT_EQ(db->Befunde(),
              (std::vector<Text>{u"Data.tsd: Satz 4 war nur halb da und wurde aufgefüllt",
                                 u"Data.tsd: Satz 3 war nicht geschrieben",
                                 u"Memo-002.002: Satz 2, Zeile 4 zeigt auf keinen Text an der Stelle 9"}));
    EXPECT_EQ(db->AnzahlDSaetze(), 4);
    EXPECT_TOLD("*Torn|AB--", db->GetField(3, 0) + db->GetField(4, fKEY), texts(*db, 1) + texts(*db, 2));
    EXPECT_TRUE(consistent(*db));
    db.reset();
    EXPECT_TRUE(open()->Befunde().empty());
}

}  // namespace
}  // namespace tsRtm::test
