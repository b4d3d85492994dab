#pragma once
// Letting memory come near before it is looked at.
#include <atomic>
#include <cstddef>

namespace tsRtm {

// For bytes that will be looked at soon, whether they are near by then or not; no address does harm.
inline void fetchAhead(const void* from, std::size_t bytes) noexcept {
    constexpr std::size_t cacheLine = 64;
    const auto* const first = static_cast<const char*>(from);
    for (std::size_t offset = 0; offset < bytes; offset += cacheLine) __builtin_prefetch(first + offset);
    // To the compiler a function that does nothing else has no effect, and it would leave out the calls.
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

}  // namespace tsRtm
