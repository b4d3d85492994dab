#pragma once
// Files by name.
#include <memory>
#include <vector>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/types/Date.hpp"

namespace tsRtm::platform {

enum class Access { read, readWrite };
enum class Disposition { openExisting, openOrCreate, createEmpty };

struct OpenRequest {
    Access access = Access::read;
    Sharing sharing = Sharing::all;
    Disposition disposition = Disposition::openExisting;
};

struct FileStatus {
    bool folder = false;
    bool hidden = false;
    bool readOnly = false;
    uint64 size = 0;  // bytes
    Date changed;     // local time, whole seconds
};

struct FolderEntry {
    Text name;  // without the path
    FileStatus status;
};

// Where a file lies, as far as the library asks: only a local file can be trusted to be coherent in memory.
enum class DriveKind { unknown, removable, fixed, remote, cdRom, ramDisk };

// The file system. Names: both "/" and "\" separate; a component that has no exact match is found without
// regard to case, since data come from systems that ignore it. New files get the name as given. Errors:
// fileNotFound, pathNotFound (the folder is missing), accessDenied, sharingViolation (another opening forbids
// it or is forbidden), diskFull, invalidName and so on. An open that fails for a sharing reason does not wait
// and leaves the file untouched.
class FileSystem {
 public:
    virtual ~FileSystem() = default;
    virtual Result<std::unique_ptr<File>> open(TextView name, OpenRequest request) = 0;
    virtual Result<FileStatus> status(TextView name) = 0;
    // Deletes one file; sharingViolation while it is open, accessDenied for a folder or a read-only file.
    [[nodiscard]] virtual SystemError remove(TextView name) = 0;
    // Renames; with `replace` an existing target is replaced in one step, else it gives alreadyExists.
    // sharingViolation while the file, or the target to be replaced, is open.
    [[nodiscard]] virtual SystemError rename(TextView from, TextView to, bool replace) = 0;
    // Puts `from` in the place of the file `to`, which is then found under the name `from`; at no moment is
    // `to` without a file. sharingViolation while one of them is open, accessDenied for a folder or a
    // read-only file, notSupported where the volume cannot do that.
    [[nodiscard]] virtual SystemError exchange(TextView /*from*/, TextView /*to*/) {
        return SystemError::notSupported;
    }
    // Gives the file `to` the rights of access of `from`, and its owner and group as far as this process may.
    // A ground whose files have none of these need not know how.
    [[nodiscard]] virtual SystemError copyAccess(TextView /*from*/, TextView /*to*/) {
        return SystemError::notSupported;
    }
    // Makes one folder; success where it is there already.
    [[nodiscard]] virtual SystemError makeFolder(TextView name) = 0;
    // All entries but "." and "..", in no promised order.
    virtual Result<std::vector<FolderEntry>> list(TextView folder) = 0;
    virtual DriveKind driveKind(TextView name) = 0;
    // Takes the hidden attribute off. A ground where hidden files open like all others need not know how.
    [[nodiscard]] virtual SystemError unhide(TextView) { return SystemError::notSupported; }
    // Into the user's waste-paper basket.
    [[nodiscard]] virtual SystemError recycle(TextView name) = 0;
};

}  // namespace tsRtm::platform
