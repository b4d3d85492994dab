#pragma once
// Mapped memory that outlives the file under it.
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace tsRtm::platform::posix {

// Watches one stretch of mapped memory. When the file below is cut short (or the disk below a hole is full)
// an access there raises SIGBUS, which would end the process; the guard puts a page of zeros in the place and
// notes the damage.
//
// The first guard installs one handler for the process; a bus error at an address that nobody watches goes to
// the handler that was there before. A program that installs its own handler later has to hand on what is not
// its own. A guard is moved to another stretch or ended only while its own memory is not being used.
class BusGuard {
 public:
    BusGuard() noexcept;  // takes one of a fixed number of places
    ~BusGuard();
    BusGuard(const BusGuard&) = delete;
    BusGuard& operator=(const BusGuard&) = delete;

    // False: no place was free, nothing can be watched.
    bool valid() const noexcept { return place_ != nullptr; }
    // From now on this stretch, whole pages; `protection` as mmap takes it, for the pages put in place.
    void watch(const std::byte* begin, std::size_t bytes, int protection) noexcept;
    // Whether a page was ever put in place.
    void repaired() noexcept { place_->damaged.store(false, std::memory_order_relaxed); }
    bool damaged() const noexcept { return place_->damaged.load(std::memory_order_relaxed); }

    // One entry of the table that the handler reads. begin 0: free; 1: taken, nothing watched yet.
    struct Place {
        std::atomic<std::uintptr_t> begin{0};
        std::atomic<std::uintptr_t> end{0};
        std::atomic<int> protection{0};
        std::atomic<bool> damaged{false};
    };

 private:
    Place* place_ = nullptr;
};

}  // namespace tsRtm::platform::posix
