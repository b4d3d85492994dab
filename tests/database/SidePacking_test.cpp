// Rows of chains and their memos: who owns them, and what packing makes of damaged and left-over files.
#include "tests/database/ChainDatabase.hpp"

namespace tsRtm::test {
namespace {

using namespace std::chrono_literals;

// Rows have a text and a memo, field 2 of the chain POS.
class RowsWithMemos : public MemoryDatabase {
 protected:
    static constexpr TextView kStore = u"Memo-002.002";
    static constexpr TextView kRows = u"KetteDat.002";
    static constexpr std::size_t kRow = 8 + 4 + 5;

    std::shared_ptr<clsTSDB> made() {
        auto db = makeTextRows(rtm, Text(kFolder), 2);
        for (const auto& [n, first, second] : {std::tuple{1, u"a", u"b"}, {2, u"c", u"d"}})
            if (!db || writeChain(*db, n, {{first, {}}, {second, {}}}) != 0) return nullptr;
        // The memos of rows 2, 3, 4: no entry of the face makes them.
        db.reset();
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
        return open();
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
    const auto db = made();
    ASSERT_TRUE(db);
    ground.clock.advance(5s);
    TextTable rows = chainAt(*db, 1);
    // One block twice: the second row gets a copy. One that is another chain's counts for nothing.
    rows.push_back({u"e", rows[0][1]});
    rows.push_back({u"f", u"3"});
    ASSERT_EQ(writeChain(*db, 1, rows), 0);
    EXPECT_TOLD("ABA-|4|C-", texts(*db, 1), chainAt(*db, 1)[2][1], texts(*db, 2));
    // The text of a row that goes becomes zeros when the chain stands.
    ground.clock.advance(5s);
    ASSERT_EQ(writeChain(*db, 1, {chainAt(*db, 1)[1]}), 0);
    EXPECT_EQ(texts(*db, 1), "B");
    EXPECT_EQ(file(kStore)[8], '\0');
    EXPECT_TRUE(consistent(*db));

    EXPECT_TRUE(db->PackMemoKette());
    EXPECT_EQ(file(kStore).size(), 2 * 128u);
    EXPECT_TOLD("   4   5|BC-", file(kRows).substr(0, 8), texts(*db, 1) + texts(*db, 2));
    ASSERT_EQ(addRow(*db, 2, End::head, {u"g"}), 0);
    EXPECT_EQ(texts(*db, 2), "-C-");
    EXPECT_TRUE(consistent(*db));
}

TEST_F(RowsWithMemos, AreMendedByTheCheck) {
    auto db = made();
    ASSERT_TRUE(db);
    db.reset();
    patch(kRows, 3 * kRow - 1, "1");  // the text of row 2
    patch(kRows, 4 * kRow - 1, "9");  // none
    db = open();
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
        auto db = made();
        ASSERT_TRUE(db);
        db.reset();
        patch(kRows, 2 * kRow + 4, next);  // the second row of record 1
        const Bytes rows = file(kRows);
        db = open();
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
        auto db = made();
        ASSERT_TRUE(db);
        db.reset();
        put(left, "rows");
        const Bytes rows = file(kRows), store = file(kStore);
        db = open();
        ASSERT_EQ(db->Befunde().size(), 1u);
        EXPECT_TRUE(db->Befunde()[0].starts_with(left));
        EXPECT_FALSE(db->PackMemoKette());
        EXPECT_EQ(db->Error(), 70);
        ground.clock.advance(5s);
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
    auto db = made();
    ASSERT_TRUE(db);
    db.reset();
    patch(u"Count.tsd", 9, "+");
    patch(kRows, 4 * kRow - 1, "9");
    put(u"Data.tsd", file(u"Data.tsd") + "X" + Bytes(16, '\0') + " Torn    ");
    db = open();
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
