#include "tsRtm/database/files/ChangeCount.hpp"

#include <atomic>
#include <bit>

namespace tsRtm {

static_assert(std::endian::native == std::endian::little, "the number is read and written as it lies");

void ChangeCount::initialise() {
    if (bytes_.refreshSize() < sizeof(uint64)) store(0);
}

uint64 ChangeCount::value() {
    uint64 value = 0;
    // Empty until the first opening that gets the database lock.
    if (bytes_.knownSize() < sizeof value) bytes_.refreshSize();
    std::atomic_thread_fence(std::memory_order_acq_rel);
    if (const char* in = bytes_.view(0, sizeof value))
        value = __atomic_load_n(reinterpret_cast<const uint64*>(in), __ATOMIC_ACQUIRE);
    else
        bytes_.read(0, {reinterpret_cast<char*>(&value), sizeof value});
    std::atomic_thread_fence(std::memory_order_acq_rel);
    return value;
}

void ChangeCount::store(uint64 value) {
    std::atomic_thread_fence(std::memory_order_seq_cst);
    bytes_.store(0, {reinterpret_cast<const char*>(&value), sizeof value});
    std::atomic_thread_fence(std::memory_order_seq_cst);
}

void ChangeCount::begin() {
    const uint64 now = value();
    store(isQuiet(now) ? now + 1 : now + 2);
}

void ChangeCount::end() {
    if (const uint64 now = value(); !isQuiet(now)) store(now + 1);
}

}  // namespace tsRtm
