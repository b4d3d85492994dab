#include "tsRtm/platform/posix/PosixFolders.hpp"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <vector>

#include "tsRtm/platform/posix/PosixPath.hpp"

namespace tsRtm::platform::posix {
namespace {

std::string withoutEndSlash(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

// Empty where the variable is missing or names no absolute path: the rules want such a value ignored.
std::string folderVariable(const char* name) {
    const char* value = std::getenv(name);
    return value && *value == '/' ? withoutEndSlash(value) : std::string();
}

std::string homeOfUserDatabase() {
    std::vector<char> buffer(16384);
    struct passwd entry {};
    struct passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found) return "/";
    return found->pw_dir && *found->pw_dir ? withoutEndSlash(found->pw_dir) : "/";
}

std::string belowHome(const char* rest) {
    const auto home = homeFolder();
    return home == "/" ? home + rest : home + '/' + rest;
}

// The value of a line XDG_DOCUMENTS_DIR="$HOME/Dokumente"; empty for any other line.
std::string documentsOfLine(const std::string& line) {
    static const std::string kStart = "XDG_DOCUMENTS_DIR=\"";
    const auto end = line.rfind('"');
    if (line.compare(0, kStart.size(), kStart) != 0 || end < kStart.size()) return {};
    const auto value = line.substr(kStart.size(), end - kStart.size());
    static const std::string kHome = "$HOME/";
    if (value.compare(0, kHome.size(), kHome) == 0)
        return withoutEndSlash(belowHome(value.c_str() + kHome.size()));
    return value.empty() || value.front() != '/' ? std::string() : withoutEndSlash(value);
}

}  // namespace

std::string homeFolder() {
    auto home = folderVariable("HOME");
    return home.empty() ? homeOfUserDatabase() : home;
}

std::string configFolder() {
    auto folder = folderVariable("XDG_CONFIG_HOME");
    return folder.empty() ? belowHome(".config") : folder;
}

std::string machineConfigFolder() {
    static const std::string kUsual = "/etc/xdg";
    const char* value = std::getenv("XDG_CONFIG_DIRS");
    std::istringstream listed(value ? value : "");
    std::string last;
    for (std::string folder; std::getline(listed, folder, ':');) {
        if (folder.empty() || folder.front() != '/') continue;
        last = withoutEndSlash(folder);
        if (last == kUsual) return kUsual;
    }
    return last.empty() ? kUsual : last;
}

std::string dataFolder() {
    auto folder = folderVariable("XDG_DATA_HOME");
    return folder.empty() ? belowHome(".local/share") : folder;
}

std::string documentsFolder() {
    std::ifstream lines(configFolder() + "/user-dirs.dirs");
    for (std::string line; std::getline(lines, line);)
        if (auto folder = documentsOfLine(line); !folder.empty() && isFolder(folder)) return folder;
    return homeFolder();
}

std::string tempFolderPath() {
    auto folder = folderVariable("TMPDIR");
    return folder.empty() ? "/tmp" : folder;
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool allowed(const std::string& path, int rights) noexcept {
    return ::faccessat(AT_FDCWD, path.c_str(), rights, AT_EACCESS) == 0;
}

bool makeFolders(const std::string& path, unsigned mode) {
    if (path.empty()) return false;
    if (isFolder(path)) return true;
    if (const auto above = folderOf(path); above != path && !makeFolders(above, mode)) return false;
    if (::mkdir(path.c_str(), mode) != 0) return errno == EEXIST && isFolder(path);
    static_cast<void>(::chmod(path.c_str(), mode));  // a folder that stays closer is there all the same
    return true;
}

}  // namespace tsRtm::platform::posix
