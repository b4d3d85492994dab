#include "tsRtm/database/records/RecordStore.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

namespace tsRtm {

namespace {

// A record that somebody writes without a pause is taken as it is in the end.
constexpr int32 kMostCopies = 1000;
constexpr uint64 kSmallestPage = 4096;
constexpr std::size_t kRun = std::size_t{64} * 1024;

// Keeps the compiler from taking two looks at shared memory for one.
void lookAnew() noexcept { std::atomic_signal_fence(std::memory_order_seq_cst); }

// What is read in other pieces than it was written a moment ago has to come by way of the cache. So a copy is
// made and held against its source in the steps in which a record is looked at next.
constexpr std::size_t kStep = 16;

void copy(const char* from, std::span<char> into) noexcept {
    if (into.size() < kStep) {
        std::memcpy(into.data(), from, into.size());
        return;
    }
    for (std::size_t at = 0; at + kStep < into.size(); at += kStep) {
        std::memcpy(into.data() + at, from + at, kStep);
        lookAnew();  // or these steps become one call
    }
    std::memcpy(into.data() + into.size() - kStep, from + into.size() - kStep, kStep);
}

bool agree(const char* source, std::span<const char> copied) noexcept {
    if (copied.size() < kStep) return std::memcmp(source, copied.data(), copied.size()) == 0;
    const auto difference = [&](std::size_t at) {
        uint64 a[2], b[2];
        std::memcpy(a, source + at, kStep);
        std::memcpy(b, copied.data() + at, kStep);
        return (a[0] ^ b[0]) | (a[1] ^ b[1]);
    };
    uint64 other = difference(copied.size() - kStep);
    for (std::size_t at = 0; at + kStep < copied.size(); at += kStep) other |= difference(at);
    return other == 0;
}

void copyWhole(const char* from, std::span<char> into) noexcept {
    for (int32 copies = 0; copies < kMostCopies; ++copies) {
        copy(from, into);
        lookAnew();
        if (agree(from, into)) break;
    }
}

}  // namespace

RecordStore::RecordStore(platform::File& file, const RecordLayout& layout, bool shared)
    : bytes_(file), layout_(&layout), shared_(shared) {
    refresh();
}

void RecordStore::refresh() {
    bytes_.refreshSize();
    // The half-width count of a Unicode file is the same figure, since its records take twice the bytes.
    count_ = roundToInt32(static_cast<float64>(bytes_.knownSize()) / layout_->bytes());
}

bool RecordStore::reaches(int32 record) {
    if (has(record)) return true;
    if (record < 1 || !shared_ || !bytes_) return false;
    refresh();
    if (has(record) || !bytes_.file().remote()) return has(record);
    // The client may have believed its own memory.
    static_cast<void>(bytes_.file().refresh(platform::RefreshAs::reader));
    refresh();
    return has(record);
}

BytesView RecordStore::view(int32 record, Bytes& room) const {
    const std::size_t length = layout_->bytes();
    if (const char* in = bytes_.view(layout_->offsetOf(record), length)) return {in, length};
    room.resize(length);
    fillUp(bytes_.read(layout_->offsetOf(record), room), room);
    return room;
}

void RecordStore::read(int32 record, Bytes& into) const {
    into.resize(layout_->bytes());
    readPart(record, 0, into);
}

std::size_t RecordStore::readWhole(uint64 offset, std::span<char> into) const {
    if (!shared_) return bytes_.read(offset, into);
    if (const char* in = bytes_.view(offset, into.size())) {
        copyWhole(in, into);
        bytes_.check();
        return into.size();
    }
    std::size_t got = bytes_.read(offset, into);
    again_.resize(into.size());
    for (int32 copies = 0; copies < kMostCopies; ++copies) {
        const std::size_t second = bytes_.read(offset, again_);
        if (second == got && std::memcmp(into.data(), again_.data(), got) == 0) break;
        got = second;
        std::memcpy(into.data(), again_.data(), got);
    }
    return got;
}

void RecordStore::readRun(int32 first, std::span<char> into) const {
    const std::size_t length = layout_->bytes();
    const uint64 offset = layout_->offsetOf(first);
    if (const char* in = shared_ ? bytes_.view(offset, into.size()) : nullptr) {
        for (std::size_t at = 0; at < into.size(); at += length) copyWhole(in + at, into.subspan(at, length));
        bytes_.check();
        return;
    }
    const std::size_t got = bytes_.read(offset, into);
    std::size_t again = got;
    if (shared_) {
        again_.resize(into.size());
        again = bytes_.read(offset, again_);
    }
    for (std::size_t at = 0; at < into.size(); at += length, ++first) {
        const bool settled = at + length <= std::min(got, again) &&
                             (!shared_ || std::memcmp(into.data() + at, again_.data() + at, length) == 0);
        if (!settled) readPart(first, 0, into.subspan(at, length));
    }
}

void RecordStore::each(const std::function<void(BytesView)>& look) const {
    const std::size_t length = layout_->bytes();
    const auto most = static_cast<int32>(std::max<std::size_t>(kRun / length, 1));
    Bytes run;
    for (int32 first = 1; first <= count_; first += most) {
        run.resize(length * static_cast<std::size_t>(std::min(most, count_ - first + 1)));
        readRun(first, run);
        for (std::size_t at = 0; at < run.size(); at += length) look(BytesView(run).substr(at, length));
    }
}

void RecordStore::readPart(int32 record, uint32 offset, std::span<char> into) const {
    fillUp(readWhole(layout_->offsetOf(record) + offset, into), into);
}

void RecordStore::fillUp(std::size_t got, std::span<char> into) const {
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

bool RecordStore::tears(int32 record, std::size_t from, std::size_t to) const noexcept {
    const uint64 begin = layout_->offsetOf(record);
    return from < to && (begin + from) / kSmallestPage != (begin + to - 1) / kSmallestPage;
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
    closeGap(record);
    bytes_.write(layout_->offsetOf(record) + offset, bytes);
}

void RecordStore::putByte(int32 record, uint32 offset, char byte) {
    closeGap(record);
    bytes_.store(layout_->offsetOf(record) + offset, {&byte, 1});
}

void RecordStore::cutTo(int32 count) {
    bytes_.resize(layout_->offsetOf(count + 1));
    count_ = count;
}

}  // namespace tsRtm
