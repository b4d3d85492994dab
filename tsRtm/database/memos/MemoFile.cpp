#include "tsRtm/database/memos/MemoFile.hpp"

#include <algorithm>
#include <array>
#include <limits>

#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using namespace memoFormat;

constexpr std::size_t kMostPayload = std::size_t{1} << 30;
constexpr int32 kPlacesToTry = 5;
constexpr std::size_t kStep = std::size_t{64} * 1024;
// Most entries are read in one go.
constexpr std::size_t kUsualEntry = 2048;

}  // namespace

uint64 MemoFile::blocksTaken(uint64 size) const {
    const uint64 blocks = blocksOf(size);
    const bool doubtful = size == 0 || size % kBlock != 0;
    return doubtful && lastNamed ? std::max(blocks, static_cast<uint64>(std::max(lastNamed(), 0))) : blocks;
}

int32 MemoFile::append(const Head& head, BytesView payload) {
    for (int32 attempt = 0; attempt < kPlacesToTry; ++attempt) {
        last_.before = bytes_.refreshSize();
        const uint64 blocks = blocksTaken(last_.before);
        if (payload.size() > kMostPayload ||
            blocks + blocksOf(kHead + payload.size()) >= std::numeric_limits<int32>::max())
            raise(61, kFileFailureSource, file().name() + u": der Text ist zu lang");
        const uint64 place = blocks * kBlock;
        const Bytes bytes = encode(head, payload);
        last_.behind = place + bytes.size();
        try {
            bytes_.write(place, bytes);
        } catch (const Failure&) {
            last_.behind = bytes_.refreshSize();
            takeBack();
            throw;
        }
        // A program that locks nothing may have taken the same place.
        Bytes there(bytes.size(), '\0');
        if (bytes_.read(place, there) == there.size() && there == bytes)
            return static_cast<int32>(blocks) + 1;
    }
    raise(70, kFileFailureSource, file().name() + u": andere schreiben ohne Sperre");
}

void MemoFile::takeBack(Run run) noexcept {
    try {
        if (run.behind > run.before && bytes_.refreshSize() == run.behind) bytes_.resize(run.before);
    } catch (const Failure& failure) {
        rtmMain::DebugLog(failure.Description());
    }
    last_ = {};
}

MemoEntry MemoFile::headAt(int32 block, std::span<char> start, std::size_t& got) {
    MemoEntry entry;
    got = block < 1 ? 0 : bytes_.read(offsetOf(block), start);
    if (got == 0) return entry;
    std::fill(start.begin() + static_cast<std::ptrdiff_t>(got), start.end(), '\0');
    entry.kind = start[0] == kEntry  ? MemoEntry::Kind::entry
                 : start[0] == kFree ? MemoEntry::Kind::free
                                     : MemoEntry::Kind::raw;
    if (entry.kind == MemoEntry::Kind::entry) entry.head = decode(start.first<kHead>());
    return entry;
}

MemoEntry MemoFile::headAt(int32 block) {
    std::array<char, kHead> head;
    std::size_t got = 0;
    return headAt(block, head, got);
}

Bytes MemoFile::rawFrom(uint64 offset) {
    Bytes text(kLongestRaw, '\0');
    text.resize(bytes_.read(offset, text));
    text.resize(std::min(text.find(kEntry), text.size()));
    return text;
}

MemoEntry MemoFile::read(int32 block) {
    std::array<char, kUsualEntry> start;
    std::size_t got = 0;
    MemoEntry entry = headAt(block, start, got);
    if (entry.kind == MemoEntry::Kind::raw) entry.payload = rawFrom(offsetOf(block));
    if (entry.kind != MemoEntry::Kind::entry || entry.head.length < 1 || entry.head.length == kEmptyLength)
        return entry;
    const auto length = static_cast<std::size_t>(entry.head.length);
    if (kHead + length <= got) {
        entry.payload.assign(start.data() + kHead, length);
        return entry;
    }
    const uint64 begin = offsetOf(block) + kHead;
    const uint64 size = bytes_.refreshSize();
    entry.payload.resize(std::min<uint64>(length, size > begin ? size - begin : 0));
    entry.payload.resize(bytes_.read(begin, entry.payload));
    return entry;
}

uint64 MemoFile::blocksAt(int32 block) {
    const MemoEntry entry = headAt(block);
    if (entry.kind != MemoEntry::Kind::entry) return 0;
    if (entry.head.length == kEmptyLength) return 1;
    const uint64 bytes = kHead + static_cast<uint64>(std::max(entry.head.length, 0));
    if (entry.head.length >= 0 && offsetOf(block) + bytes <= bytes_.refreshSize()) return blocksOf(bytes);
    rtmMain::DebugLog(file().name() + u": falsche Länge im Block " + toText(block));
    return 1;
}

void MemoFile::release(int32 block) {
    uint64 left = blocksAt(block) * kBlock;
    const Bytes zeros(std::min<uint64>(left, kStep), '\0');
    // The head last: an entry that is half zeros is still one that can be released.
    while (left > 0) {
        const uint64 step = std::min<uint64>(left, kStep);
        left -= step;
        bytes_.write(offsetOf(block) + left, BytesView(zeros).substr(0, step));
    }
}

}  // namespace tsRtm
