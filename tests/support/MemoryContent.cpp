#include "tests/support/MemoryContent.hpp"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "tsRtm/platform/posix/PosixFileWindow.hpp"

namespace tsRtm::test {
namespace {

// Memory does not fail but by a fault of the test.
void mustBe(bool done) {
    if (!done) throw std::runtime_error("no memory for the content of a file");
}

}  // namespace

std::size_t MemoryContent::read(uint64 offset, std::span<std::byte> into) const {
    if (offset >= size_ || into.empty()) return 0;
    const auto count = std::min<std::size_t>(into.size(), size_ - offset);
    if (mapped_)
        mustBe(::pread(mapped_.get(), into.data(), count, static_cast<off_t>(offset)) ==
               static_cast<ssize_t>(count));
    else
        std::memcpy(into.data(), plain_.data() + offset, count);
    return count;
}

void MemoryContent::write(uint64 offset, std::span<const std::byte> bytes) {
    if (offset >= size_ || bytes.empty()) return;
    const auto count = std::min<std::size_t>(bytes.size(), size_ - offset);
    if (mapped_)
        mustBe(::pwrite(mapped_.get(), bytes.data(), count, static_cast<off_t>(offset)) ==
               static_cast<ssize_t>(count));
    else
        std::memcpy(plain_.data() + offset, bytes.data(), count);
}

void MemoryContent::resize(uint64 size) {
    if (mapped_)
        mustBe(::ftruncate(mapped_.get(), static_cast<off_t>(size)) == 0);
    else
        plain_.resize(size);
    size_ = size;
}

void MemoryContent::assign(BytesView bytes) {
    resize(bytes.size());
    write(0, std::as_bytes(std::span(bytes)));
}

Bytes MemoryContent::all() const {
    Bytes bytes(size_, '\0');
    read(0, std::as_writable_bytes(std::span(bytes)));
    return bytes;
}

bool MemoryContent::map() {
    if (mapped_) return true;
    platform::posix::Handle file(::memfd_create("content", MFD_CLOEXEC));
    if (!file) return false;
    const Bytes bytes = std::exchange(plain_, {});
    mapped_ = std::move(file);
    assign(bytes);
    return true;
}

std::unique_ptr<platform::FileWindow> MemoryContent::window(bool writable) {
    if (!map()) return nullptr;
    return platform::posix::PosixFileWindow::open(mapped_.get(), writable);
}

}  // namespace tsRtm::test
