#include "tsRtm/platform/posix/PosixFileSystem.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>

#include "tsRtm/platform/posix/PosixErrors.hpp"
#include "tsRtm/platform/posix/PosixFile.hpp"
#include "tsRtm/platform/posix/PosixOpening.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"
#include "tsRtm/platform/posix/PosixReplacing.hpp"
#include "tsRtm/platform/posix/PosixTime.hpp"
#include "tsRtm/platform/posix/PosixTrash.hpp"
#include "tsRtm/platform/posix/PosixVolume.hpp"

namespace tsRtm::platform::posix {
namespace {

FileStatus statusOf(const struct stat& status, std::string_view name) {
    FileStatus result;
    result.folder = S_ISDIR(status.st_mode);
    result.hidden = name.size() > 1 && name.front() == '.' && name != "..";
    result.readOnly = readOnlyMode(status.st_mode);
    result.size = result.folder ? 0 : static_cast<uint64>(status.st_size);
    result.changed = localDate(status.st_mtime);
    return result;
}

// The path of a name that must be there.
Result<std::string> existingPath(TextView name) {
    auto found = findPath(name);
    if (!found) return found.error();
    if (!found->exists) return SystemError::fileNotFound;
    return std::move(found->path);
}

// What stands against taking a file away from its name: it is no file, read-only, or open.
Result<Handle> holdRemovable(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return lastError();
    if (S_ISDIR(status.st_mode)) return SystemError::accessDenied;
    if (S_ISREG(status.st_mode) && readOnlyMode(status.st_mode)) return SystemError::accessDenied;
    return holdForRemoval(path);
}

SystemError renameOnto(const std::string& from, const std::string& to) noexcept {
    return std::rename(from.c_str(), to.c_str()) == 0 ? SystemError::none : lastError();
}

SystemError renameToNew(const std::string& from, const std::string& to) noexcept {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return SystemError::none;
    if (errno != EINVAL && errno != ENOSYS) return lastError();
    // Some file systems lack the flag: there a second name, which replaces nothing either, comes first.
    if (::link(from.c_str(), to.c_str()) == 0)
        return ::unlink(from.c_str()) == 0 ? SystemError::none : lastError();
    // Folders have no second name, nor have files everywhere; the name was free a moment ago.
    return errno == EEXIST ? lastError() : renameOnto(from, to);
}

}  // namespace

Result<std::unique_ptr<File>> PosixFileSystem::open(TextView name, OpenRequest request) {
    const auto found = findPath(name);
    if (!found) return found.error();
    if (!found->exists && request.disposition == Disposition::openExisting) return SystemError::fileNotFound;
    auto handle = openShared(found->path, request);
    if (!handle) return handle.error();
    const bool writable = request.access == Access::readWrite;
    return std::unique_ptr<File>(
        std::make_unique<PosixFile>(std::move(*handle), fromUtf8(absolutePath(found->path)), writable));
}

Result<FileStatus> PosixFileSystem::status(TextView name) {
    const auto path = existingPath(name);
    if (!path) return path.error();
    struct stat status {};
    if (::stat(path->c_str(), &status) != 0) return lastError();
    return statusOf(status, lastComponent(*path));
}

SystemError PosixFileSystem::remove(TextView name) {
    const auto path = existingPath(name);
    if (!path) return path.error();
    const auto hold = holdRemovable(*path);
    if (!hold) return hold.error();
    return ::unlink(path->c_str()) == 0 ? SystemError::none : lastError();
}

SystemError PosixFileSystem::rename(TextView from, TextView to, bool replace) {
    const auto source = existingPath(from);
    if (!source) return source.error();
    auto target = findPath(to);
    if (!target) return target.error();
    const auto hold = holdForRemoval(*source);
    if (!hold) return hold.error();
    const bool itself = target->exists && target->path == *source;
    if (itself) {
        // The name in another case is a new name for the same file.
        const auto base = folderOf(target->path);
        return renameOnto(*source, (base == "/" ? base : base + '/') + lastComponent(plainPath(to)));
    }
    if (!target->exists) return renameToNew(*source, target->path);
    if (!replace) return SystemError::alreadyExists;
    const auto holdTarget = holdRemovable(target->path);
    if (!holdTarget) return holdTarget.error();
    return renameOnto(*source, target->path);
}

SystemError PosixFileSystem::exchange(TextView from, TextView to) {
    const auto source = existingPath(from);
    if (!source) return source.error();
    const auto target = existingPath(to);
    if (!target) return target.error();
    if (*source == *target) return SystemError::none;
    const auto hold = holdRemovable(*source);
    if (!hold) return hold.error();
    const auto holdTarget = holdRemovable(*target);
    if (!holdTarget) return holdTarget.error();
    return exchangeNames(*source, *target);
}

SystemError PosixFileSystem::copyAccess(TextView from, TextView to) {
    const auto source = existingPath(from);
    if (!source) return source.error();
    const auto target = existingPath(to);
    if (!target) return target.error();
    return copyRights(*source, *target);
}

SystemError PosixFileSystem::makeFolder(TextView name) {
    const auto found = findPath(name);
    if (!found) return found.error();
    if (::mkdir(found->path.c_str(), 0777) == 0) return SystemError::none;
    if (errno != EEXIST) return lastError();
    struct stat status {};
    const bool folder = ::stat(found->path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return folder ? SystemError::none : SystemError::alreadyExists;
}

SystemError PosixFileSystem::flushFolder(TextView name) {
    const auto found = findPath(name);
    if (!found) return found.error();
    const Handle folder(::open(found->path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return lastError();
    // Some file systems keep their names on the device at once, and refuse to be asked.
    return ::fsync(folder.get()) == 0 || errno == EINVAL ? SystemError::none : lastError();
}

Result<std::vector<FolderEntry>> PosixFileSystem::list(TextView folder) {
    const auto path = existingPath(folder);
    if (!path) return path.error() == SystemError::fileNotFound ? SystemError::pathNotFound : path.error();
    const FolderHandle entries(::opendir(path->c_str()));
    if (!entries) return lastError();
    std::vector<FolderEntry> result;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(entries.get());
        if (!entry) break;
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        struct stat status {};
        // An entry may vanish while we look; a link that leads nowhere shows itself.
        if (::fstatat(::dirfd(entries.get()), entry->d_name, &status, 0) != 0 &&
            ::fstatat(::dirfd(entries.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            continue;
        result.push_back({fromUtf8(name), statusOf(status, name)});
    }
    if (errno != 0) return lastError();
    return result;
}

DriveKind PosixFileSystem::driveKind(TextView name) {
    const auto found = findPath(name);
    if (!found) return DriveKind::unknown;
    return volumeOf(found->exists ? found->path : folderOf(found->path)).kind;
}

SystemError PosixFileSystem::recycle(TextView name) {
    const auto path = existingPath(name);
    if (!path) return path.error();
    const auto hold = holdRemovable(*path);
    if (!hold) return hold.error();
    const auto error = moveToTrash(*path);
    if (error != SystemError::notSupported) return error;
    return ::unlink(path->c_str()) == 0 ? SystemError::none : lastError();
}

}  // namespace tsRtm::platform::posix
