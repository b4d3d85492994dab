#include "tsRtm/platform/posix/PosixTrash.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string_view>

#include "tsRtm/platform/posix/PosixErrors.hpp"
#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"

namespace tsRtm::platform::posix {
namespace {

struct Basket {
    std::string folder;   // holds "files" and "info"
    std::string topless;  // what the recorded path leaves out: the top of the volume
};

std::optional<dev_t> deviceOf(const std::string& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return std::nullopt;
    return status.st_dev;
}

// The highest folder above a path that lies on the same device.
std::string topOfVolume(const std::string& path) {
    const auto device = deviceOf(folderOf(path));
    auto top = folderOf(path);
    while (top != "/" && deviceOf(folderOf(top)) == device) top = folderOf(top);
    return top;
}

// A basket that all users share must be a true folder with the sticky bit.
bool sharedBasketAt(const std::string& folder) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           (status.st_mode & S_ISVTX) != 0;
}

bool usable(const Basket& basket) {
    return makeFolders(basket.folder + "/files") && makeFolders(basket.folder + "/info");
}

std::optional<Basket> basketFor(const std::string& path) {
    const Basket home{dataFolder() + "/Trash", ""};
    if (usable(home) && deviceOf(home.folder) == deviceOf(folderOf(path))) return home;
    const auto top = topOfVolume(path);
    const auto prefix = top == "/" ? top : top + '/';
    const auto user = std::to_string(::getuid());
    if (sharedBasketAt(prefix + ".Trash"))
        if (const Basket shared{prefix + ".Trash/" + user, prefix}; usable(shared)) return shared;
    if (const Basket own{prefix + ".Trash-" + user, prefix}; usable(own)) return own;
    return std::nullopt;
}

// Percent signs and digits for all that a URI may not hold; "/" stays.
std::string uriEscaped(std::string_view path) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= '0' && byte <= '9') ||
                           std::string_view("/-_.~").find(c) != std::string_view::npos;
        if (plain)
            out += c;
        else
            (out += '%').append({kHex[byte >> 4], kHex[byte & 15]});
    }
    return out;
}

std::string infoText(const std::string& path, const Basket& basket) {
    const auto now = std::time(nullptr);
    struct tm local {};
    ::localtime_r(&now, &local);
    char date[32];
    std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + uriEscaped(std::string_view(path).substr(basket.topless.size())) +
           "\nDeletionDate=" + date + "\n";
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto put = ::write(descriptor, text.data(), text.size());
        if (put < 0 && errno == EINTR) continue;
        if (put <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

}  // namespace

SystemError moveToTrash(const std::string& name) {
    const auto path = absolutePath(name);
    const auto basket = basketFor(path);
    if (!basket) return SystemError::notSupported;
    const auto text = infoText(path, *basket);
    // The info file is made first and never over another: it is what reserves the name.
    for (int number = 1; number < 100000; ++number) {
        const auto entry =
            number == 1 ? lastComponent(path) : lastComponent(path) + '.' + std::to_string(number);
        const auto info = basket->folder + "/info/" + entry + ".trashinfo";
        const auto target = basket->folder + "/files/" + entry;
        const Handle file(::open(info.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!file && errno == EEXIST) continue;
        if (!file) return lastError();
        auto error = deviceOf(target) ? SystemError::alreadyExists : SystemError::none;
        const bool free = !failed(error);
        if (free && writeAll(file.get(), text) && std::rename(path.c_str(), target.c_str()) == 0)
            return error;
        if (free) error = lastError();
        ::unlink(info.c_str());
        if (error != SystemError::alreadyExists) return error;
    }
    return SystemError::alreadyExists;
}

}  // namespace tsRtm::platform::posix
