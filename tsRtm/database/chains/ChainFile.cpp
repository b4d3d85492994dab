#include "tsRtm/database/chains/ChainFile.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/database/files/SectorMending.hpp"

namespace tsRtm {
namespace {

constexpr uint64 kSmallestPage = 4096;
constexpr uint64 kMostRows = std::numeric_limits<int32>::max();

}  // namespace

int32 ChainFile::refresh() {
    bytes_.refreshSize();
    sizeChanged();
    return rows_;
}

void ChainFile::sizeChanged() noexcept {
    const uint64 rowBytes = format_.rowBytes();
    rows_ = static_cast<int32>(std::min((bytes_.knownSize() + rowBytes - 1) / rowBytes, kMostRows));
}

bool ChainFile::has(int32 number, Bytes& room) const {
    return holds(number) && row(number, room).find_first_not_of('\0') != BytesView::npos;
}

BytesView ChainFile::row(int32 number, Bytes& room) const {
    const uint64 offset = format_.offsetOf(number);
    if (const char* in = bytes_.view(offset, format_.rowBytes())) return {in, format_.rowBytes()};
    room.resize(format_.rowBytes());
    const std::size_t got = bytes_.read(offset, room);
    if (got < room.size()) {
        const Bytes blank = format_.blankRow();
        std::copy(blank.begin() + static_cast<std::ptrdiff_t>(got), blank.end(),
                  room.begin() + static_cast<std::ptrdiff_t>(got));
    }
    return room;
}

void ChainFile::each(const std::function<void(BytesView)>& look) const {
    Bytes room;
    for (int32 number = ChainFormat::kFirstRow; number <= rows_; ++number) look(row(number, room));
    check();
}

void ChainFile::write(std::span<const int32> numbers, BytesView bytes) {
    const std::size_t length = format_.rowBytes();
    for (std::size_t from = 0; from < numbers.size();) {
        std::size_t to = from + 1;
        while (to < numbers.size() && numbers[to] == numbers[to - 1] + 1) ++to;
        bytes_.write(format_.offsetOf(numbers[from]), bytes.substr(from * length, (to - from) * length));
        from = to;
    }
    sizeChanged();
}

void ChainFile::writePointer(int32 row, uint32 offset, int32 to) {
    writePart(row, offset, format_.pointer(to));
}

void ChainFile::writePart(int32 row, uint32 offset, BytesView bytes) {
    bytes_.write(format_.offsetOf(row) + offset, bytes);
    sizeChanged();
}

bool ChainFile::tears(int32 row, uint32 offset, bool durable) const noexcept {
    const uint64 begin = format_.offsetOf(row) + offset;
    const uint64 piece = durable ? kSectorBytes : kSmallestPage;
    return begin / piece != (begin + format_.pointerBytes() - 1) / piece;
}

ChainHead ChainFile::head() const {
    Bytes room;
    return format_.head(row(1, room));
}

void ChainFile::head(ChainHead head) {
    Bytes bytes = format_.head(head);
    if (size() < format_.rowBytes()) {
        Bytes room;
        Bytes whole(row(1, room));
        std::copy(bytes.begin(), bytes.end(), whole.begin());
        bytes = std::move(whole);
    }
    bytes_.write(0, bytes);
    sizeChanged();
}

void ChainFile::cutTo(uint64 size) {
    bytes_.resize(size);
    sizeChanged();
}

}  // namespace tsRtm
