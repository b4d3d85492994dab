#pragma once
// A list, a table of cells and a table of rows as one kind of thing: entries of one text each, a line, a row
// of one cell, a row of one item.
#include "tests/tables/TablesTest.hpp"
#include "tsRtm/tables/DatenSeq.hpp"
#include "tsRtm/tables/DatenTab.hpp"
#include "tsRtm/tables/DatenVarTab.hpp"

namespace tsRtm::test {

using Entries = std::vector<Text>;

class List {
 public:
    explicit List(bool atOnce = false) { data.Init(kFile, 0, {}, atOnce); }
    Entries all() { return linesIn(data); }
    void add(TextView text) { data.Add(text); }
    void set(int32 number, TextView text) { data.Item(number, text); }

    static constexpr const char* kBefore = "";  // of each line
    static constexpr bool kLineBreakFits = false;
    static constexpr bool kEmptyIsAFile = true;
    static constexpr std::string_view kStoringFails =
        "75|clsRtm.PutContentAPI|Die Datei \"/d/Liste.txt\" kann";
    DatenSeq data;
};

template <class Table>
class TableOf {
 public:
    Entries all() {
        Entries entries;
        for (const auto& row : rowsIn(data)) entries.push_back(row.at(0));
        return entries;
    }
    void add(TextView text) { data.Add({Text(text)}, false); }
    void set(int32 number, TextView text) { data.Item(number, 1, text); }

    static constexpr bool kEmptyIsAFile = false;
    static constexpr std::string_view kStoringFails = "70|";
    Table data;
};

class Cells : public TableOf<DatenTab> {
 public:
    explicit Cells(bool atOnce = false) { data.Init(kFile, 1, {}, atOnce); }
    static constexpr const char* kBefore = "";
    static constexpr bool kLineBreakFits = false;
};

class Rows : public TableOf<DatenVarTab> {
 public:
    explicit Rows(bool atOnce = false) { data.Init(kFile, atOnce); }
    static constexpr const char* kBefore = "1#\r\n";
    static constexpr bool kLineBreakFits = true;
};

// A file of this kind.
template <class Kind>
Bytes linesOf(std::initializer_list<const char*> entries) {
    Bytes bytes;
    for (const char* entry : entries) ((bytes += Kind::kBefore) += entry) += "\r\n";
    return bytes;
}

}  // namespace tsRtm::test
