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

// Files to be opened and looked at.
class FileOpening {
 public:
    virtual ~FileOpening() = default;
    virtual Result<std::unique_ptr<File>> open(TextView name, OpenRequest request) = 0;
    virtual Result<FileStatus> status(TextView name) = 0;
    // All entries but "." and "..", in no promised order.
    virtual Result<std::vector<FolderEntry>> list(TextView folder) = 0;
    virtual DriveKind driveKind(TextView name) = 0;
};

// What changes names, and folders.
class FileNames {
 public:
    virtual ~FileNames() = default;
    // Deletes one file; sharingViolation while it is open, accessDenied for a folder or a read-only file.
    [[nodiscard]] virtual SystemError remove(TextView name) = 0;
    // Renames; with `replace` an existing target is replaced in one step, else it gives alreadyExists.
    // sharingViolation while the file, or the target to be replaced, is open.
    [[nodiscard]] virtual SystemError rename(TextView from, TextView to, bool replace) = 0;
    // Puts `from` in the place of the file `to`, which is then found under the name `from`; at no moment is
    // `to` without a file. sharingViolation while one of them is open, accessDenied for a folder or a
    // read-only file, notSupported where the volume cannot do that.
    [[nodiscard]] virtual SystemError exchange(TextView from, TextView to) = 0;
    // Makes one folder; success where it is there already.
    [[nodiscard]] virtual SystemError makeFolder(TextView name) = 0;
    // Hands the names of a folder to the device: what was renamed or made in it outlives the machine.
    [[nodiscard]] virtual SystemError flushFolder(TextView name) = 0;
    // Into the user's waste-paper basket.
    [[nodiscard]] virtual SystemError recycle(TextView name) = 0;
};

// What files have beside their content. A ground that knows nothing of it answers notSupported.
class FileAttributes {
 public:
    virtual ~FileAttributes() = default;
    // Gives the file `to` the rights of access of `from`, and its owner and group as far as this process may.
    [[nodiscard]] virtual SystemError copyAccess(TextView from, TextView to) = 0;
    // Takes the hidden attribute off, where hidden files do not open like all others.
    [[nodiscard]] virtual SystemError unhide(TextView name) = 0;
};

// The file system. Names: both "/" and "\" separate; a component that has no exact match is found without
// regard to case, since data come from systems that ignore it. New files get the name as given. Errors:
// fileNotFound, pathNotFound (the folder is missing), accessDenied, sharingViolation (another opening forbids
// it or is forbidden), diskFull, invalidName and so on. An open that fails for a sharing reason does not wait
// and leaves the file untouched.
class FileSystem : public FileOpening, public FileNames, public FileAttributes {};

}  // namespace tsRtm::platform
