#pragma once
// A file system whose n-th call fails.
//
//     FailingFiles files(memory);
//     work(files);                                 // once through: files.calls() says how many calls there
//     are for (int n = 1; n <= calls; ++n) { files.failAt(n, SystemError::deviceError); work(files); check();
//     }
#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::test {

// Hands all on to another file system, which outlives it, and counts: open, status, remove, rename,
// exchange, copyAccess, makeFolder, flushFolder, unhide, list and recycle, and of every open file readAt,
// writeAt, size, resize, flush, tryLock, unlock, isLocked, share, show, greatestShown and, on a remote drive,
// refresh. A failing call is not handed on. driveKind, remote, inPlace and name do not count. Of a window
// count reserve and store; one that failed to store is damaged.
class FailingFiles final : public platform::FileSystem {
 public:
    enum class Times { once, fromThenOn };

    explicit FailingFiles(platform::FileSystem& inner) : inner_(inner) {}

    // The n-th call from now on fails, 1-based; the count starts anew.
    void failAt(int64 n, platform::SystemError error, Times times = Times::once);
    // Nothing fails; the count starts anew.
    void disarm() { failAt(0, platform::SystemError::none); }
    int64 calls() const { return calls_; }
    // How many calls have failed since it was armed.
    int64 failures() const { return failures_; }

    platform::Result<std::unique_ptr<platform::File>> open(TextView name,
                                                           platform::OpenRequest request) override;
    platform::Result<platform::FileStatus> status(TextView name) override;
    [[nodiscard]] platform::SystemError remove(TextView name) override;
    [[nodiscard]] platform::SystemError rename(TextView from, TextView to, bool replace) override;
    [[nodiscard]] platform::SystemError exchange(TextView from, TextView to) override;
    [[nodiscard]] platform::SystemError copyAccess(TextView from, TextView to) override;
    [[nodiscard]] platform::SystemError makeFolder(TextView name) override;
    [[nodiscard]] platform::SystemError flushFolder(TextView name) override;
    [[nodiscard]] platform::SystemError unhide(TextView name) override;
    platform::Result<std::vector<platform::FolderEntry>> list(TextView folder) override;
    platform::DriveKind driveKind(TextView name) override { return inner_.driveKind(name); }
    [[nodiscard]] platform::SystemError recycle(TextView name) override;

 private:
    class Opening;
    class Window;

    // Counts one call; the error it is to give, or none.
    platform::SystemError next();

    platform::FileSystem& inner_;
    int64 calls_ = 0;
    int64 failures_ = 0;
    int64 at_ = 0;
    Times times_ = Times::once;
    platform::SystemError error_ = platform::SystemError::none;
};

}  // namespace tsRtm::test
