#include "tsRtm/platform/posix/PosixBusGuard.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace tsRtm::platform::posix {
namespace {

static_assert(std::atomic<std::uintptr_t>::is_always_lock_free,
              "the signal handler must not wait for a lock");

constexpr std::uintptr_t kFree = 0;
constexpr std::uintptr_t kTaken = 1;

std::array<BusGuard::Place, 1024> places;
struct sigaction previous {};
std::uintptr_t pageSize = 4096;

// The place that watches an address. Only calls that a signal handler may make.
BusGuard::Place* placeOf(std::uintptr_t address) noexcept {
    for (auto& place : places) {
        const auto begin = place.begin.load(std::memory_order_acquire);
        const auto end = place.end.load(std::memory_order_acquire);
        const bool inside = begin > kTaken && address >= begin && address < end;
        // Asked twice: the place of another thread may be changing hands between the two loads.
        if (inside && place.begin.load(std::memory_order_acquire) == begin) return &place;
    }
    return nullptr;
}

bool repair(std::uintptr_t address) noexcept {
    auto* place = placeOf(address);
    if (!place) return false;
    void* const page = reinterpret_cast<void*>(address & ~(pageSize - 1));
    const int flags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED;
    if (::mmap(page, pageSize, place->protection.load(std::memory_order_relaxed), flags, -1, 0) == MAP_FAILED)
        return false;
    place->damaged.store(true, std::memory_order_relaxed);
    return true;
}

// What would have happened without us.
void passOn(int number, siginfo_t* info, void* context) noexcept {
    if ((previous.sa_flags & SA_SIGINFO) != 0) {
        previous.sa_sigaction(number, info, context);
        return;
    }
    const bool sent = info->si_code <= 0;  // by kill() and its like, not by an access
    if (previous.sa_handler == SIG_IGN && sent) return;
    if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
        previous.sa_handler(number);
        return;
    }
    // The access is repeated on return, and then ends the process with the right signal.
    std::signal(number, SIG_DFL);
    if (sent) static_cast<void>(std::raise(number));
}

void onBusError(int number, siginfo_t* info, void* context) noexcept {
    const int saved = errno;
    const bool access = info->si_code > 0;
    if (!access || !repair(reinterpret_cast<std::uintptr_t>(info->si_addr))) passOn(number, info, context);
    errno = saved;
}

bool install() noexcept {
    pageSize = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    if (::sigaction(SIGBUS, nullptr, &previous) != 0) return false;
    struct sigaction ours {};
    ours.sa_sigaction = onBusError;
    ours.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&ours.sa_mask);
    return ::sigaction(SIGBUS, &ours, nullptr) == 0;
}

}  // namespace

BusGuard::BusGuard() noexcept {
    static const bool installed = install();
    if (!installed) return;
    for (auto& place : places) {
        auto expected = kFree;
        if (!place.begin.compare_exchange_strong(expected, kTaken)) continue;
        place.damaged.store(false, std::memory_order_relaxed);
        place_ = &place;
        return;
    }
}

BusGuard::~BusGuard() {
    if (!place_) return;
    place_->end.store(0, std::memory_order_release);
    place_->begin.store(kFree, std::memory_order_release);
}

void BusGuard::watch(const std::byte* begin, std::size_t bytes, int protection) noexcept {
    const auto first = reinterpret_cast<std::uintptr_t>(begin);
    place_->end.store(0, std::memory_order_release);
    place_->begin.store(kTaken, std::memory_order_release);
    place_->protection.store(protection, std::memory_order_relaxed);
    place_->end.store(first + bytes, std::memory_order_release);
    place_->begin.store(first, std::memory_order_release);
}

}  // namespace tsRtm::platform::posix
