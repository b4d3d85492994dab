#include "tsRtm/platform/posix/PosixInstallation.hpp"

#include <dlfcn.h>
#include <link.h>
#include <stdlib.h>

#include <memory>

#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"

namespace tsRtm::platform::posix {
namespace {

constexpr const char* kRuntimeFolder = "/Tessarol";
constexpr const char* kProgram = "/proc/self/exe";

struct Freeing {
    void operator()(char* text) const noexcept { ::free(text); }
};

// Without links; empty where there is no such file.
std::string realPath(const std::string& path) {
    const std::unique_ptr<char, Freeing> resolved(::realpath(path.c_str(), nullptr));
    return resolved ? resolved.get() : std::string();
}

// The shared library or the program that holds this code.
std::string codeFile() {
    static const char anchor = 0;
    ::Dl_info info{};
    void* extra = nullptr;
    if (::dladdr1(&anchor, &info, &extra, RTLD_DL_LINKMAP) == 0 || !extra) return realPath(kProgram);
    const auto* map = static_cast<const ::link_map*>(extra);
    // The program itself bears no name there.
    return realPath(map->l_name && *map->l_name ? map->l_name : kProgram);
}

}  // namespace

std::string installationFolderFrom(const std::string& codeFolder) {
    if (!codeFolder.empty())
        for (const auto& folder : {codeFolder, realPath(codeFolder + "/" TSRTM_LIBDIR_FROM_BINDIR)})
            if (!folder.empty() && isFolder(folder + kRuntimeFolder)) return folder;
    return isFolder(std::string(TSRTM_LIBDIR) + kRuntimeFolder) ? TSRTM_LIBDIR : "/usr/lib";
}

const std::string& installationFolder() {
    static const std::string folder = [] {
        const auto file = codeFile();
        return installationFolderFrom(file.empty() ? file : folderOf(file));
    }();
    return folder;
}

}  // namespace tsRtm::platform::posix
