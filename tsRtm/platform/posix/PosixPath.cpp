#include "tsRtm/platform/posix/PosixPath.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "tsRtm/platform/posix/PosixErrors.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"

namespace tsRtm::platform::posix {
namespace {

bool entryExists(const std::string& path) noexcept {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

// The entry of a folder that equals a component but for case; empty where there is none.
std::string entryIgnoringCase(const std::string& folder, std::string_view component) {
    const FolderHandle entries(::opendir(folder.empty() ? "." : folder.c_str()));
    if (!entries) return {};
    const Text wanted = fromUtf8(component);
    std::string best;
    while (const dirent* entry = ::readdir(entries.get())) {
        const std::string_view name = entry->d_name;
        if ((best.empty() || name < best) && equalIgnoringCase(fromUtf8(name), wanted)) best = name;
    }
    return best;
}

// Walks a plain path component by component, from the root or from here.
class Walk {
 public:
    explicit Walk(std::string_view path) : rest_(path) {
        if (rest_.front() != '/') return;
        found_.path = "/";
        rest_.remove_prefix(1);
    }

    Result<FoundPath> run() {
        found_.exists = true;
        while (!rest_.empty()) {
            if (!found_.exists) return SystemError::pathNotFound;
            if (const auto error = step(); failed(error)) return error;
        }
        return found_;
    }

 private:
    SystemError step() {
        const auto component = rest_.substr(0, rest_.find('/'));
        rest_.remove_prefix(std::min(component.size() + 1, rest_.size()));
        const std::string base = found_.path;
        found_.path = joined(base, component);
        if (entryExists(found_.path)) return SystemError::none;
        if (errno != ENOENT) return lastError();
        const std::string entry = entryIgnoringCase(base, component);
        found_.exists = !entry.empty();
        if (found_.exists) found_.path = joined(base, entry);
        return SystemError::none;
    }

    static std::string joined(const std::string& base, std::string_view component) {
        std::string path = base;
        if (!path.empty() && path.back() != '/') path += '/';
        return path.append(component);
    }

    std::string_view rest_;
    FoundPath found_;
};

}  // namespace

Result<FoundPath> findPath(TextView name) {
    if (name.empty() || name.find(u'\0') != TextView::npos) return SystemError::invalidName;
    const std::string path = plainPath(name);
    // Most names are spelled as they are on the disk: one question answers it.
    if (entryExists(path)) return FoundPath{path, true};
    return Walk(path).run();
}

std::string absolutePath(const std::string& path) {
    if (!path.empty() && path.front() == '/') return path;
    const std::unique_ptr<char, decltype(&::free)> here(::getcwd(nullptr, 0), &::free);
    if (!here) return path;
    std::string base(here.get());
    if (path.empty() || path == ".") return base;
    if (base.back() != '/') base += '/';
    return base + path;
}

std::string folderOf(const std::string& path) {
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string lastComponent(const std::string& path) { return path.substr(path.rfind('/') + 1); }

std::string plainPath(TextView name) {
    std::string path;
    for (const char given : toUtf8(name)) {
        const char c = given == '\\' ? '/' : given;
        if (c != '/' || path.empty() || path.back() != '/') path += c;
    }
    if (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

}  // namespace tsRtm::platform::posix
