#pragma once
// A library on a memory disk with a folder /d, a key file for coded lines, and time that passes when told.
#include <gtest/gtest.h>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/Raised.hpp"
#include "tests/support/TestGround.hpp"
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

}  // namespace tsRtm::test
