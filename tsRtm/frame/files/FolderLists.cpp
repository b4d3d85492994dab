#include "tsRtm/frame/files/FolderLists.hpp"

#include <algorithm>

#include "tsRtm/frame/files/Paths.hpp"
#include "tsRtm/frame/files/Wildcards.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {

namespace {

platform::FileSystem& fileSystem() { return rtmMain::system().files; }

Text folderToList(TextView path) {
    const Text folder = paths::folder(path);
    return folder.empty() ? Text(u".") : folder;
}

// Whether an entry of this kind has that name or wildcard name.
bool anyEntry(TextView path, bool folder) {
    if (path.empty()) return false;
    if (!wildcards::contains(path)) {
        const auto status = fileSystem().status(path);
        return status.ok() && status.value().folder == folder;
    }
    const auto entries = fileSystem().list(folderToList(path));
    if (!entries.ok()) return false;
    const Text pattern = paths::last(path);
    return std::any_of(
        entries.value().begin(), entries.value().end(), [&](const platform::FolderEntry& entry) {
            return entry.status.folder == folder && wildcards::matchesEntry(entry.name, pattern);
        });
}

}  // namespace

bool fileExists(TextView name) { return anyEntry(name, false); }

bool folderExists(TextView name) {
    // The shape of a root is enough where a wildcard keeps the folder from being asked itself.
    if (wildcards::contains(name) && name.size() == 3 && name.ends_with(u":\\")) return true;
    return anyEntry(name, true);
}

int32 listFiles(TextView root, TextView pattern, std::vector<Text>& names, int32 keep, ListWish wish) {
    auto listed = fileSystem().list(root);
    if (!listed && keep == 0) names.clear();
    if (!listed) return keep;
    names.resize(static_cast<std::size_t>(std::max(keep, 0)));
    auto& entries = *listed;
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        const Text left = upper(a.name), right = upper(b.name);
        return left != right ? left < right : a.name < b.name;
    });
    for (const auto& [name, status] : entries) {
        if (!wish.hidden && status.hidden) continue;
        if (status.folder && !wish.folders) continue;
        if (!wildcards::matchesEntry(name, pattern)) continue;
        names.push_back(status.folder || wish.fullPath ? paths::join({Text(root), name}) : name);
    }
    return static_cast<int32>(names.size());
}

}  // namespace tsRtm
