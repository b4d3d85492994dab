#include "tsRtm/frame/runtime/Folders.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/state/SystemKinds.hpp"

namespace tsRtm::rtmMain {

namespace {

constexpr int32 addSubfolder = 4;

bool folderExists(TextView path) {
    const auto status = system().files.status(path);
    return status.ok() && status.value().folder;
}

// Up to the last delimiter before the last character, that delimiter with it.
TextView parentOf(TextView path) {
    const auto last = path.size() < 2 ? TextView::npos : path.find_last_of(u"\\/", path.size() - 2);
    return last == TextView::npos ? TextView{} : path.substr(0, last + 1);
}

}  // namespace

Text RegRaw(platform::HKeys hive, TextView subKey, TextView name) {
    Text value = system().settings.get(hive, subKey, name).value_or(Text{});
    if (value.ends_with(u'\0')) value.pop_back();  // an empty value is stored as one
    return value;
}

int32 SwitchValue(TextView text, std::size_t characters) {
    return roundToInt32(Val(text.substr(0, characters)));
}

Text CutAtNul(TextView text) { return Text(text.substr(0, text.find(u'\0'))); }

Text SpecialFolder(int32 id) { return system().system.folder(static_cast<platform::FolderId>(id), false); }

TextView NameOf(TextView path) noexcept {
    const auto last = path.find_last_of(u"\\/");
    return last == TextView::npos ? path : path.substr(last + 1);
}

Text PathDelimiter() { return Text(1, system().system.pathDelimiter()); }

bool AppendPath(Text& path, TextView part, std::size_t limit) {
    while (!part.empty() && isDelimiter(part.front())) part.remove_prefix(1);
    const bool delimited = path.empty() || isDelimiter(path.back());
    if (path.size() + (delimited ? 0 : 1) + part.size() >= limit) return false;
    if (!delimited) path += PathDelimiter();
    path += part;
    return true;
}

Text JoinPath(std::initializer_list<TextView> parts) {
    Text path;
    for (const auto part : parts) {
        if (part.empty()) continue;
        if (path.empty())
            path = part;
        else
            AppendPath(path, part);
    }
    return path;
}

bool EnsureFolder(TextView path) {
    if (path.empty()) return false;
    if (folderExists(path)) return true;
    if (!CheckAccess(parentOf(path), 1, addSubfolder)) return false;
    return !platform::failed(system().files.makeFolder(path)) && folderExists(path);
}

// The type of the object tells a file from other things of a system; all that is asked for here are files.
bool CheckAccess(TextView path, int32, int32 mask) {
    return state().os.platformId != systemKind::ntFamily || system().user.checkAccess(path, mask);
}

}  // namespace tsRtm::rtmMain
