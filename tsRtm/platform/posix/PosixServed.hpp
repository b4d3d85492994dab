#pragma once
// An open file of a remote volume, as the server has it.
#include <optional>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"
#include "tsRtm/platform/posix/PosixVolume.hpp"

namespace tsRtm::platform::posix {

// Belongs to an opening, whose descriptor outlives it. On a local file it does nothing. Not thread-safe.
class PosixServed {
 public:
    PosixServed(int descriptor, bool writable) noexcept : descriptor_(descriptor), writable_(writable) {}

    bool remote() const noexcept;
    // What ServedFile promises.
    [[nodiscard]] SystemError refresh(RefreshAs standing);
    Result<std::size_t> read(uint64 offset, std::span<std::byte> into);

    // Before the first lock of the opening: a byte of its own, so that stands() can tell. As setLock.
    [[nodiscard]] SystemError leaveTrace();
    Result<bool> stands();

 private:
    // Another opening of the same file, unknown to any lock of this one: it asks what this one holds and
    // reads past the page cache. -1 where the system gives none.
    int beside();
    bool passByChange();
    [[nodiscard]] SystemError passByTouch(RefreshAs standing);

    int descriptor_;
    bool writable_;
    mutable std::optional<ServedBy> server_;  // once asked
    Handle beside_;
    bool besideReadsPast_ = false;  // the page cache
    uint64 trace_ = 0;
    bool lost_ = false;
};

}  // namespace tsRtm::platform::posix
