#pragma once
// The bytes of a file of MemoryFiles.
#include <memory>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::test {

// A run of bytes that grows and shrinks. From the first window on they lie in a file of the system's memory
// that has no name, and the windows are those of the ground: what a test sees through them is what an
// application sees through the window of a local file, also when the content is cut short below it.
class MemoryContent {
 public:
    uint64 size() const { return size_; }
    // Fewer than asked for at the end, 0 behind it.
    std::size_t read(uint64 offset, std::span<std::byte> into) const;
    // The part of them that lies below size().
    void write(uint64 offset, std::span<const std::byte> bytes);
    void resize(uint64 size);
    void assign(BytesView bytes);
    Bytes all() const;
    // A new window; nullptr where the system has no room for one.
    std::unique_ptr<platform::FileWindow> window(bool writable);

 private:
    bool map();

    uint64 size_ = 0;
    Bytes plain_;                     // until the first window
    platform::posix::Handle mapped_;  // from then on
};

}  // namespace tsRtm::test
