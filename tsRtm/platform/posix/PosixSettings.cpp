#include "tsRtm/platform/posix/PosixSettings.hpp"

#include <unistd.h>

#include <algorithm>

#include "tsRtm/platform/posix/PosixFolders.hpp"
#include "tsRtm/platform/posix/PosixPath.hpp"

namespace tsRtm::platform::posix {
namespace {

constexpr unsigned kForAllToRead = 0755;
constexpr unsigned kForTheUserAlone = 0700;

const char* hiveName(HKeys hive) noexcept {
    switch (hive) {
        case HKeys::classesRoot:
            return "classesRoot";
        case HKeys::currentUser:
            return "currentUser";
        case HKeys::localMachine:
            return "localMachine";
        case HKeys::users:
            return "users";
        case HKeys::performanceData:
            return "performanceData";
    }
    return "other";
}

TextView withoutOuterMarks(TextView key) noexcept {
    while (!key.empty() && key.front() == u'\\') key.remove_prefix(1);
    while (!key.empty() && key.back() == u'\\') key.remove_suffix(1);
    return key;
}

// The folder that would have to be changed to make this one, or itself.
std::string nearestFolder(std::string path) {
    while (!isFolder(path) && folderOf(path) != path) path = folderOf(path);
    return path;
}

}  // namespace

PosixSettings::PosixSettings(std::string userFolder, std::string machineFolder,
                             std::chrono::milliseconds patience)
    : userFolder_(std::move(userFolder)), machineFolder_(std::move(machineFolder)), patience_(patience) {}

SettingsFile& PosixSettings::file(HKeys hive) {
    if (const auto found = files_.find(hive); found != files_.end()) return found->second;
    const bool machine = hive == HKeys::localMachine;
    const auto& folder = machine ? machineFolder_ : userFolder_;
    return files_
        .try_emplace(hive, folder + '/' + hiveName(hive) + ".sqlite", static_cast<uint32>(hive),
                     machine ? kForAllToRead : kForTheUserAlone, patience_)
        .first->second;
}

std::vector<Text> PosixSettings::read(HKeys hive, SettingsQuery query,
                                      std::initializer_list<TextView> parameters) {
    auto rows = file(hive).read(query, parameters);
    return rows ? std::move(*rows) : std::vector<Text>();
}

std::optional<Text> PosixSettings::get(HKeys hive, TextView key, TextView name) {
    auto rows = read(hive, SettingsQuery::value, {withoutOuterMarks(key), name});
    return rows.empty() ? std::nullopt : std::optional(std::move(rows.front()));
}

SystemError PosixSettings::set(HKeys hive, TextView key, TextView name, TextView value) {
    return file(hive).change(SettingsQuery::set, {withoutOuterMarks(key), name, value}, true);
}

SystemError PosixSettings::replace(HKeys hive, TextView key, TextView name, TextView expected,
                                   TextView value) {
    return file(hive).change(SettingsQuery::replace, {withoutOuterMarks(key), name, value, expected}, false);
}

SystemError PosixSettings::remove(HKeys hive, TextView key, TextView name) {
    return file(hive).change(SettingsQuery::remove, {withoutOuterMarks(key), name}, false);
}

SystemError PosixSettings::removeKey(HKeys hive, TextView key) {
    const auto path = withoutOuterMarks(key);
    if (path.empty()) return SystemError::invalidParameter;
    return file(hive).change(SettingsQuery::removeKey, {path}, false);
}

std::vector<Text> PosixSettings::names(HKeys hive, TextView key) {
    return read(hive, SettingsQuery::names, {withoutOuterMarks(key)});
}

std::vector<Text> PosixSettings::keys(HKeys hive, TextView key) {
    Text prefix(withoutOuterMarks(key));
    if (!prefix.empty()) prefix += u'\\';
    std::vector<Text> result;
    for (const auto& path : read(hive, SettingsQuery::paths, {})) {
        if (path.size() <= prefix.size()) continue;
        if (!equalIgnoringCase(TextView(path).substr(0, prefix.size()), prefix)) continue;
        const Text child = path.substr(prefix.size(), path.find(u'\\', prefix.size()) - prefix.size());
        const bool known = std::any_of(result.begin(), result.end(), [&child](const Text& other) {
            return equalIgnoringCase(other, child);
        });
        if (!known) result.push_back(child);
    }
    std::sort(result.begin(), result.end(), [](const Text& a, const Text& b) { return upper(a) < upper(b); });
    return result;
}

// The file has rights, its keys have none of their own. A writer needs the folder, too, for the journal.
bool PosixSettings::mayAccess(HKeys hive, TextView, bool write) {
    const auto& path = file(hive).path();
    const auto folder = nearestFolder(folderOf(path));
    const bool there = allowed(path, F_OK);
    if (!write) return there ? allowed(path, R_OK) : allowed(folder, X_OK);
    return allowed(folder, W_OK | X_OK) && (!there || allowed(path, W_OK));
}

SystemError PosixSettings::check(HKeys hive) {
    const auto rows = file(hive).read(SettingsQuery::check, {});
    if (!rows) return rows.error();
    return rows.value().empty() || rows.value().front() == u"ok" ? SystemError::none : SystemError::readFault;
}

Text PosixSettings::location(HKeys hive) { return fromUtf8(file(hive).path()); }

}  // namespace tsRtm::platform::posix
