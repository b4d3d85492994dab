#pragma once
// An open file of this ground.
#include <vector>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/platform/posix/PosixFileWindow.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"
#include "tsRtm/platform/posix/PosixServed.hpp"

namespace tsRtm::platform::posix {

class PosixFile final : public File {
 public:
    // The descriptor may be able to do more than the opening asked for: only a writable opening writes and
    // locks.
    PosixFile(Handle handle, Text name, bool writable) noexcept;

    Result<std::size_t> readAt(uint64 offset, std::span<std::byte> into) override;
    [[nodiscard]] SystemError writeAt(uint64 offset, std::span<const std::byte> bytes) override;
    Result<uint64> size() override;
    [[nodiscard]] SystemError resize(uint64 size) override;
    [[nodiscard]] SystemError flush() override;
    FileWindow* window() override;
    const Text& name() const noexcept override { return name_; }
    Result<bool> inPlace() override;

    [[nodiscard]] SystemError tryLock(ByteRange range) override;
    [[nodiscard]] SystemError unlock(ByteRange range) override;
    Result<bool> isLocked(ByteRange range) override;

    [[nodiscard]] SystemError share(Sharing mode) override;
    [[nodiscard]] SystemError show(uint64 number) override;
    Result<uint64> greatestShown(uint64 floor) override;
    Result<bool> stands() override { return served_.stands(); }

    bool remote() const noexcept override { return served_.remote(); }
    [[nodiscard]] SystemError refresh(RefreshAs standing) override { return served_.refresh(standing); }
    Result<std::size_t> readServed(uint64 offset, std::span<std::byte> into) override;

 private:
    bool holds(ByteRange range) const noexcept;
    void forget(ByteRange range);

    Handle handle_;
    Text name_;
    bool writable_;
    bool dirty_ = false;  // written since the last flush
    bool windowTried_ = false;
    std::unique_ptr<PosixFileWindow> window_;
    PosixServed served_;
    uint64 shown_ = 0;
    std::vector<ByteRange> held_;  // the kernel would grant a second lock on them: we refuse it
};

}  // namespace tsRtm::platform::posix
