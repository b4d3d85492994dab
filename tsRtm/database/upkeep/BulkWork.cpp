#include "tsRtm/database/upkeep/BulkWork.hpp"

#include <algorithm>

#include "tsRtm/database/files/RecordedFailure.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kBlock = std::size_t{64} * 1024;
constexpr int32 kPhaseRecords = 1;

// The files of the database closed for the exchange, and opened on what is there then.
void takePlaces(OpenDatabase& d, FileExchange& exchange, const BulkFace& face, const BulkWork& work) {
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
    if (work.committed) work.committed();
    d.openData();
    exchange.discardOld();
    d.guard.renamed();
    if (!d.store) raise(70, kFileFailureSource, d.folder.path(kDataFile) + u" kann nicht geöffnet werden");
    d.marks.begin();
    d.marks.end(d.records());
}

}  // namespace

BulkOutcome exchangeFiles(OpenDatabase& d, const BulkFace& face, const BulkWork& work) {
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
        work.make(exchange);
        if (exchange.empty()) return {};
        takePlaces(d, exchange, face, work);
        return {DatabaseError::none, true};
    } catch (const Failure& failure) {
        d.marks.giveUp();
        if (failure.Source() == kRaisedSource) throw;
        recordFailure(failure);
        return {static_cast<DatabaseError>(failure.Number()), !d.store};
    }
}

void eachRecord(OpenDatabase& d, const BulkFace& face, const std::function<void(int32, BytesView)>& visit) {
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
    d.store.bytes().passed();
}

void RunOfRecords::add(BytesView record) {
    if (block_.empty()) block_.reserve(kBlock + record.size());
    block_.append(record);
    if (block_.size() >= kBlock) flush();
}

void RunOfRecords::flush() {
    if (!block_.empty()) bytes_.write(bytes_.knownSize(), block_);
    block_.clear();
}

void RunOfRecords::put(uint64 offset, BytesView bytes) {
    flush();
    bytes_.write(offset, bytes);
}

}  // namespace tsRtm
