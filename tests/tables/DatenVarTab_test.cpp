#include "tsRtm/tables/DatenVarTab.hpp"

#include <fstream>

#include "tests/tables/TablesTest.hpp"
#include "tsRtm/tables/DatenSeq.hpp"
#include "tsRtm/tables/DatenTab.hpp"

namespace tsRtm::test {
namespace {

using DatenVarTabTest = TablesTest;
using FormatsOfTables = TablesTest;
using Rows = std::vector<std::vector<Text>>;

TEST_F(DatenVarTabTest, RowsComeBack) {
    {
        DatenVarTab table;
        table.Init(kFile);
        EXPECT_EQ(table.Add({u"a", u"Zeile 1\r\nZeile 2"}), 1);
        EXPECT_EQ(table.Add({}), 2);
        EXPECT_EQ(table.VarAdd({Variant(int32{3}), Variant(1.5), Variant(u"3#")}), 3);
        table.Item(1, 1, u"ä");
        table.Item(1, 3, u"nirgends");
        EXPECT_EQ(table.Remove(4), 0);
    }
    EXPECT_EQ(disk.dump(kFile),
              "\xEF\xBB\xBF"
              "2#\r\nä\r\nZeile 1`Zeile 2\r\n1#\r\n\r\n3#\r\n3\r\n1,5\r\n3#\r\n");
    DatenVarTab again;
    again.Init(kFile);
    EXPECT_EQ(rowsIn(again), (Rows{{u"ä", u"Zeile 1\rZeile 2"}, {u""}, {u"3", u"1,5", u"3#"}}));
    EXPECT_EQ(again.ItemCount(3) * 10 + again.ItemCount(4), 30);
}

TEST_F(DatenVarTabTest, ReadsWhatFits) {
    struct Case {
        Bytes bytes;
        int32 usual;
        Rows rows;
        bool okay;
    };
    for (const auto& [bytes, usual, rows, okay] : {
             Case{"", 0, {}, true},
             Case{"2#\na\nb\n1#\nc", 0, {{u"a", u"b"}, {u"c"}}, true},
             Case{"1#\r\na\r\n3#\r\nb\r\nc\r\n", 0, {{u"a"}}, false},
             Case{"quer\r\n#\r\n1#\r\na\r\n", 0, {{u"a"}}, false},
             Case{"2147483647#\r\na\r\n", 0, {}, false},
             Case{"99999999999999999999#\r\na\r\n", 0, {}, false},
             Case{"3#\r\na\r\nb\r\nc\r\n", 1, {{u"a", u"b", u"c"}}, true},
         }) {
        disk.put(kFile, bytes);
        DatenVarTab table;
        table.Init(kFile);
        table.DefaultItemCount(usual);
        EXPECT_EQ(rowsIn(table), rows) << bytes;
        EXPECT_EQ(table.Okay(), okay) << bytes;
    }
}

TEST_F(DatenVarTabTest, ADamagedFileIsToldAndNotWritten) {
    for (const Bytes count : {"0#", "-1#", "4#"}) {
        const Bytes bytes = "1#\r\na\r\n" + count + "\r\nb\r\nb\r\nb\r\nb\r\n";
        disk.put(kFile, bytes);
        DatenVarTab table;
        table.Init(kFile);
        table.DefaultItemCount(1);
        EXPECT_EQ(raised([&] { table.Count(); }),
                  "57|DatenVarTab|Daten in \"/d/Liste.txt\" sind ab Satz 2 nicht im richtigen Format.");
        EXPECT_THROW(table.Add({u"x"}), Failure);
        EXPECT_EQ(disk.dump(kFile), bytes);
        table.Clear();
        EXPECT_EQ(table.Add({u"x"}), 1);
        EXPECT_EQ(disk.dump(kFile), "1#\r\nx\r\n");
    }
}

// The worked examples of docs/file-formats.md are what the library writes.
TEST_F(FormatsOfTables, AreAsThePageSays) {
    std::ifstream in(TSRTM_TEST_DATA "/../../docs/file-formats.md", std::ios::binary);
    const std::string page(std::istreambuf_iterator<char>(in), {});
    const auto expectExample = [&](const std::string& name) {
        const std::string mark = "```hex " + name + "\n";
        const auto from = page.find(mark);
        ASSERT_NE(from, std::string::npos) << name;
        std::istringstream digits(
            page.substr(from + mark.size(), page.find("```", from + 3) - from - mark.size()));
        Bytes bytes;
        for (std::string byte; digits >> byte;) bytes += static_cast<char>(std::stoi(byte, nullptr, 16));
        EXPECT_EQ(disk.dump(kFile), bytes) << name;
        static_cast<void>(disk.remove(kFile));
    };
    DatenSeq list;
    list.Init(kFile);
    list.Add(u"Müller");
    list.Add(u"Abel");
    list.Commit();
    expectExample("list");
    DatenTab table;
    table.Init(kFile, 3, u"TLD");
    table.Add({u"Müller", u"7", u"12,5"});
    expectExample("table");
    DatenVarTab rows;
    rows.Init(kFile);
    rows.Add({u"Müller", u"Am Markt 1\rBonn"});
    rows.Add({u"Abel"});
    expectExample("rows");
}

}  // namespace
}  // namespace tsRtm::test
