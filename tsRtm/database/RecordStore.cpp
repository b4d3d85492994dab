#include "tsRtm/database/RecordStore.hpp"

#include <algorithm>
#include <cmath>

namespace tsRtm {

RecordStore::RecordStore(platform::File& file, const RecordLayout& layout) : bytes_(file), layout_(&layout) {
    refresh();
}

void RecordStore::refresh() {
    bytes_.refreshSize();
    // The half-width count of a Unicode file is the same figure, since its records take twice the bytes.
    count_ = roundToInt32(static_cast<float64>(bytes_.knownSize()) / layout_->bytes());
}

BytesView RecordStore::view(int32 record, Bytes& room) const {
    const std::size_t length = layout_->bytes();
    if (const char* in = bytes_.view(layout_->offsetOf(record), length)) return {in, length};
    read(record, room);
    return room;
}

void RecordStore::read(int32 record, Bytes& into) const {
    into.resize(layout_->bytes());
    readPart(record, 0, into);
}

void RecordStore::readPart(int32 record, uint32 offset, std::span<char> into) const {
    const std::size_t got = bytes_.read(layout_->offsetOf(record) + offset, into);
    if (got == into.size()) return;
    const Bytes& blank = layout_->blank();
    std::copy_n(blank.begin() + static_cast<std::ptrdiff_t>(got % layout_->unit()), into.size() - got,
                into.begin() + static_cast<std::ptrdiff_t>(got));
}

// A torn record before the place of the next one gets the blanks that it was read with, not the zeros of a
// gap.
void RecordStore::closeGap(int32 record) {
    const uint64 end = layout_->offsetOf(record);
    const uint64 size = bytes_.knownSize();
    if (size >= end) return;
    const std::size_t missing = std::min<uint64>(end - size, layout_->bytes());
    bytes_.write(end - missing, layout_->blank().substr(layout_->bytes() - missing));
}

void RecordStore::write(int32 record, BytesView bytes) {
    closeGap(record);
    bytes_.write(layout_->offsetOf(record), bytes);
    count_ = std::max(count_, record);
}

void RecordStore::append(BytesView block, int32 records) {
    closeGap(count_ + 1);
    bytes_.write(layout_->offsetOf(count_ + 1), block);
    count_ += records;
}

void RecordStore::writePart(int32 record, uint32 offset, BytesView bytes) {
    bytes_.write(layout_->offsetOf(record) + offset, bytes);
}

void RecordStore::cutTo(int32 count) {
    bytes_.resize(layout_->offsetOf(count + 1));
    count_ = count;
}

}  // namespace tsRtm
