#pragma once
// The window of a local file: a shared mapping.
#include "tsRtm/platform/File.hpp"
#include "tsRtm/platform/posix/PosixBusGuard.hpp"

namespace tsRtm::platform::posix {

// Address space is taken well beyond the end of the file, since the kernel makes pages usable as the file
// grows: growth seldom asks for reserve(), and no access asks for a system call.
class PosixFileWindow final : public FileWindow {
 public:
    // nullptr where the file is not local, or no address space or guard is to be had. The descriptor stays
    // the caller's and outlives the window.
    static std::unique_ptr<PosixFileWindow> open(int descriptor, bool writable);
    ~PosixFileWindow() override;
    PosixFileWindow(const PosixFileWindow&) = delete;
    PosixFileWindow& operator=(const PosixFileWindow&) = delete;

    const std::byte* data() const noexcept override { return data_; }
    uint64 capacity() const noexcept override { return capacity_; }
    [[nodiscard]] bool reserve(uint64 size) override;
    void store(uint64 offset, std::span<const std::byte> bytes) override;
    bool damaged() const noexcept override { return guard_.damaged(); }
    [[nodiscard]] bool renew() noexcept override;

 private:
    PosixFileWindow(int descriptor, bool writable) noexcept;
    bool map(uint64 capacity) noexcept;

    int descriptor_;
    int protection_;
    std::byte* data_ = nullptr;
    uint64 capacity_ = 0;
    BusGuard guard_;
};

}  // namespace tsRtm::platform::posix
