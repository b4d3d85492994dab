#include "tsRtm/database/BulkLoader.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/database/DatabaseParts.hpp"
#include "tsRtm/database/FieldValue.hpp"
#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/Reorganisation.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {
namespace {

// Larger blocks would make later small writes into the file slow.
constexpr std::size_t kBlock = std::size_t{64} * 1024;

bool plainAscii(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

BulkLoader::BulkLoader(clsTSDB& database)
    : parts_(database.parts()), before_(parts_.records()), blank_(parts_.layout.blank()), row_(blank_) {
    if (parts_.readOnly)
        fail(5);
    else if (parts_.shared || !parts_.store)
        fail(70);
    else
        usable_ = true;
    block_.reserve(kBlock + row_.size());
}

BulkLoader::~BulkLoader() {
    if (finished_ || !usable_ || rows_ == 0) return;
    try {
        parts_.store.cutTo(before_);
        if (!parts_.indexes.empty()) parts_.count.mark(false);
    } catch (const Failure& failure) {
        rtmMain::DebugLog(u"Geladene Sätze bleiben ohne Index: " + failure.Description());
    }
}

bool BulkLoader::fail(int32 number) noexcept { return parts_.fail(number); }

void BulkLoader::set(int32 field, TextView text) {
    if (!parts_.layout.has(field)) {
        fail(9);
        return;
    }
    const auto& layout = parts_.layout.field(field);
    const std::span<char> into(row_.data() + layout.offset, layout.bytes);
    if ((layout.typ & 7) == 5 && !layout.special)
        parts_.layout.encode(layout, storedNumber(layout, text), into);
    else
        parts_.layout.encode(layout, text, into);
    if (field == parts_.control->AutowertFeld() && !text.empty())
        serial_ = std::max(serial_, roundToInt32(Val(text)));
}

void BulkLoader::setUtf8(int32 field, std::string_view utf8) {
    if (parts_.layout.has(field)) {
        const auto& layout = parts_.layout.field(field);
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
        parts_.store.append(block_, records);
    } catch (const Failure& failure) {
        recordFailure(parts_, failure);
        return false;
    }
    block_.clear();
    return true;
}

bool BulkLoader::add() {
    if (!usable_) return false;
    if (before_ + rows_ >= parts_.control->MaxRecords()) return fail(7);
    // From here on the indexes lack records: whoever opens the database after a crash must know.
    if (rows_ == 0 && !parts_.indexes.empty()) parts_.count.mark(true);
    block_.append(row_);
    row_ = blank_;
    ++rows_;
    return block_.size() < kBlock || flush();
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
    try {
        closeIndexes(parts_);
        parts_.count.write(parts_.records());
        if (parts_.serial && serial_ > 0) parts_.serial.atLeast(serial_);
    } catch (const Failure& failure) {
        recordFailure(parts_, failure);
        return false;
    }
    return sortIndexes(parts_, -1);
}

}  // namespace tsRtm
