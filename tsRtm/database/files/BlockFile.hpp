#pragma once
// An open file of the database as a run of bytes: read and written in place where the ground has a window on
// it, by positional calls where it has none.
#include <optional>
#include <span>

#include "tsRtm/platform/File.hpp"

namespace tsRtm {

// A failed call of the ground as the engine's failure: 61 no room, 70 locked or not allowed, 57 all else; the
// description names the file.
inline constexpr TextView kFileFailureSource = u"clsTSDB";
[[noreturn]] void raiseFileFailure(platform::SystemError error, TextView fileName);
inline void must(platform::SystemError error, TextView fileName) {
    if (platform::failed(error)) raiseFileFailure(error, fileName);
}
inline void must(platform::SystemError error, const platform::File& file) {
    if (platform::failed(error)) raiseFileFailure(error, file.name());
}

// How far names lead into a file that was lost: who names a place behind it is damaged, or was never made for
// it. Older programs reach no further.
constexpr uint64 kLongestLost = uint64{1} << 31;

// Not thread-safe. Does not own the file. Reading and writing raise as raiseFileFailure tells, also when
// somebody cut the file short under the window.
class BlockFile {
 public:
    BlockFile() = default;
    // `inPlace`: use the window where there is one.
    explicit BlockFile(platform::File& file, bool inPlace = true);

    explicit operator bool() const noexcept { return file_ != nullptr; }
    platform::File& file() const noexcept { return *file_; }
    bool mapped() const noexcept { return window_ != nullptr; }

    // The file's length as last seen, in bytes, and the same asked anew (one system call).
    uint64 knownSize() const noexcept { return size_; }
    uint64 refreshSize();

    // Bytes in place, nullptr where they are not to be had so: no window, or beyond the known size. Good
    // until the next call that may grow the file.
    const char* view(uint64 offset, std::size_t count) const noexcept {
        return base_ && offset + count <= viewable_ ? base_ + offset : nullptr;
    }
    // Copies; gives the number of bytes that were there.
    std::size_t read(uint64 offset, std::span<char> into) const;
    // One positional write; the file may grow.
    void write(uint64 offset, BytesView bytes);
    // In place where view() would reach, else as write(). A reader may see part of it, so only for what a
    // reader checks.
    void store(uint64 offset, BytesView bytes);
    void resize(uint64 size);
    // Raises when the window was cut short; after a run of view(). What is read next is the file as it is
    // now.
    void check() const {
        if (window_ && window_->damaged()) renewAndRaise();
    }
    // As check(), behind a pass over the whole file: gives back the memory that its views have filled.
    void passed() {
        check();
        if (window_ && !window_->renew()) useCalls();
    }

 private:
    void sizeIs(uint64 size);
    void useCalls() noexcept;
    [[noreturn]] void renewAndRaise() const;

    platform::File* file_ = nullptr;
    platform::FileWindow* window_ = nullptr;
    const char* base_ = nullptr;
    // What was last seen of the file: a read may find that it has shrunk.
    mutable uint64 size_ = 0;
    mutable uint64 viewable_ = 0;
};

}  // namespace tsRtm
