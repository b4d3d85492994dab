// List and table files of any content through their readers, and the input shortcuts. What was read and
// stored again reads the same.
#include <cstdlib>

#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TestGround.hpp"
#include "tsRtm/tables/DatenSeq.hpp"
#include "tsRtm/tables/DatenTab.hpp"
#include "tsRtm/tables/DatenVarTab.hpp"
#include "tsRtm/tables/ShortcutsTopic.hpp"
#include "tsRtm/types/Encodings.hpp"
#include "tsRtm/types/Failure.hpp"

namespace {

using namespace tsRtm;

constexpr TextView kFile = u"/d/Tabelle.iom";

using Rows = std::vector<std::vector<Text>>;

void cameBack(const Rows& stored, const Rows& before, bool encrypted) {
    if (stored.size() != before.size()) std::abort();
    if (encrypted) return;  // which has no room for all characters
    for (std::size_t row = 0; row < stored.size(); ++row)
        for (std::size_t i = 0; i < stored[row].size(); ++i)
            if (stored[row][i] != fromUtf8(toUtf8(before[row].at(i)))) std::abort();
}

template <class Table>
Rows rowsIn(Table& table) {
    Rows rows;
    const int32 count = table.Count();
    for (int32 row = 1; row <= count; ++row) rows.push_back(table.Record(row));
    return rows;
}

// Reads, stores it anew as UTF-8, reads that. `init` binds a table to the file.
template <class Table, class Init>
void thereAndBack(test::MemoryFiles& disk, BytesView content, Init init) {
    disk.put(kFile, content);
    try {
        Table table;
        init(table);
        const auto rows = rowsIn(table);
        if (rows.empty()) return;
        table.Encoding(UTF8);
        table.Item(1, 1, table.Item(1, 1));
        table.Commit();
        Table again;
        init(again);
        cameBack(rowsIn(again), rows, table.Encrypted());
        if (!again.Okay()) std::abort();
        table.Add({u"x", u"1"});
        init(again);  // reads it anew
        if (again.Count() != table.Count()) std::abort();
    } catch (const Failure&) {
    }
}

void list(test::MemoryFiles& disk, BytesView content, bool encrypted, bool atOnce) {
    disk.put(kFile, content);
    try {
        DatenSeq lines;
        lines.Init(kFile, 0, {}, atOnce);
        lines.Encrypted(encrypted);
        const int32 count = lines.Count();
        const Text first = lines.Item(1);
        lines.Add(u"Ende");
        lines.Commit();
        DatenSeq again;
        again.Init(kFile);
        again.Encrypted(encrypted);
        if (again.Count() != count + 1) std::abort();
        if (again.Item(count + 1) != u"Ende") std::abort();
        // Half a surrogate pair survives in UTF-16 alone.
        const Text back = again.Item(1);
        if (!encrypted && count > 0 && back != first && back != fromUtf8(toUtf8(first))) std::abort();
        lines.Remove(1);
    } catch (const Failure&) {
    }
}

void shortcuts(test::MemoryFiles& disk, BytesView content) {
    disk.put(kFile, content);
    try {
        ShortcutsTopic topic;
        topic.TablePath(u"/d");
        DatenTab table;
        table.Init(kFile, 2, u"SS");
        for (int32 row = 1; row <= std::min(table.Count(), 20); ++row)
            for (const int32 column : {1, 2}) {
                Text input = table.Item(row, column);
                static_cast<void>(topic.Table(input, 0));
                input.insert(0, u"#D");
                static_cast<void>(topic.Table(input, 0));
            }
    } catch (const Failure&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    if (size == 0) return 0;
    const BytesView content(reinterpret_cast<const char*>(data) + 1, size - 1);
    test::MemoryFiles disk;
    disk.put(u"/opt/host/KeyTS.dat", Bytes(256, '\x5A'));
    test::TestGround ground;
    const test::StartedLibrary library(ground, disk);
    const bool encrypted = (data[0] & 8) != 0;
    switch (data[0] & 7) {
        case 0:
            list(disk, content, encrypted, (data[0] & 16) != 0);
            break;
        case 1:
            shortcuts(disk, content);
            break;
        case 2:
            thereAndBack<DatenVarTab>(disk, content, [&](DatenVarTab& table) {
                table.Init(kFile);
                table.Encrypted(encrypted);
            });
            break;
        default:
            thereAndBack<DatenTab>(disk, content, [&](DatenTab& table) {
                // D cells are rounded when they are stored; text and whole numbers come back as they are.
                table.Init(kFile, 1 + (data[0] & 3), (data[0] & 16) != 0 ? u"TLTL" : u"LT");
                table.Encrypted(encrypted);
            });
            break;
    }
    return 0;
}
