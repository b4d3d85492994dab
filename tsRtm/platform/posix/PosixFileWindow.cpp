#include "tsRtm/platform/posix/PosixFileWindow.hpp"

#include <sys/mman.h>
#include <sys/stat.h>

#include <cstring>
#include <limits>

#include "tsRtm/platform/posix/PosixVolume.hpp"

namespace tsRtm::platform::posix {
namespace {

// Address space costs nothing where pointers are wide.
constexpr uint64 kHeadroom = sizeof(void*) >= 8 ? uint64{256} << 20 : uint64{4} << 20;
constexpr uint64 kGrain = uint64{1} << 20;  // a multiple of every page size

constexpr uint64 roundUp(uint64 bytes) noexcept { return (bytes + kGrain - 1) / kGrain * kGrain; }

bool coherent(int descriptor) {
    const auto kind = volumeOf(descriptor).kind;
    return kind == DriveKind::fixed || kind == DriveKind::ramDisk;
}

}  // namespace

PosixFileWindow::PosixFileWindow(int descriptor, bool writable) noexcept
    : descriptor_(descriptor), protection_(writable ? PROT_READ | PROT_WRITE : PROT_READ) {}

std::unique_ptr<PosixFileWindow> PosixFileWindow::open(int descriptor, bool writable) {
    struct stat status {};
    if (!coherent(descriptor) || ::fstat(descriptor, &status) != 0) return nullptr;
    std::unique_ptr<PosixFileWindow> window(new PosixFileWindow(descriptor, writable));
    if (!window->guard_.valid() || !window->reserve(static_cast<uint64>(status.st_size) + 1)) return nullptr;
    return window;
}

PosixFileWindow::~PosixFileWindow() {
    if (data_) ::munmap(data_, static_cast<std::size_t>(capacity_));
}

bool PosixFileWindow::reserve(uint64 size) {
    if (size <= capacity_) return true;
    if (size > std::numeric_limits<std::size_t>::max() / 4) return false;
    // Twice the size keeps moves rare; under a tight limit of address space the bare size has to do.
    return map(roundUp(size * 2 + kHeadroom)) || map(roundUp(size));
}

void PosixFileWindow::store(uint64 offset, std::span<const std::byte> bytes) {
    if (!bytes.empty()) std::memcpy(data_ + offset, bytes.data(), bytes.size());
}

bool PosixFileWindow::renew() noexcept {
    const auto bytes = static_cast<std::size_t>(capacity_);
    if (::mmap(data_, bytes, protection_, MAP_SHARED | MAP_FIXED, descriptor_, 0) == MAP_FAILED) return false;
    guard_.repaired();
    return true;
}

bool PosixFileWindow::map(uint64 capacity) noexcept {
    const auto bytes = static_cast<std::size_t>(capacity);
    void* const begin = ::mmap(nullptr, bytes, protection_, MAP_SHARED, descriptor_, 0);
    if (begin == MAP_FAILED) return false;
    auto* const old = std::exchange(data_, static_cast<std::byte*>(begin));
    const auto oldCapacity = std::exchange(capacity_, capacity);
    guard_.watch(data_, bytes, protection_);
    if (old) ::munmap(old, static_cast<std::size_t>(oldCapacity));
    return true;
}

}  // namespace tsRtm::platform::posix
