#include "tsRtm/tables/DatenSeq.hpp"

#include "tests/tables/TablesTest.hpp"

namespace tsRtm::test {
namespace {

using DatenSeqTest = TablesTest;
using Lines = std::vector<Text>;

TEST_F(DatenSeqTest, ReadsLinesOfAnyForm) {
    const Bytes nul("a\0b\r\n", 5);
    for (const auto& [bytes, lines] : {
             std::pair<Bytes, Lines>{"", {}},
             {"\r\n", {u""}},
             {"a\r\nb", {u"a", u"b"}},
             {"a\rb\r", {u"a", u"b"}},
             {"a\r\n\r\nb\r\n\r\n", {u"a", u"", u"b", u""}},
             {"a\nb\rc", {u"ab", u"c"}},  // a text with a CR loses every LF
             {nul, {Text(u"a\0b", 3)}},
             {"a\r\nb\r\n\x1Arest", {u"a", u"b"}},
         }) {
        disk.put(kFile, bytes);
        DatenSeq list;
        list.Init(kFile);
        EXPECT_EQ(linesIn(list), lines) << bytes;
        EXPECT_FALSE(list.IsEmpty());
    }
}

TEST_F(DatenSeqTest, ALimitHolds) {
    otherWrites("a\r\nb\r\nc\r\nd\r\n");
    DatenSeq list;
    list.Init(kFile, 3);
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(list.Item(4), u"");
    EXPECT_EQ(list.Add(u"x"), 0);
    EXPECT_EQ(list.Insert(1, u"x"), 0);
    list.Item(4, u"x");
    EXPECT_FALSE(list.Dirty());
    list.Remove(1);
    EXPECT_EQ(list.Count(), 3);  // the limit, whatever the list holds
    EXPECT_EQ(list.Item(3), u"");
    list.Item(3, u"y");
    EXPECT_EQ(linesIn(list), (Lines{u"b", u"c", u"y"}));
}

TEST_F(DatenSeqTest, AFileKeepsItsEncodingAndGetsWholeLines) {
    for (const auto& [before, after] : {
             std::pair<Bytes, Bytes>{"M\xFCller", "M\xFCller\r\n\xC4\r\n"},
             {"M\xFCller\nA\n", "M\xFCller\r\nA\r\n\xC4\r\n"},
             {"\xEF\xBB\xBFx\r\n", "\xEF\xBB\xBFx\r\nÄ\r\n"},
             {Bytes("\xFF\xFEx\0\r\0\n\0", 8), Bytes("\xFF\xFEx\0\r\0\n\0\xC4\0\r\0\n\0", 14)},
             {"\xFE\n\xFF\r\nx", "\xEF\xBB\xBFþÿ\r\nx\r\nÄ\r\n"},  // in 1252 it would begin like a mark
             {"\n\xEF\xBB\xBFx\r\ny", "\xEF\xBB\xBFï»¿x\r\ny\r\nÄ\r\n"},
             {"x\r\n\x1A", "x\r\n\xC4\r\n"},  // behind an end-of-file mark nobody would find it
         }) {
        otherWrites(before);
        DatenSeq list;
        list.Init(kFile, 0, {}, true);
        list.Add(u"Ä");
        EXPECT_EQ(disk.dump(kFile), after);
    }
    otherWrites("\xEF\xBB\xBFx\r\n");
    DatenSeq list;
    list.Init(kFile);
    list.Sensible(false);
    list.Encoding(1252);  // which a file that is there need not have
    list.Item(1, u"Ł");
    list.Commit();
    EXPECT_EQ(disk.dump(kFile), "\xEF\xBB\xBFŁ\r\n");
}

// The code of "geheim" with start value 5 under the key file of the fixture.
TEST_F(DatenSeqTest, CodedLinesAreReadBesidePlainOnes) {
    otherWrites("BYwh9ZMmxQ\r\nkein Code\r\n");
    DatenSeq list;
    list.Init(kFile);
    list.Encrypted(true);
    EXPECT_EQ(linesIn(list), (Lines{u"geheim", u"kein Code"}));
}

TEST_F(DatenSeqTest, LinesAreInsertedAndMadeByTheirIndex) {
    DatenSeq list;
    list.Init(kFile);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.Add(u"eins"), 1);
    list.Item(3, u"drei");
    EXPECT_EQ(list.Insert(1, u"null"), 1);
    EXPECT_EQ(list.Insert(5, u"x") + list.Insert(0, u"x"), 0);
    EXPECT_EQ(list.Remove(2), u"eins");
    EXPECT_EQ(list.Remove(9) + list.Item(0) + list.Item(9), u"");
    EXPECT_EQ(raised([&] { list.Item(2147483647, u"x"); }).substr(0, 16), "9|DatenSeq.Item|");
    list.Commit();
    EXPECT_TRUE(list.Dirty()) << "until the program clears it";
    EXPECT_EQ(linesIn(list), (Lines{u"null", u"", u"drei"}));
}

TEST_F(DatenSeqTest, ClearThatFailsLeavesTheList) {
    for (const bool sensible : {false, true}) {
        disk.put(kFile, "a\r\n");
        DatenSeq list;
        list.Init(kFile);
        list.Sensible(sensible);
        EXPECT_EQ(list.Count(), 1);
        const auto reader = disk.open(kFile, {});
        EXPECT_THROW(list.Clear(), Failure);
        EXPECT_EQ(linesIn(list), Lines{u"a"});
    }
}

TEST_F(DatenSeqTest, MigrateToAnsiTurnsADosFileOnce) {
    for (const auto& [before, after] :
         {std::pair<Bytes, Bytes>{"M\x81ller\r\n", "M\xFCller\r\n"}, {"plain\x9D\r\n", "plain\x9D\r\n"}}) {
        disk.put(kFile, before);
        DatenSeq list;
        list.Init(kFile);
        list.MigrateToAnsi();
        EXPECT_EQ(disk.dump(kFile), before);
        list.IsAnsi = false;
        list.MigrateToAnsi();
        EXPECT_EQ(disk.dump(kFile), after);
        EXPECT_TRUE(list.IsAnsi);
    }
}

}  // namespace
}  // namespace tsRtm::test
