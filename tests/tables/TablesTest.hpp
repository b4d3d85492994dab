#pragma once
// A library on a memory disk with a folder /d, a key file for coded lines, and time that passes when told; a
// list, a table of cells and a table of rows, each by itself and as one kind of thing.
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/tables/DatenSeq.hpp"
#include "tsRtm/tables/DatenTab.hpp"
#include "tsRtm/tables/DatenVarTab.hpp"
#include "tsRtm/types/Event.hpp"

namespace tsRtm::test {

inline constexpr TextView kFile = u"/d/Liste.txt";
inline constexpr auto kUntilNextLook = std::chrono::seconds(5);

class TablesTest : public testing::Test {
 protected:
    TablesTest() {
        disk.putFolder(u"/d");
        Bytes keys;
        for (int i = 0; i < 256; ++i) keys += static_cast<char>(i * 167 + 41);
        disk.put(u"/opt/host/KeyTS.dat", keys);
    }
    // Another process puts this in place of the file; the clock has moved on.
    void otherWrites(BytesView bytes, std::chrono::seconds later = std::chrono::seconds(1)) {
        wait(later);
        disk.put(kFile, bytes);
    }
    void wait(std::chrono::seconds time) {
        library.ground.clock.advance(time);
        disk.setNow(library.ground.clock.now());
    }

    MemoryFiles disk;
    StartedLibrary library{disk};
};

// A list or table on a file, or on none.
template <class Table, class... Settings>
std::unique_ptr<Table> onFile(TextView name, Settings... settings) {
    auto table = std::make_unique<Table>();
    table->Init(name, settings...);
    return table;
}

// Counts how often a list says that it has changed.
template <class List>
class Changes {
 public:
    explicit Changes(List& list) : subscription_(list.Change.connect([this] { ++count_; })) {}
    int take() { return std::exchange(count_, 0); }

 private:
    int count_ = 0;
    Subscription subscription_;
};

template <class List>
std::vector<Text> linesIn(List& list) {
    std::vector<Text> lines;
    for (int32 i = 1; i <= list.Count(); ++i) lines.push_back(list.Item(i));
    return lines;
}

template <class Table>
std::vector<std::vector<Text>> rowsIn(Table& table) {
    std::vector<std::vector<Text>> rows;
    for (int32 i = 1; i <= table.Count(); ++i) rows.push_back(table.Record(i));
    return rows;
}

// Entries of one text each: a line, a row of one cell, a row of one item.
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
