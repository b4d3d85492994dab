#pragma once
// The files of this machine.
#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::platform::posix {

// Only regular files open; a folder, a pipe or a device gives accessDenied. A hidden file is one whose name
// begins with a dot, a read-only file one that nobody may write.
class PosixFileSystem final : public FileSystem {
 public:
    Result<std::unique_ptr<File>> open(TextView name, OpenRequest request) override;
    Result<FileStatus> status(TextView name) override;
    [[nodiscard]] SystemError remove(TextView name) override;
    [[nodiscard]] SystemError rename(TextView from, TextView to, bool replace) override;
    [[nodiscard]] SystemError exchange(TextView from, TextView to) override;
    [[nodiscard]] SystemError copyAccess(TextView from, TextView to) override;
    [[nodiscard]] SystemError makeFolder(TextView name) override;
    [[nodiscard]] SystemError flushFolder(TextView name) override;
    // Hidden files open like all others.
    [[nodiscard]] SystemError unhide(TextView) override { return SystemError::notSupported; }
    Result<std::vector<FolderEntry>> list(TextView folder) override;
    DriveKind driveKind(TextView name) override;
    // On a volume without a basket the file is deleted, as desktops do with network files.
    [[nodiscard]] SystemError recycle(TextView name) override;
};

}  // namespace tsRtm::platform::posix
