// Which files are there.
#include <algorithm>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/files/Wildcards.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"

namespace tsRtm {

namespace {

platform::FileSystem& fileSystem() { return rtmMain::system().files; }

Text folderToList(TextView path) {
    const Text folder = FilesTopic::PathName(path);
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
    const Text pattern = FilesTopic::FileName(path);
    return std::any_of(
        entries.value().begin(), entries.value().end(), [&](const platform::FolderEntry& entry) {
            return entry.status.folder == folder && wildcards::matchesEntry(entry.name, pattern);
        });
}

}  // namespace

bool FilesTopic::Exist(TextView Datei) { return anyEntry(Datei, false); }

bool FilesTopic::ExistFolder(TextView PathName) {
    // The shape of a root is enough where a wildcard keeps the folder from being asked itself.
    if (wildcards::contains(PathName) && PathName.size() == 3 && PathName.ends_with(u":\\")) return true;
    return anyEntry(PathName, true);
}

int32 FilesTopic::GetAllFiles(TextView Root, TextView Pattern, std::vector<Text>& Field, bool IncludeFullPath,
                              int32 Counter, bool DontShowHidden, bool MitDirs) {
    auto listed = fileSystem().list(Root);
    if (!listed && Counter == -1) Field.clear();
    if (!listed) return Counter + 1;
    Field.resize(Counter < 0 ? 0 : static_cast<std::size_t>(Counter) + 1);
    auto& entries = *listed;
    std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
        const Text left = upper(a.name), right = upper(b.name);
        return left != right ? left < right : a.name < b.name;
    });
    for (const auto& [name, status] : entries) {
        if (DontShowHidden && status.hidden) continue;
        if (status.folder && !MitDirs) continue;
        if (!wildcards::matchesEntry(name, Pattern)) continue;
        Field.push_back(status.folder || IncludeFullPath ? MakePath({Text(Root), name}) : name);
    }
    return static_cast<int32>(Field.size());
}

bool FilesTopic::CheckFileAccess(TextView FileName, int32 DesiredAccess) {
    constexpr int32 fileObject = 1;
    return rtmMain::CheckAccess(FileName, fileObject, DesiredAccess);
}

}  // namespace tsRtm
