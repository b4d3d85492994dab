#pragma once
// One open file: positional reads and writes, byte-range locks, and a window in memory where the ground has
// one.
#include <cstddef>
#include <memory>
#include <span>

#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// Bytes offset .. offset + length - 1, 0-based; may lie beyond the end of the file.
struct ByteRange {
    uint64 offset = 0;
    uint64 length = 1;
};

// Exclusive locks on byte ranges, between processes and between two openings of one file in one process. A
// lock belongs to the opening that took it and dies with it. Ranges from 2^62 on are the ground's own.
class RangeLocks {
 public:
    virtual ~RangeLocks() = default;
    // Does not wait. SystemError::lockViolation where another opening holds a byte of it (and for a range
    // this opening holds already: a second lock is refused); accessDenied on an opening that may not write.
    [[nodiscard]] virtual SystemError tryLock(ByteRange range) = 0;
    // Succeeds on a range that is not locked, too.
    [[nodiscard]] virtual SystemError unlock(ByteRange range) = 0;
    // Whether another opening holds a byte of it; this opening's own locks do not show.
    virtual Result<bool> isLocked(ByteRange range) = 0;
};

// A window on a local file in memory, coherent between all processes that map it and with readAt and writeAt.
//
// Only bytes below the file's present size may be touched; the window reaches beyond them so that a growing
// file needs no new window. When somebody cuts the file short under the window, what is read there comes as
// zeros, what is written there is lost, and damaged() turns true for good: the caller answers it as a failed
// read or write.
class FileWindow {
 public:
    virtual ~FileWindow() = default;
    // The first byte of the file. Changes only in reserve().
    virtual std::byte* data() noexcept = 0;
    // Bytes that data() spans.
    virtual uint64 capacity() const noexcept = 0;
    // Room for a file of this size; may move data(). False where there is no room: use readAt and writeAt.
    [[nodiscard]] virtual bool reserve(uint64 size) = 0;
    virtual bool damaged() const noexcept = 0;
};

// An open file. Closes at its end of life; its locks end with it. Not thread-safe.
class File : public RangeLocks {
 public:
    // Bytes read: fewer than asked for at the end of the file, 0 behind it.
    virtual Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) = 0;
    // All bytes or an error; a file that is too short grows, the gap reads as zeros.
    [[nodiscard]] virtual SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) = 0;
    virtual Result<uint64> size() = 0;
    [[nodiscard]] virtual SystemError resize(uint64 size) = 0;
    // Hands everything to the device.
    [[nodiscard]] virtual SystemError flush() = 0;
    // The window of this opening, writable where the opening is; nullptr where the ground cannot promise
    // coherence (a network file, a double). The file owns it; the first call makes it.
    virtual FileWindow* window() = 0;
    // Full name of the file as it was opened, found without regard to case where need be.
    virtual const Text& name() const noexcept = 0;
};

}  // namespace tsRtm::platform
