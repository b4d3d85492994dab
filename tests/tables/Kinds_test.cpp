// What a list, a table of cells and a table of rows have each of its own, and the forms of their files.
#include <limits>

#include "tests/support/Examples.hpp"
#include "tests/support/Told.hpp"
#include "tests/tables/TablesTest.hpp"

namespace tsRtm::test {
namespace {

using DatenSeqTest = TablesTest;
using DatenTabTest = TablesTest;
using DatenVarTabTest = TablesTest;
using FormatsOfTables = TablesTest;
using Lines = std::vector<Text>;
using Values = std::vector<std::vector<Text>>;

TEST_F(DatenSeqTest, ReadsLinesOfAnyForm) {
    const Bytes nul("a\0b\r\n", 5);
    for (const auto& [bytes, lines] : {std::pair<Bytes, Lines>{"", {}},
                                       {"\r\n", {u""}},
                                       {"a\r\nb", {u"a", u"b"}},
                                       {"a\rb\r", {u"a", u"b"}},
                                       {"a\r\n\r\nb\r\n\r\n", {u"a", u"", u"b", u""}},
                                       {"a\nb\rc", {u"ab", u"c"}},  // a text with a CR loses every LF
                                       {nul, {Text(u"a\0b", 3)}},
                                       {"a\r\nb\r\n\x1Arest", {u"a", u"b"}}}) {
        disk.put(kFile, bytes);
        const auto list = onFile<DatenSeq>(kFile);
        EXPECT_EQ(linesIn(*list), lines) << bytes;
        EXPECT_FALSE(list->IsEmpty());
    }
}

TEST_F(DatenSeqTest, ALimitHolds) {
    otherWrites("a\r\nb\r\nc\r\nd\r\n");
    const auto list = onFile<DatenSeq>(kFile, 3);
    EXPECT_TOLD("3||0|0", list->Count(), list->Item(4), list->Add(u"x"), list->Insert(1, u"x"));
    list->Item(4, u"x");
    EXPECT_FALSE(list->Dirty());
    list->Remove(1);
    EXPECT_TOLD("3|", list->Count(), list->Item(3));  // the limit, whatever the list holds
    list->Item(3, u"y");
    EXPECT_EQ(linesIn(*list), (Lines{u"b", u"c", u"y"}));
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
        const auto list = onFile<DatenSeq>(kFile, 0, u"", true);
        list->Add(u"Ä");
        EXPECT_EQ(disk.dump(kFile), after);
    }
    otherWrites("\xEF\xBB\xBFx\r\n");
    const auto list = onFile<DatenSeq>(kFile);
    list->Sensible(false);
    list->Encoding(1252);  // which a file that is there need not have
    list->Item(1, u"Ł");
    list->Commit();
    EXPECT_EQ(disk.dump(kFile), "\xEF\xBB\xBFŁ\r\n");
}

// The code of "geheim" with start value 5 under the key file of the fixture.
TEST_F(DatenSeqTest, CodedLinesAreReadBesidePlainOnes) {
    otherWrites("BYwh9ZMmxQ\r\nkein Code\r\n");
    const auto list = onFile<DatenSeq>(kFile);
    list->Encrypted(true);
    EXPECT_EQ(linesIn(*list), (Lines{u"geheim", u"kein Code"}));
}

TEST_F(DatenSeqTest, LinesAreInsertedAndMadeByTheirIndex) {
    const auto list = onFile<DatenSeq>(kFile);
    EXPECT_TOLD("yes|1", list->IsEmpty(), list->Add(u"eins"));
    list->Item(3, u"drei");
    EXPECT_TOLD("1|0|0|eins|||", list->Insert(1, u"null"), list->Insert(5, u"x"), list->Insert(0, u"x"),
                list->Remove(2), list->Remove(9), list->Item(0), list->Item(9));
    EXPECT_EQ(raised([&] { list->Item(2147483647, u"x"); }).substr(0, 16), "9|DatenSeq.Item|");
    EXPECT_THROW(list->Insert(1, u"a\nb"), Failure);
    list->Commit();
    EXPECT_TRUE(list->Dirty()) << "until the program clears it";
    EXPECT_EQ(linesIn(*list), (Lines{u"null", u"", u"drei"}));
}

TEST_F(DatenSeqTest, MigrateToAnsiTurnsADosFileOnce) {
    for (const auto& [before, after] :
         {std::pair<Bytes, Bytes>{"M\x81ller\r\n", "M\xFCller\r\n"}, {"plain\x9D\r\n", "plain\x9D\r\n"}}) {
        disk.put(kFile, before);
        const auto list = onFile<DatenSeq>(kFile);
        list->MigrateToAnsi();
        EXPECT_EQ(disk.dump(kFile), before);
        list->IsAnsi = false;
        list->MigrateToAnsi();
        EXPECT_EQ(disk.dump(kFile), after);
        EXPECT_TRUE(list->IsAnsi);
    }
}

TEST_F(DatenTabTest, CellsAreTyped) {
    const auto table = onFile<DatenTab>(u"", 3, u"LD");
    EXPECT_TOLD("1|2|3", table->Add({u" 12 Stück", u"1,50", u"x"}), table->Add({}),
                table->VarAdd({Variant(int32{-3}), Variant(2.25), Variant(true), Variant(u"zu viel")}));
    EXPECT_EQ(rowsIn(*table),
              (Values{{u"12", u"1,50", u"x"}, {u"0", u"0,00", u""}, {u"-3", u"2,25", u"-1"}}));
    for (const auto& [column, value] : {std::pair{1, 2.5}, {2, 1234.005}, {3, 0.5}})
        table->Value(2, column, value);
    table->Item(3, 1, u"99999999999");
    table->Item(9, 1, u"nirgends");
    EXPECT_EQ(rowsIn(*table),
              (Values{{u"12", u"1,50", u"x"}, {u"2", u"1234,01", u"0,5"}, {u"2147483647", u"2,25", u"-1"}}));
    EXPECT_TOLD("1.5|0.5||||0", table->Value(1, 2), table->Value(2, 3), table->Item(0, 1), table->Item(1, 4),
                table->Item(4, 1), table->Record(4).size());
    EXPECT_THROW(table->Value(1, 2, std::numeric_limits<float64>::infinity()), Failure);
    EXPECT_THROW(table->Init(kFile, 0), Failure);
}

TEST_F(DatenTabTest, SumsFollowEveryChange) {
    const auto table = onFile<DatenTab>(u"", 3, u"DLT");
    for (const auto* amount : {u"1,5", u"2", u"4"}) table->Add({amount, u"10", u"7"});
    EXPECT_TOLD("7.5|30|0", table->Summe(1), table->Summe(2), table->Summe(3));
    table->Item(1, 1, u"0,5");
    table->Value(1, 2, 11);
    table->Add({u"8", u"1"});
    table->Insert(1, {u"16", u"1"});
    EXPECT_TOLD("2|28|12", table->RemoveRange(2, 3), table->Summe(1), table->Summe(2));
    EXPECT_EQ(rowsIn(*table), (Values{{u"16,00", u"1", u""}, {u"4,00", u"10", u"7"}, {u"8,00", u"1", u""}}));
    EXPECT_TOLD("3|0", table->Clear(), table->Summe(1));
    for (const int32 column : {0, 4})
        EXPECT_EQ(raised([&] { table->Summe(column); }), "381|DatenTab.Summe|Die Spalte " +
                                                             std::to_string(column) +
                                                             " existiert in der Tabelle \"\" nicht");
}

TEST_F(DatenTabTest, ReadsWhatFits) {
    for (const auto& [bytes, rows, okay] :
         {std::tuple<Bytes, Values, bool>{"", {}, true},
          {"a\r\n1\r\n2.5\r\n", {{u"a", u"1", u"2,50"}}, true},
          {"a\n1\n2.5", {{u"a", u"1", u"2,50"}}, true},
          {"a\r\n1\r\n2\r\nb\r\n3\r\n4\r\nrest\r\n", {{u"a", u"1", u"2,00"}, {u"b", u"3", u"4,00"}}, false},
          {"x\r\n", {}, false},
          {"a\r\n\r\nviel\r\n", {{u"a", u"0", u"0,00"}}, true},
          {"a\r\n1e99\r\n1e999\r\n", {{u"a", u"2147483647", u"0,00"}}, true}}) {
        disk.put(kFile, bytes);
        const auto table = onFile<DatenTab>(kFile, 3, u"TLD");
        EXPECT_EQ(rowsIn(*table), rows) << bytes;
        EXPECT_EQ(std::pair(table->Okay(), table->Dirty()), std::pair(okay, false)) << bytes;
    }
}

TEST_F(DatenTabTest, AddAppendsTheRowAlone) {
    disk.put(kFile, "a\r\n1.00\r\n");
    const auto table = onFile<DatenTab>(kFile, 2, u"TD");
    Changes changes(*table);
    EXPECT_EQ(table->Add({u"b", u"2,5"}), 2);
    EXPECT_EQ(changes.take(), 2);  // the reading, too
    EXPECT_TOLD("a\r\n1.00\r\nb\r\n2.50\r\n|no", disk.dump(kFile), table->Changed());
    // What another process added in between stays.
    otherWrites("a\r\n1.00\r\nb\r\n2.50\r\nc\r\n3\r\n");
    EXPECT_TOLD("4|a\r\n1.00\r\nb\r\n2.50\r\nc\r\n3\r\nd\r\n0.00\r\n", table->Add({u"d"}), disk.dump(kFile));
    // Behind a part of a row, or a line without its end, the file is written anew.
    for (const char* torn : {"a\r\n1\r\nhalb\r\n", "a\r\n1"}) {
        otherWrites(torn);
        table->Add({u"b", u"2"});
        EXPECT_TOLD("a\r\n1.00\r\nb\r\n2.00\r\n|yes", disk.dump(kFile), table->Okay());
    }
    EXPECT_TOLD("3|yes|yes|no", table->Add({u"später"}, false), table->Dirty(), table->Changed(),
                table->Changed());  // reading clears it
}

TEST_F(DatenTabTest, RowsAreInsertedAndRemoved) {
    const auto table = onFile<DatenTab>(kFile, 2);
    table->Encoding(1252);
    for (const auto* name : {u"a", u"ü", u"c"}) table->Add({name, name}, false);
    EXPECT_TOLD("1|1|0|0", table->Remove(2), table->Insert(1, {u"ä"}, false), table->Insert(9, {u"0"}),
                table->RemoveRange(3, 2));
    table->Commit();
    EXPECT_EQ(disk.dump(kFile), "\xE4\r\n\r\na\r\na\r\nc\r\nc\r\n");
    EXPECT_EQ(table->RemoveRange(1, 3), 3);
}

// Here another version comes with the look at the row's first cell.
TEST_F(DatenTabTest, ARecordIsOfOneVersion) {
    disk.put(kFile, "d\r\ne\r\n");
    const auto table = onFile<DatenTab>(kFile, 2, u"", true);
    int32 readings = 0;
    const auto again = table->Change.connect([&] {
        if (++readings == 1) otherWrites("f\r\ng\r\n");
    });
    EXPECT_EQ(table->Record(1), (std::vector<Text>{u"d", u"e"}));
    EXPECT_EQ(table->Record(1), (std::vector<Text>{u"f", u"g"}));
}

TEST_F(DatenTabTest, CountKeyCounts) {
    const auto table = onFile<DatenTab>(u"", 2, u"TL");
    for (const auto* key : {u"Ort", u"Name", u"Ort", u"ort", u"Ort"}) table->CountKey(key);
    EXPECT_EQ(rowsIn(*table), (Values{{u"Ort", u"3"}, {u"Name", u"1"}, {u"ort", u"1"}}));
}

TEST_F(DatenVarTabTest, RowsComeBack) {
    {
        const auto table = onFile<DatenVarTab>(kFile);
        EXPECT_TOLD("1|2|3", table->Add({u"a", u"Zeile 1\r\nZeile 2"}), table->Add({}),
                    table->VarAdd({Variant(int32{3}), Variant(1.5), Variant(u"3#")}));
        table->Item(1, 1, u"ä");
        table->Item(1, 3, u"nirgends");
        EXPECT_EQ(table->Remove(4), 0);
    }
    EXPECT_EQ(disk.dump(kFile),
              "\xEF\xBB\xBF"
              "2#\r\nä\r\nZeile 1`Zeile 2\r\n1#\r\n\r\n3#\r\n3\r\n1,5\r\n3#\r\n");
    const auto again = onFile<DatenVarTab>(kFile);
    EXPECT_EQ(rowsIn(*again), (Values{{u"ä", u"Zeile 1\rZeile 2"}, {u""}, {u"3", u"1,5", u"3#"}}));
    EXPECT_EQ(again->ItemCount(3) * 10 + again->ItemCount(4), 30);
}

TEST_F(DatenVarTabTest, ReadsWhatFits) {
    struct Case {
        Bytes bytes;
        int32 usual;
        Values rows;
        bool okay;
    };
    for (const auto& [bytes, usual, rows, okay] :
         {Case{"", 0, {}, true}, Case{"2#\na\nb\n1#\nc", 0, {{u"a", u"b"}, {u"c"}}, true},
          Case{"1#\r\na\r\n3#\r\nb\r\nc\r\n", 0, {{u"a"}}, false},
          Case{"quer\r\n#\r\n1#\r\na\r\n", 0, {{u"a"}}, false}, Case{"2147483647#\r\na\r\n", 0, {}, false},
          Case{"3#\r\na\r\nb\r\nc\r\n", 1, {{u"a", u"b", u"c"}}, true}}) {
        disk.put(kFile, bytes);
        const auto table = onFile<DatenVarTab>(kFile);
        table->DefaultItemCount(usual);
        EXPECT_EQ(rowsIn(*table), rows) << bytes;
        EXPECT_EQ(table->Okay(), okay) << bytes;
    }
}

TEST_F(DatenVarTabTest, ADamagedFileIsToldAndNotWritten) {
    for (const Bytes count : {"0#", "-1#", "4#"}) {
        const Bytes bytes = "1#\r\na\r\n" + count + "\r\nb\r\nb\r\nb\r\nb\r\n";
        disk.put(kFile, bytes);
        const auto table = onFile<DatenVarTab>(kFile);
        table->DefaultItemCount(1);
        EXPECT_EQ(raised([&] { table->Count(); }),
                  "57|DatenVarTab|Daten in \"/d/Liste.txt\" sind ab Satz 2 nicht im richtigen Format.");
        EXPECT_THROW(table->Add({u"x"}), Failure);
        EXPECT_EQ(disk.dump(kFile), bytes);
        table->Clear();
        EXPECT_TOLD("1|1#\r\nx\r\n", table->Add({u"x"}), disk.dump(kFile));
    }
}

TEST_F(FormatsOfTables, AreAsThePageSays) {
    const auto expectExample = [&](const std::string& name) {
        EXPECT_EQ(disk.dump(kFile), example(name)) << name;
        static_cast<void>(disk.remove(kFile));
    };
    const auto list = onFile<DatenSeq>(kFile);
    list->Add(u"Müller");
    list->Add(u"Abel");
    list->Commit();
    expectExample("list");
    const auto table = onFile<DatenTab>(kFile, 3, u"TLD");
    table->Add({u"Müller", u"7", u"12,5"});
    expectExample("table");
    const auto rows = onFile<DatenVarTab>(kFile);
    rows->Add({u"Müller", u"Am Markt 1\rBonn"});
    rows->Add({u"Abel"});
    expectExample("rows");
}

}  // namespace
}  // namespace tsRtm::test
