#include "tsRtm/platform/posix/PosixSystemInfo.hpp"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixInstallation.hpp"
#include "tsRtm/platform/posix/PosixOpening.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"
#include "tsRtm/platform/posix/PosixVolume.hpp"

namespace tsRtm::platform::posix {
namespace {

// Bits of an access mask, by what they ask of a folder or file.
constexpr uint32 kRead = 0x80000009;     // read data or list, read extended attributes, generic read
constexpr uint32 kWrite = 0x40000116;    // write data, append, write attributes, generic write
constexpr uint32 kExecute = 0x20000020;  // execute or traverse
constexpr uint32 kDeleteChild = 0x00000040;
constexpr uint32 kDelete = 0x00010000;
constexpr uint32 kAll = 0x10000000;

std::string machineName() {
    struct utsname system {};
    return ::uname(&system) == 0 ? system.machine : std::string();
}

std::string pathOf(FolderId id) {
    switch (id) {
        case FolderId::documents:
            return documentsFolder();
        case FolderId::applicationData:
            return configFolder();
        case FolderId::commonApplicationData:
            return "/var/lib";
        case FolderId::programFiles:
            return "/opt";
        case FolderId::commonProgramFiles:
            return installationFolder();
    }
    return {};
}

// What faccessat has to grant for a mask.
int accessMode(uint32 mask, bool folder) noexcept {
    int mode = F_OK;
    if ((mask & (kRead | kAll)) != 0) mode |= R_OK;
    if ((mask & (kWrite | kAll)) != 0) mode |= folder ? W_OK | X_OK : W_OK;
    if ((mask & kDeleteChild) != 0) mode |= W_OK | X_OK;
    if ((mask & kExecute) != 0) mode |= X_OK;
    return mode;
}

}  // namespace

OsVersion PosixSystemInfo::osVersion() {
    OsVersion version;
    struct utsname system {};
    if (::uname(&system) == 0) version.name = fromUtf8(std::string(system.sysname) + ' ' + system.release);
    return version;
}

Processor PosixSystemInfo::processor() {
    const auto machine = machineName();
    if (machine == "x86_64") return {9, 8664, true};
    if (machine == "aarch64") return {12, 0, true};
    if (machine.size() == 4 && machine.front() == 'i' && machine.substr(2) == "86") return {0, 586, true};
    return {0xFFFF, 0, true};  // unknown
}

bool PosixSystemInfo::is64Bit() {
    // The system counts, not the process: a 32-bit program may run on a 64-bit kernel.
    return sizeof(void*) == 8 || machineName().find("64") != std::string::npos;
}

bool PosixSystemInfo::isUserAdmin() { return ::geteuid() == 0; }

// What the servers of remote logins and remote desktops leave in the environment.
bool PosixSystemInfo::isRemoteSession() {
    for (const char* name : {"SSH_CONNECTION", "XRDP_SESSION"})
        if (const char* value = std::getenv(name); value && *value) return true;
    return false;
}

int32 PosixSystemInfo::elevationType() { return isUserAdmin() ? 2 : 1; }

Text PosixSystemInfo::hostPath() {
    std::vector<char> buffer(4096);
    const auto length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    return length > 0 ? fromUtf8({buffer.data(), static_cast<std::size_t>(length)}) : Text();
}

VolumeInfo PosixSystemInfo::volumeInfo(TextView root) {
    const auto found = findPath(root.empty() ? TextView(u".") : root);
    if (!found || !found->exists) return {};
    const auto volume = volumeOf(found->path);
    return {volume.fileSystem, volume.maxComponent};
}

Text PosixSystemInfo::folder(FolderId id, bool create) {
    const auto path = pathOf(id);
    const bool there = create ? makeFolders(path) : isFolder(path);
    return there ? fromUtf8(path) : Text();
}

Text PosixSystemInfo::tempFolder() { return fromUtf8(tempFolderPath()); }

bool PosixSystemInfo::checkAccess(TextView path, int32 mask) {
    const auto found = findPath(path);
    struct stat status {};
    if (!found || !found->exists || ::stat(found->path.c_str(), &status) != 0) return false;
    const bool folder = S_ISDIR(status.st_mode);
    const auto bits = static_cast<uint32>(mask);
    const int mode = accessMode(bits, folder);
    // An administrator may write everything, but not a file marked as read-only.
    if (!folder && (mode & W_OK) != 0 && readOnlyMode(status.st_mode)) return false;
    if ((bits & kDelete) != 0 && !allowed(folderOf(absolutePath(found->path)), W_OK | X_OK)) return false;
    return allowed(found->path, mode);
}

Text PosixSystemInfo::userName() {
    std::vector<char> buffer(16384);
    struct passwd entry {};
    struct passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found)
        return fromUtf8(found->pw_name);
    const char* user = std::getenv("USER");
    return user ? fromUtf8(user) : Text();
}

}  // namespace tsRtm::platform::posix
