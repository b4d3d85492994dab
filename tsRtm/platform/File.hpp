#pragma once
// One open file: positional reads and writes, byte-range locks, what the openings of one file tell each
// other, how old the client's view of it may be, and a window in memory where the ground has one.
#include <cstddef>
#include <memory>
#include <span>

#include "tsRtm/platform/LockRanges.hpp"
#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform {

// Exclusive locks on byte ranges, between processes and between two openings of one file in one process. A
// lock belongs to the opening that took it and dies with it. lockRanges::lockable tells the ranges allowed.
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

enum class Sharing { all, none };  // none: locked against all other openings

// What the openings of one file, of whatever client and process, tell each other through locks alone: these
// are asked of the server, never of a cache. All of it dies with the opening.
class SharedOpening {
 public:
    virtual ~SharedOpening() = default;
    // Changes the share mode of this opening in place; its range locks and its sign stay. A refusal changes
    // nothing: sharingViolation while others stand against it, notSupported where the ground can only close
    // and open again. An opening that may not write gets Sharing::none as it would at its opening.
    [[nodiscard]] virtual SystemError share(Sharing mode) = 0;
    // Shows a number, 1 to lockRanges::kGreatestSign, to all other openings, in the place of the one shown
    // before: at no moment is neither shown. 0 takes it away. An error leaves the former one.
    [[nodiscard]] virtual SystemError show(uint64 number) = 0;
    // The greatest number above `floor` that another opening shows; 0 where there is none. Costs one
    // question, and one more for each number found.
    virtual Result<uint64> greatestShown(uint64 floor) = 0;
    // Whether the server still holds the range locks and the sign of this opening. A connection that was cut
    // takes them all, and a client that connects again goes on as if they were there: false then, for good.
    // True, without a system call, where the file is not remote or nothing was locked.
    virtual Result<bool> stands() = 0;
};

// From where a file's content is asked for anew.
enum class RefreshAs {
    reader,     // others may be writing at this moment
    soleWriter  // the caller holds a lock without which nobody writes to the file or changes its size
};

// How far an opening can be behind what others wrote.
class ServedFile {
 public:
    virtual ~ServedFile() = default;
    // Clients are known to keep files up to this size whole, and to answer from that what no call passes.
    static constexpr uint64 kKeptWhole = uint64{1} << 20;
    // A client's cache may stand between this opening and the file. Costs no system call but the first time.
    virtual bool remote() const noexcept = 0;
    // Has the client forget what it knows of the file: what others wrote and flushed before this call is seen
    // after it, size and content, until the client has it again and it grows old there. Changes times of the
    // file. A `soleWriter` helps clients that give away what they keep only when the file changes; for
    // everybody else that would not be safe. notSupported where an opening for reading cannot make the client
    // ask, for want of the right to write. Nothing is done, at no cost, where the file is not remote.
    [[nodiscard]] virtual SystemError refresh(RefreshAs standing) = 0;
    // As readAt, past all that the client keeps, for a file longer than kKeptWhole; a shorter one may come
    // from there. One question for the server a 4096 bytes.
    virtual Result<std::size_t> readServed(uint64 offset, std::span<std::byte> into) = 0;
};

// A window on a local file in memory, coherent between all processes that map it and with readAt and writeAt.
//
// Only bytes below the file's present size may be touched; the window reaches beyond them so that a growing
// file needs no new window. When somebody cuts the file short under the window, what is read there comes as
// zeros, what is stored there is lost, and damaged() turns true until renew(): the caller answers it as a
// failed read or write.
class FileWindow {
 public:
    virtual ~FileWindow() = default;
    // The first byte of the file, for reading. Changes only in reserve().
    virtual const std::byte* data() const noexcept = 0;
    // Bytes that data() spans.
    virtual uint64 capacity() const noexcept = 0;
    // Room for a file of this size; may move data(). False where there is no room: use readAt and writeAt.
    [[nodiscard]] virtual bool reserve(uint64 size) = 0;
    // Changes bytes in place: the one way to do so. Only through a window of a writable opening. Others may
    // see some of the bytes before the rest.
    virtual void store(uint64 offset, std::span<const std::byte> bytes) = 0;
    virtual bool damaged() const noexcept = 0;
    // Shows the file again as it is now, where data() is. False where that cannot be had: use readAt and
    // writeAt.
    [[nodiscard]] virtual bool renew() noexcept = 0;
};

// An open file. Closes at its end of life; its locks end with it. Not thread-safe.
class File : public RangeLocks, public SharedOpening, public ServedFile {
 public:
    // Bytes read: fewer than asked for at the end of the file, 0 behind it.
    virtual Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) = 0;
    // All bytes or an error; a file that is too short grows, the gap reads as zeros.
    [[nodiscard]] virtual SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) = 0;
    virtual Result<uint64> size() = 0;
    [[nodiscard]] virtual SystemError resize(uint64 size) = 0;
    // Hands to the device what was written through this opening.
    [[nodiscard]] virtual SystemError flush() = 0;
    // The window of this opening, writable where the opening is; nullptr where the ground cannot promise
    // coherence (a network file). The file owns it; the first call makes it.
    virtual FileWindow* window() = 0;
    // Full name of the file as it was opened, found without regard to case where need be.
    virtual const Text& name() const noexcept = 0;
    // Whether that name still leads to this file: false once it was deleted, renamed or replaced.
    virtual Result<bool> inPlace() = 0;
};

}  // namespace tsRtm::platform
