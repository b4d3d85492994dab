#include "tsRtm/tables/DatenTab.hpp"

#include <limits>

#include "tests/tables/TablesTest.hpp"

namespace tsRtm::test {
namespace {

using DatenTabTest = TablesTest;
using Rows = std::vector<std::vector<Text>>;

TEST_F(DatenTabTest, CellsAreTyped) {
    DatenTab table;
    table.Init({}, 3, u"LD");
    EXPECT_EQ(table.Add({u" 12 Stück", u"1,50", u"x"}), 1);
    EXPECT_EQ(table.Add({}), 2);
    EXPECT_EQ(table.VarAdd({Variant(int32{-3}), Variant(2.25), Variant(true), Variant(u"zu viel")}), 3);
    EXPECT_EQ(rowsIn(table), (Rows{{u"12", u"1,50", u"x"}, {u"0", u"0,00", u""}, {u"-3", u"2,25", u"-1"}}));
    EXPECT_EQ(table.Value(1, 2), 1.5);
    table.Value(2, 1, 2.5);
    table.Value(2, 2, 1234.005);
    table.Value(2, 3, 0.5);
    table.Item(3, 1, u"99999999999");
    table.Item(9, 1, u"nirgends");
    EXPECT_EQ(rowsIn(table),
              (Rows{{u"12", u"1,50", u"x"}, {u"2", u"1234,01", u"0,5"}, {u"2147483647", u"2,25", u"-1"}}));
    EXPECT_EQ(table.Value(2, 3), 0.5);
    EXPECT_EQ(table.Item(0, 1) + table.Item(1, 4) + table.Item(4, 1), u"");
    EXPECT_TRUE(table.Record(4).empty());
    EXPECT_THROW(table.Value(1, 2, std::numeric_limits<float64>::infinity()), Failure);
    EXPECT_THROW(table.Init(kFile, 0), Failure);
}

TEST_F(DatenTabTest, SumsFollowEveryChange) {
    DatenTab table;
    table.Init({}, 3, u"DLT");
    for (const auto* amount : {u"1,5", u"2", u"4"}) table.Add({amount, u"10", u"7"});
    EXPECT_EQ(table.Summe(1), 7.5);
    EXPECT_EQ(table.Summe(2), 30);
    EXPECT_EQ(table.Summe(3), 0);
    table.Item(1, 1, u"0,5");
    table.Value(1, 2, 11);
    table.Add({u"8", u"1"});
    table.Insert(1, {u"16", u"1"});
    EXPECT_EQ(table.RemoveRange(2, 3), 2);
    EXPECT_EQ(table.Summe(1), 28);
    EXPECT_EQ(table.Summe(2), 12);
    EXPECT_EQ(table.Clear(), 3);
    EXPECT_EQ(table.Summe(1), 0);
    for (const int32 column : {0, 4})
        EXPECT_EQ(raised([&] { table.Summe(column); }), "381|DatenTab.Summe|Die Spalte " +
                                                            std::to_string(column) +
                                                            " existiert in der Tabelle \"\" nicht");
}

TEST_F(DatenTabTest, ReadsWhatFits) {
    for (const auto& [bytes, rows, okay] : {
             std::tuple<Bytes, Rows, bool>{"", {}, true},
             {"a\r\n1\r\n2.5\r\n", {{u"a", u"1", u"2,50"}}, true},
             {"a\n1\n2.5", {{u"a", u"1", u"2,50"}}, true},
             {"a\r\n1\r\n2\r\nb\r\n3\r\n4\r\nrest\r\n",
              {{u"a", u"1", u"2,00"}, {u"b", u"3", u"4,00"}},
              false},
             {"x\r\n", {}, false},
             {"a\r\n\r\nviel\r\n", {{u"a", u"0", u"0,00"}}, true},
             {"a\r\n1e99\r\n1e999\r\n", {{u"a", u"2147483647", u"0,00"}}, true},
         }) {
        disk.put(kFile, bytes);
        DatenTab table;
        table.Init(kFile, 3, u"TLD");
        EXPECT_EQ(rowsIn(table), rows) << bytes;
        EXPECT_EQ(table.Okay(), okay) << bytes;
        EXPECT_FALSE(table.Dirty());
    }
}

TEST_F(DatenTabTest, AddAppendsTheRowAlone) {
    disk.put(kFile, "a\r\n1.00\r\n");
    DatenTab table;
    table.Init(kFile, 2, u"TD");
    Changes changes(table);
    EXPECT_EQ(table.Add({u"b", u"2,5"}), 2);
    EXPECT_EQ(changes.take(), 2);  // the reading, too
    EXPECT_EQ(disk.dump(kFile), "a\r\n1.00\r\nb\r\n2.50\r\n");
    EXPECT_FALSE(table.Changed());
    // What another process added in between stays.
    otherWrites("a\r\n1.00\r\nb\r\n2.50\r\nc\r\n3\r\n");
    EXPECT_EQ(table.Add({u"d"}), 4);
    EXPECT_EQ(disk.dump(kFile), "a\r\n1.00\r\nb\r\n2.50\r\nc\r\n3\r\nd\r\n0.00\r\n");
    // Behind a part of a row, or a line without its end, the file is written anew.
    for (const char* torn : {"a\r\n1\r\nhalb\r\n", "a\r\n1"}) {
        otherWrites(torn);
        table.Add({u"b", u"2"});
        EXPECT_EQ(disk.dump(kFile), "a\r\n1.00\r\nb\r\n2.00\r\n");
        EXPECT_TRUE(table.Okay());
    }
    EXPECT_EQ(table.Add({u"später"}, false), 3);
    EXPECT_TRUE(table.Dirty());
    EXPECT_TRUE(table.Changed());
    EXPECT_FALSE(table.Changed());  // reading clears it
}

TEST_F(DatenTabTest, RowsAreInsertedAndRemoved) {
    DatenTab table;
    table.Init(kFile, 2);
    table.Encoding(1252);
    for (const auto* name : {u"a", u"ü", u"c"}) table.Add({name, name}, false);
    EXPECT_EQ(table.Remove(2), 1);
    EXPECT_EQ(table.Insert(1, {u"ä"}, false), 1);
    EXPECT_EQ(table.Insert(9, {u"0"}) + table.RemoveRange(3, 2), 0);
    table.Commit();
    EXPECT_EQ(disk.dump(kFile), "\xE4\r\n\r\na\r\na\r\nc\r\nc\r\n");
    EXPECT_EQ(table.RemoveRange(1, 3), 3);
}

// Here another version comes with the look at the row's first cell.
TEST_F(DatenTabTest, ARecordIsOfOneVersion) {
    disk.put(kFile, "d\r\ne\r\n");
    DatenTab table;
    table.Init(kFile, 2, {}, true);
    int32 readings = 0;
    const auto again = table.Change.connect([&] {
        if (++readings == 1) otherWrites("f\r\ng\r\n");
    });
    EXPECT_EQ(table.Record(1), (std::vector<Text>{u"d", u"e"}));
    EXPECT_EQ(table.Record(1), (std::vector<Text>{u"f", u"g"}));
}

TEST_F(DatenTabTest, CountKeyCounts) {
    DatenTab table;
    table.Init({}, 2, u"TL");
    for (const auto* key : {u"Ort", u"Name", u"Ort", u"ort", u"Ort"}) table.CountKey(key);
    EXPECT_EQ(rowsIn(table), (Rows{{u"Ort", u"3"}, {u"Name", u"1"}, {u"ort", u"1"}}));
}

}  // namespace
}  // namespace tsRtm::test
