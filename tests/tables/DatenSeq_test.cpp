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
             {"a\r\nb\r\n", {u"a", u"b"}},
             {"a\r\nb", {u"a", u"b"}},
             {"a\nb\n", {u"a", u"b"}},
             {"a\rb\r", {u"a", u"b"}},
             {"a\r\n\r\nb\r\n\r\n", {u"a", u"", u"b", u""}},
             {"a\nb\rc", {u"ab", u"c"}},  // a text with a CR loses every LF
             {nul, {Text(u"a\0b", 3)}},
             {"M\xFCller\r\n", {u"Müller"}},
             {"\xEF\xBB\xBFM\xC3\xBCller\r\n\xFF\r\n", {u"Müller", u"\uFFFD"}},
             {Bytes("\xFF\xFE\x41\x01\r\0\n\0", 8), {u"Ł"}},
             {Bytes("\xFE\xFF\x01\x41\0\r\0\n", 8), {u"Ł"}},
             {"a\r\nb\r\n\x1Arest", {u"a", u"b"}},
         }) {
        disk.put(kFile, bytes);
        DatenSeq list;
        list.Init(kFile);
        EXPECT_EQ(linesIn(list), lines) << bytes;
        EXPECT_FALSE(list.IsEmpty());
    }
}

TEST_F(DatenSeqTest, ChangesAreStoredByCommitOrAtOnce) {
    for (const bool atOnce : {false, true}) {
        static_cast<void>(disk.remove(kFile));
        DatenSeq list;
        list.Init(kFile, 0, {}, atOnce);
        Changes changes(list);
        EXPECT_TRUE(list.IsEmpty());
        EXPECT_EQ(list.Add(u"eins"), 1);
        EXPECT_EQ(list.Add(u"Łódź"), 2);
        list.Item(4, u"vier");
        EXPECT_EQ(list.Insert(1, u"null"), 1);
        EXPECT_EQ(list.Insert(6, u"x"), 0);
        EXPECT_EQ(list.Remove(2), u"eins");
        EXPECT_EQ(list.Remove(9), u"");
        EXPECT_EQ(changes.take(), 5);
        EXPECT_EQ(disk.exists(kFile), atOnce);
        list.Commit();
        EXPECT_EQ(disk.dump(kFile), "\xEF\xBB\xBFnull\r\nŁódź\r\n\r\nvier\r\n");
        EXPECT_TRUE(list.Dirty());
        EXPECT_EQ(list.Item(9), u"");
        EXPECT_EQ(list.Item(0), u"");
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

// Each step: what another process writes and when, and what is seen then.
TEST_F(DatenSeqTest, OthersChangesAreSeenInTime) {
    for (const bool atOnce : {false, true}) {
        disk.put(kFile, "alt\r\n");
        DatenSeq list;
        list.Init(kFile, 0, {}, atOnce);
        Changes changes(list);
        EXPECT_EQ(linesIn(list), Lines{u"alt"});
        EXPECT_EQ(changes.take(), 1);
        otherWrites("neu\r\n");
        EXPECT_EQ(linesIn(list), Lines{atOnce ? u"neu" : u"alt"});
        wait(kUntilNextLook);
        EXPECT_EQ(linesIn(list), Lines{u"neu"});
        EXPECT_EQ(changes.take(), 1);
        // Within the second of the last stamp, and of the same size.
        otherWrites("eins\r\n");
        wait(kUntilNextLook);
        disk.put(kFile, "zwei\r\n");
        static_cast<void>(list.Count());
        disk.put(kFile, "drei\r\n");
        if (!atOnce) wait(kUntilNextLook);
        EXPECT_EQ(linesIn(list), Lines{u"drei"});
        changes.take();
        wait(kUntilNextLook);
        EXPECT_EQ(linesIn(list), Lines{u"drei"});
        EXPECT_EQ(changes.take(), 0);
        static_cast<void>(disk.remove(kFile));
        wait(kUntilNextLook);
        EXPECT_EQ(linesIn(list), Lines{});
        EXPECT_EQ(changes.take(), 1);
    }
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

TEST_F(DatenSeqTest, EncryptedLinesComeBack) {
    const Lines lines{u"Müller", u"", u"geheim €", Text(300, u'ß')};
    for (const bool atOnce : {false, true}) {
        static_cast<void>(disk.remove(kFile));
        {
            DatenSeq list;
            list.Init(kFile, 0, {}, atOnce);
            list.Encrypted(true);
            for (const Text& line : lines) list.Add(line);
        }  // stores
        const Bytes stored = disk.dump(kFile);
        EXPECT_EQ(stored.find("geheim"), Bytes::npos);
        EXPECT_EQ(stored.find('='), Bytes::npos);
        EXPECT_EQ(std::count(stored.begin(), stored.end(), '\n'), 4);
        DatenSeq again;
        again.Init(kFile);
        again.Encrypted(true);
        EXPECT_EQ(linesIn(again), lines);
    }
    // The code of "geheim" with start value 5 under the key file of the fixture.
    otherWrites("BYwh9ZMmxQ\r\nkein Code\r\n");
    DatenSeq list;
    list.Init(kFile);
    list.Encrypted(true);
    EXPECT_EQ(linesIn(list), (Lines{u"geheim", u"kein Code"}));
}

// A file that could not be read is not written over.
TEST_F(DatenSeqTest, AnUnreadableFileStaysWhole) {
    const Bytes stranger("\xFF\xFE\0\0x\0\0\0", 8);  // UTF-32
    disk.put(kFile, stranger);
    {
        DatenSeq list;
        list.Init(kFile);
        EXPECT_THROW(static_cast<void>(list.Count()), Failure);
        EXPECT_THROW(list.Add(u"x"), Failure);
        list.Dirty(true);
        EXPECT_THROW(list.Commit(), Failure);
    }
    EXPECT_EQ(disk.dump(kFile), stranger);
    disk.put(kFile, "alt\r\n");
    {
        DatenSeq list;
        list.Init(kFile);
        disk.failOpening(kFile, platform::SystemError::sharingViolation);
        EXPECT_EQ(list.Count(), 0);
        EXPECT_EQ(rtmMain::state().F, 70);
        EXPECT_THROW(list.Add(u"x"), Failure);
        disk.failOpening(kFile, platform::SystemError::none);
        wait(kUntilNextLook);
        EXPECT_EQ(list.Add(u"neu"), 2);
        EXPECT_THROW(list.Add(u"a\x1A"), Failure);  // the file would end there
    }
    EXPECT_EQ(disk.dump(kFile), "alt\r\nneu\r\n");
}

TEST_F(DatenSeqTest, TheLastWriterWinsButAnOldListDoesNotComeBack) {
    disk.put(kFile, "a\r\n");
    {
        DatenSeq list;
        list.Init(kFile);
        list.Add(u"b");
        list.Commit();
        otherWrites("c\r\n");
    }  // has nothing to store
    EXPECT_EQ(disk.dump(kFile), "c\r\n");
    DatenSeq list;
    list.Init(kFile);
    list.Add(u"d");
    otherWrites("e\r\n");
    list.Commit();
    EXPECT_EQ(disk.dump(kFile), "c\r\nd\r\n");
    list.Clear();
    EXPECT_FALSE(disk.exists(kFile));
    EXPECT_TRUE(list.IsEmpty());
}

// The code of a line beside plain ones would make something else of these at the next reading.
TEST_F(DatenSeqTest, AFileIsCodedAsAWhole) {
    disk.put(kFile, "Abel\r\n");
    DatenSeq list;
    list.Init(kFile, 0, {}, true);
    EXPECT_EQ(list.Count(), 1);
    list.Encrypted(true);
    list.Add(u"Bert");
    DatenSeq again;
    again.Init(kFile);
    again.Encrypted(true);
    EXPECT_EQ(linesIn(again), (Lines{u"Abel", u"Bert"}));
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
