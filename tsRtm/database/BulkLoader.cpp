#include "tsRtm/database/BulkLoader.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "tsRtm/database/chains/ChainMerge.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/records/FieldValue.hpp"
#include "tsRtm/database/upkeep/IndexSort.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {
namespace {

// Larger blocks would make later small writes into the file slow.
constexpr std::size_t kLoadBlock = std::size_t{64} * 1024;

bool plainAscii(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

BulkLoader::BulkLoader(clsTSDB& database)
    : engine_(*database.engine_),
      before_(engine_.d.records()),
      blank_(engine_.d.layout.blank()),
      row_(blank_) {
    if (engine_.d.folder.readOnly)
        fail(DatabaseError::readOnly);
    else if (engine_.d.folder.shared || !engine_.d.store || engine_.writer.busy())
        fail(DatabaseError::locked);
    else
        usable_ = true;
    if (usable_) engine_.writer.occupy(true);
    block_.reserve(kLoadBlock + row_.size());
}

BulkLoader::~BulkLoader() {
    if (usable_) engine_.writer.occupy(false);
    if (finished_ || !usable_ || rows_ == 0) return;
    try {
        engine_.d.store.cutTo(before_);
        engine_.d.marks.end(before_);
    } catch (const Failure& failure) {
        engine_.d.marks.giveUp();
        rtmMain::DebugLog(u"Geladene Sätze bleiben ohne Index: " + failure.Description());
    }
}

bool BulkLoader::fail(DatabaseError error) noexcept { return engine_.fail(error); }

void BulkLoader::set(int32 field, TextView text) {
    if (!engine_.d.layout.has(field)) {
        fail(DatabaseError::badField);
        return;
    }
    const auto& layout = engine_.d.layout.field(field);
    if (layout.pointer) return setMemo(field, text);
    if (layout.chain) return;
    const std::span<char> into(row_.data() + layout.offset, layout.bytes);
    if ((layout.typ & 7) == 5 && !layout.special)
        engine_.d.layout.encode(layout, storedNumber(layout, text), into);
    else
        engine_.d.layout.encode(layout, text, into);
    if (field == engine_.d.control->AutowertFeld() && !text.empty())
        serial_ = std::max(serial_, roundToInt32(Val(text)));
}

// What goes to a side file at once: nobody points there before the row is in the file.
template <class Work>
void BulkLoader::beside(Work work) {
    try {
        work();
    } catch (const Failure& failure) {
        engine_.fail(failure);
        refused_ = true;
    }
}

void BulkLoader::setMemo(int32 field, TextView text) {
    beside([&] {
        auto& memos = engine_.d.memos;
        int32 pointer = 0;
        if (!text.empty()) {
            const auto [head, payload] = memos.texts(field).encode(text);
            pointer = memos.open(field).append(head, payload);
        }
        memos.setPointer(row_, field, pointer);
    });
}

void BulkLoader::setChain(int32 field, const TextTable& rows) {
    auto* const chain = usable_ ? engine_.d.chains.find(field) : nullptr;
    if (!chain) {
        fail(DatabaseError::badField);
        return;
    }
    beside([&] {
        ChainRowSet set(chain->rows());
        for (const auto& cells : rows) set.assign(*set.add(false), cells);
        MergeChain write(*chain, set);
        write.prepare({}, row_);
        write.finish();
    });
}

void BulkLoader::setUtf8(int32 field, std::string_view utf8) {
    if (engine_.d.layout.has(field)) {
        const auto& layout = engine_.d.layout.field(field);
        // Letters and digits of ASCII stand in every 8-bit record as they are.
        if (layout.plain() && layout.alpha && utf8.size() <= layout.bytes && plainAscii(utf8)) {
            std::memcpy(row_.data() + layout.offset, utf8.data(), utf8.size());
            std::memset(row_.data() + layout.offset + utf8.size(), ' ', layout.bytes - utf8.size());
            return;
        }
    }
    set(field, fromUtf8(utf8));
}

bool BulkLoader::flush() {
    if (block_.empty()) return true;
    const auto records = static_cast<int32>(block_.size() / row_.size());
    try {
        engine_.d.store.append(block_, records);
    } catch (const Failure& failure) {
        engine_.fail(failure);
        return false;
    }
    block_.clear();
    return true;
}

// From the first row on the indexes lack records: whoever opens the database after a death must know.
bool BulkLoader::begin() {
    try {
        if (const auto error = engine_.d.sign.enter(); failed(error)) return fail(error);
        engine_.d.marks.begin();
        return true;
    } catch (const Failure& failure) {
        engine_.fail(failure);
        return false;
    }
}

bool BulkLoader::add() {
    if (!usable_) return false;
    if (before_ + rows_ >= engine_.d.maxRecords()) return fail(DatabaseError::full);
    if (std::exchange(refused_, false)) {
        row_ = blank_;
        return false;
    }
    if (rows_ == 0 && !begin()) return false;
    block_.append(row_);
    row_ = blank_;
    ++rows_;
    return block_.size() < kLoadBlock || flush();
}

bool BulkLoader::finish() {
    if (!usable_) return false;
    if (rows_ == 0) {
        finished_ = true;
        return true;
    }
    if (!flush()) return false;
    // The rows are in the file: should an index fail, the mark stays and the next opening builds it.
    finished_ = true;
    auto& d = engine_.d;
    try {
        if (d.serial && serial_ > 0) d.serial.atLeast(serial_);
    } catch (const Failure& failure) {
        d.marks.giveUp();
        engine_.fail(failure);
        return false;
    }
    const auto error = sortIndexes(d, -1, {});
    if (failed(error)) return engine_.fail(error);
    bool flushed = true;
    const auto toDevice = [&](platform::File& file) { flushed = !platform::failed(file.flush()) && flushed; };
    if (d.durable()) d.guard.eachFile(toDevice);
    return flushed || engine_.fail(57);
}

}  // namespace tsRtm
