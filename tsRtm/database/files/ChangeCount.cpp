#include "tsRtm/database/files/ChangeCount.hpp"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>

namespace tsRtm {

static_assert(std::endian::native == std::endian::little, "the numbers are read and written as they lie");

namespace {

struct KeptHead {
    uint64 number = 0;
    int32 record = 0;
    uint32 offset = 0;
    uint32 length = 0;
    uint32 before = 0;
    uint64 sum = 0;
};
static_assert(sizeof(KeptHead) == 32);
constexpr uint64 kKeptOffset = 8;
constexpr uint32 kLongestKept = uint32{1} << 24;  // whatever a damaged file asks for

uint64 sumOf(const KeptHead& head, BytesView bytes) noexcept {
    uint64 sum = 0x9E3779B97F4A7C15;
    const auto add = [&sum](uint64 word) {
        sum = (sum ^ word) * 0xC2B2AE3D27D4EB4F;
        sum ^= sum >> 31;
    };
    add(head.number);
    add(uint64{head.offset} << 32 | static_cast<uint32>(head.record));
    add(uint64{head.before} << 32 | head.length);
    while (!bytes.empty()) {
        uint64 word = 0;
        const std::size_t count = std::min(bytes.size(), sizeof word);
        std::memcpy(&word, bytes.data(), count);
        add(word);
        bytes.remove_prefix(count);
    }
    return sum;
}

}  // namespace

void ChangeCount::initialise() {
    const uint64 size = bytes_.refreshSize();
    if (size < sizeof(uint64)) store(0);
    if (bytes_.file().remote() && size < kServedBytes) bytes_.resize(kServedBytes);
}

uint64 ChangeCount::value() {
    uint64 value = 0;
    // Empty until the first opening that gets the database lock.
    if (bytes_.knownSize() < sizeof value) bytes_.refreshSize();
    std::atomic_thread_fence(std::memory_order_acq_rel);
    if (const char* in = bytes_.view(0, sizeof value))
        value = __atomic_load_n(reinterpret_cast<const uint64*>(in), __ATOMIC_ACQUIRE);
    else
        value = bytes_.file().remote() ? served() : cached();
    std::atomic_thread_fence(std::memory_order_acq_rel);
    return value;
}

uint64 ChangeCount::cached() {
    uint64 value = 0;
    bytes_.read(0, {reinterpret_cast<char*>(&value), sizeof value});
    return value;
}

uint64 ChangeCount::served() {
    if (alone_ && known_) return *known_;
    uint64 value = 0;
    // A file that no writer on this share has met is short: what the client keeps of it has to go first.
    if (bytes_.knownSize() < kServedBytes && bytes_.refreshSize() < kServedBytes) {
        static_cast<void>(bytes_.file().refresh(platform::RefreshAs::reader));
        bytes_.refreshSize();
    }
    const auto got = bytes_.file().readServed(0, std::as_writable_bytes(std::span(&value, 1)));
    if (!got) raiseFileFailure(got.error(), bytes_.file().name());
    if (alone_) known_ = value;
    return value;
}

void ChangeCount::alone(bool is) noexcept {
    alone_ = is;
    known_.reset();
}

void ChangeCount::store(uint64 value) {
    std::atomic_thread_fence(std::memory_order_seq_cst);
    bytes_.store(0, {reinterpret_cast<const char*>(&value), sizeof value});
    std::atomic_thread_fence(std::memory_order_seq_cst);
    if (alone_) known_ = value;
}

void ChangeCount::begin() {
    const uint64 now = value();
    store(isQuiet(now) ? now + 1 : now + 2);
}

void ChangeCount::end() {
    if (const uint64 now = value(); !isQuiet(now)) store(now + 1);
}

bool ChangeCount::Kept::completes(BytesView there) const noexcept {
    for (std::size_t i = 0; i < before.size(); ++i)
        if (i >= there.size() || (there[i] != before[i] && there[i] != bytes[i])) return false;
    return true;
}

void ChangeCount::keep(int32 record, uint32 offset, BytesView bytes, BytesView before) {
    KeptHead head{
        value(), record, offset, static_cast<uint32>(bytes.size()), static_cast<uint32>(before.size()), 0};
    const Bytes both = Bytes(bytes).append(before);
    head.sum = sumOf(head, both);
    Bytes entry(reinterpret_cast<const char*>(&head), sizeof head);
    bytes_.store(kKeptOffset, entry.append(both));
    std::atomic_thread_fence(std::memory_order_seq_cst);
}

ChangeCount::Kept ChangeCount::kept() {
    const uint64 now = value();
    KeptHead head;
    bytes_.refreshSize();
    const bool there = bytes_.read(kKeptOffset, {reinterpret_cast<char*>(&head), sizeof head}) == sizeof head;
    if (!there || isQuiet(now) || head.number != now || head.length > kLongestKept) return {};
    if (head.before != 0 && head.before != head.length) return {};
    Bytes both(std::size_t{head.length} + head.before, '\0');
    const bool whole = bytes_.read(kKeptOffset + sizeof head, both) == both.size();
    if (!whole || head.sum != sumOf(head, both)) return {};
    return {head.record, head.offset, both.substr(0, head.length), both.substr(head.length)};
}

}  // namespace tsRtm
