#include "tsRtm/database/upkeep/Packing.hpp"

#include <algorithm>

#include "tsRtm/database/index/FlatFile.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

void dropSideFiles(OpenDatabase& d, FileExchange& exchange) {
    for (const Text& name : d.folder.fileNames()) {
        const Text capitals = upper(name);
        const bool side = capitals.starts_with(u"MEMO-") || capitals.starts_with(u"KETTEDAT.");
        if (side && !capitals.ends_with(u".TMP") && !capitals.ends_with(u".OLD")) exchange.drop(name);
    }
}

void dropIndexes(OpenDatabase& d, FileExchange& exchange) {
    for (int32 i = 1; d.indexes.has(i); ++i) exchange.drop(d.indexes.fileName(i));
}

// The order of an array under the new numbers; of one that does not hold every record once, nothing.
std::vector<int32> renumbered(OpenDatabase& d, int32 index, const std::vector<int32>& numbers) {
    const auto name = d.folder.path(d.indexes.fileName(index));
    const auto file = rtmMain::system().files.open(name, {});
    if (!file) return {};
    FlatFile array(**file, false);
    const int32 count = d.records();
    if (array.entries() < count) return {};
    FlatFile::Array entries;
    array.load(count, entries);
    std::vector<int32> order;
    std::vector<bool> seen(static_cast<std::size_t>(count) + 1, false);
    for (const int16 entry : entries) {
        const auto record = static_cast<std::size_t>(static_cast<uint16>(entry));
        if (record < 1 || record > static_cast<std::size_t>(count) || seen[record]) return {};
        seen[record] = true;
        if (numbers[record] > 0) order.push_back(numbers[record]);
    }
    return order;
}

void buildIndexes(OpenDatabase& d, FileExchange& exchange, platform::File& data,
                  const std::vector<int32>& numbers, const BulkFace& face) {
    RecordStore store(data, d.layout, false);
    const auto form = d.indexes.big() ? IndexFileForm::tree : IndexFileForm::flat;
    RecordSorter sorter;
    for (int32 i = 1; d.indexes.has(i); ++i) {
        auto order = d.indexes.big() || numbers.empty() ? std::vector<int32>() : renumbered(d, i, numbers);
        if (order.size() != static_cast<std::size_t>(store.count()))
            order = sorter.inOrder(store, d.indexes.keys(i), face.progress);
        buildNewIndex(exchange.make(d.indexes.fileName(i)), form, order, i, face.progress);
    }
}

}  // namespace

BulkOutcome packRecords(OpenDatabase& d, const BulkFace& face) {
    return exchangeFiles(d, face, {[&](FileExchange& exchange) {
                             std::vector<int32> numbers(static_cast<std::size_t>(d.records()) + 1, 0);
                             int32 kept = 0;
                             eachRecord(d, face, [&](int32 n, BytesView record) {
                                 if (!RecordLayout::isDeleted(record))
                                     numbers[static_cast<std::size_t>(n)] = ++kept;
                             });
                             if (kept == d.records()) return;
                             auto& data = exchange.make(kDataFile);
                             RunOfRecords writer(data);
                             eachRecord(d, face, [&](int32 n, BytesView record) {
                                 if (numbers[static_cast<std::size_t>(n)] > 0) writer.add(record);
                             });
                             writer.flush();
                             if (kept > 0) return buildIndexes(d, exchange, data, numbers, face);
                             dropIndexes(d, exchange);
                             dropSideFiles(d, exchange);
                         }});
}

BulkOutcome emptyDatabase(OpenDatabase& d, const BulkFace& face) {
    return exchangeFiles(d, face, {[&](FileExchange& exchange) {
                             exchange.make(kDataFile);
                             dropIndexes(d, exchange);
                             dropSideFiles(d, exchange);
                             exchange.drop(u"Index.tsd");
                         }});
}

BulkOutcome replaceRecords(OpenDatabase& d, const BulkFace& face, const Replacement& replacement) {
    return exchangeFiles(d, face, {[&](FileExchange& exchange) {
                             auto& data = exchange.make(kDataFile);
                             RunOfRecords writer(data);
                             const auto add = [&](BytesView record) { writer.add(record); };
                             if (!replacement(exchange, add))
                                 raise(kStopped, kFileFailureSource, u"abgebrochen");
                             writer.flush();
                             dropSideFiles(d, exchange);
                             buildIndexes(d, exchange, data, {}, face);
                         }});
}

}  // namespace tsRtm
