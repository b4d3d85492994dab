#include "tsRtm/database/upkeep/Packing.hpp"

#include <algorithm>

#include "tsRtm/database/files/RecordedFailure.hpp"
#include "tsRtm/database/index/FlatFile.hpp"
#include "tsRtm/database/upkeep/FileExchange.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr TextView kData = u"Data.tsd";
constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr int32 kPhaseRecords = 1;
constexpr int32 kStopped = 70;

// Records one behind the other into a new data file.
class RecordWriterBeside {
 public:
    explicit RecordWriterBeside(platform::File& file) : bytes_(file, false) { block_.reserve(kBlock); }
    void add(BytesView record) {
        block_.append(record);
        if (block_.size() >= kBlock) flush();
    }
    void flush() {
        if (!block_.empty()) bytes_.write(bytes_.knownSize(), block_);
        block_.clear();
    }

 private:
    BlockFile bytes_;
    Bytes block_;
};

// Each record in turn; reports each hundredth, and raises where the user wants it to end.
template <class Visit>
void eachRecord(OpenDatabase& d, const BulkFace& face, Visit visit) {
    const int32 count = d.records();
    const int32 step = std::max(1, count / 100);
    Bytes room;
    for (int32 n = 1; n <= count; ++n) {
        if (n % step == 0) {
            if (face.progress) face.progress(kPhaseRecords, n, count);
            if (face.stopped && face.stopped()) raise(kStopped, kFileFailureSource, u"abgebrochen");
        }
        visit(n, d.store.view(n, room));
    }
    d.store.bytes().check();
}

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
    for (int32 i = 1; d.indexes.has(i); ++i) {
        auto order = d.indexes.big() || numbers.empty() ? std::vector<int32>() : renumbered(d, i, numbers);
        if (order.size() != static_cast<std::size_t>(store.count()))
            order = recordsInOrder(store, d.indexes.keys(i), face.progress);
        buildNewIndex(exchange.make(d.indexes.fileName(i)), form, order, i, face.progress);
    }
}

// The files of the database closed for the exchange, and opened on what is there then.
void exchangeFiles(OpenDatabase& d, FileExchange& exchange, const BulkFace& face) {
    if (face.prepared) face.prepared();
    d.indexes.closeAll();
    d.memos.close();
    d.chains.closeAll();
    d.store = RecordStore();
    d.folder.closeHandle(d.opened.data);
    try {
        exchange.commit();
    } catch (const Failure&) {
        // Who went on in the old files behind the commit would lose all that at the next opening.
        if (!exchange.committed()) d.openData();
        throw;
    }
    d.openData();
    exchange.discardOld();
    d.guard.renamed();
    if (!d.store) raise(70, kFileFailureSource, d.folder.path(kData) + u" kann nicht geöffnet werden");
    d.marks.begin();
    d.marks.end(d.records());
}

// From the reorganisation lock with a database that is whole, to `work(exchange)`; failures are outcomes.
template <class Work>
BulkOutcome alone(OpenDatabase& d, const BulkFace& face, Work work) {
    if (!d.store) return {DatabaseError::locked};
    if (d.folder.readOnly) return {DatabaseError::readOnly};
    const ReorganisationHold held(d.reorganisation);
    if (!held) return {held.error()};
    try {
        const DatabaseHold hold(d.locks);
        if (!hold) return {hold.error()};
        if (const auto error = d.sign.enter(); failed(error)) return {error};
        d.refreshCount();
        if (d.marks.leftBehind()) d.indexes.rebuildAll();
        // Files are closed, and who leaves flushes what is open.
        d.guard.eachFile([](platform::File& file) {
            if (const auto error = file.flush(); platform::failed(error))
                raiseFileFailure(error, file.name());
        });
        d.log.empty(UpdateLog::Emptied::surely);
        FileExchange exchange(d.folder);
        work(exchange);
        if (exchange.empty()) return {};
        exchangeFiles(d, exchange, face);
        return {DatabaseError::none, true};
    } catch (const Failure& failure) {
        d.marks.giveUp();
        recordFailure(failure);
        return {static_cast<DatabaseError>(failure.Number()), !d.store};
    }
}

}  // namespace

BulkOutcome packRecords(OpenDatabase& d, const BulkFace& face) {
    return alone(d, face, [&](FileExchange& exchange) {
        std::vector<int32> numbers(static_cast<std::size_t>(d.records()) + 1, 0);
        int32 kept = 0;
        eachRecord(d, face, [&](int32 n, BytesView record) {
            if (!RecordLayout::isDeleted(record)) numbers[static_cast<std::size_t>(n)] = ++kept;
        });
        if (kept == d.records()) return;
        auto& data = exchange.make(kData);
        RecordWriterBeside writer(data);
        eachRecord(d, face, [&](int32 n, BytesView record) {
            if (numbers[static_cast<std::size_t>(n)] > 0) writer.add(record);
        });
        writer.flush();
        if (kept > 0) return buildIndexes(d, exchange, data, numbers, face);
        dropIndexes(d, exchange);
        dropSideFiles(d, exchange);
    });
}

BulkOutcome packMemos(OpenDatabase& d, const BulkFace& face) {
    return alone(d, face, [&](FileExchange& exchange) {
        struct Store {
            int32 field;
            MemoFile file;
        };
        std::vector<Store> stores;
        for (int32 i = 1; i <= d.layout.fields(); ++i)
            if (d.memos.has(i) && FilesTopic::Exist(d.folder.path(memoFormat::fileName(0, i))))
                stores.push_back({i, MemoFile(exchange.make(memoFormat::fileName(0, i)))});
        if (stores.empty()) return;
        RecordWriterBeside writer(exchange.make(kData));
        Bytes image;
        eachRecord(d, face, [&](int32, BytesView record) {
            image.assign(record);
            for (auto& [field, file] : stores) {
                d.memos.setPointer(image, field, d.memos.copy(field, d.memos.pointerIn(record, field), file));
            }
            writer.add(image);
        });
        writer.flush();
    });
}

BulkOutcome emptyDatabase(OpenDatabase& d, const BulkFace& face) {
    return alone(d, face, [&](FileExchange& exchange) {
        exchange.make(kData);
        dropIndexes(d, exchange);
        dropSideFiles(d, exchange);
        exchange.drop(u"Index.tsd");
    });
}

BulkOutcome replaceRecords(OpenDatabase& d, const BulkFace& face, const Replacement& replacement) {
    return alone(d, face, [&](FileExchange& exchange) {
        auto& data = exchange.make(kData);
        RecordWriterBeside writer(data);
        const auto add = [&](BytesView record) { writer.add(record); };
        if (!replacement(exchange, add)) raise(kStopped, kFileFailureSource, u"abgebrochen");
        writer.flush();
        dropSideFiles(d, exchange);
        buildIndexes(d, exchange, data, {}, face);
    });
}

}  // namespace tsRtm
