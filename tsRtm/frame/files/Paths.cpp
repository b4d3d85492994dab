// Names of files: their parts, and how they are put together.
#include "tsRtm/frame/files/Paths.hpp"

#include <algorithm>
#include <random>

#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/VariantText.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::paths {

namespace {

constexpr TextView delimiters = u"/\\";
constexpr std::size_t shortPath = 260;     // characters with the end mark
constexpr std::size_t longPath = 32768;    // the same
constexpr int32 firstWithLongPaths = 602;  // system version

bool isDelimiter(char16_t c) { return delimiters.find(c) != TextView::npos; }

// How many characters at the start name the drive or share: "C:", "\\server\share".
std::size_t driveLength(TextView path) {
    if (path.size() >= 2 && path[1] == u':') return 2;
    if (path.size() < 3 || !isDelimiter(path[0]) || !isDelimiter(path[1])) return 0;
    const auto share = path.find_first_of(delimiters, 2);
    if (share == TextView::npos) return path.size();
    return std::min(path.find_first_of(delimiters, share + 1), path.size());
}

TextView withoutEndDelimiters(TextView path, std::size_t root) {
    while (path.size() > root && isDelimiter(path.back())) path.remove_suffix(1);
    return path;
}

// Drive and delimiter behind it: what stays when all parts are taken away.
std::size_t rootLength(TextView path) {
    const auto drive = driveLength(path);
    return drive < path.size() && isDelimiter(path[drive]) ? drive + 1 : drive;
}

TextView lastPart(TextView path) {
    const auto root = rootLength(path);
    path = withoutEndDelimiters(path, root).substr(root);
    return path.substr(path.find_last_of(delimiters) + 1);
}

// Place of the dot of the extension in a last part, its length where there is none.
std::size_t dotOf(TextView part) { return std::min(part.rfind(u'.'), part.size()); }

std::size_t longestPath() {
    const auto& os = rtmMain::state().os;
    const bool longPaths = os.platformId == 2 && os.major * 100 + os.minor >= firstWithLongPaths;
    return longPaths ? longPath : shortPath;
}

// A part that would make the path too long is left out.
void appendPart(Text& path, TextView part) {
    const auto begin = std::min(part.find_first_not_of(delimiters), part.size());
    part.remove_prefix(begin);
    const Text delimiter = isDelimiter(path.back()) ? Text() : rtmMain::PathDelimiter();
    if (path.size() + delimiter.size() + part.size() < longestPath()) path.append(delimiter).append(part);
}

}  // namespace

Text join(const VariantList& parts) {
    Text path;
    for (const Variant& variant : parts) {
        const Text part = rtmMain::CutAtNul(textOf(variant));
        if (part.empty()) continue;
        if (path.empty())
            path = part;  // as it stands, whatever it is
        else
            appendPart(path, part);
    }
    return path;
}

Text folder(TextView path) {
    const auto root = rootLength(path);
    path = withoutEndDelimiters(path, root);
    if (path.size() <= root) return {};
    const auto last = path.find_last_of(delimiters);
    if (last == TextView::npos || last < root) return Text(path.substr(0, root));
    return Text(withoutEndDelimiters(path.substr(0, last), root));
}

Text base(TextView path) {
    const TextView part = lastPart(path);
    return Text(part.substr(0, dotOf(part)));
}

Text drive(TextView path) {
    if (const auto length = driveLength(path)) return Text(path.substr(0, length));
    return path.starts_with(u'/') ? u"/" : u"";
}

Text last(TextView path) { return Text(lastPart(path)); }

Text extension(TextView path) {
    const TextView part = lastPart(path);
    const auto dot = dotOf(part);
    return dot == part.size() ? Text() : Text(part.substr(dot + 1));
}

Text temporary() {
    static constexpr TextView digits = u"0123456789ABCDEF";
    static std::random_device random;
    Text name = u"rad";
    for (int32 i = 0; i < 5; ++i) name += digits[random() % digits.size()];
    return name + u".tmp";
}

Text cleaned(TextView path) {
    Text clean;
    for (const char16_t c : trim(path))
        if (TextView(u"\\/:*?\"<>|").find(c) == TextView::npos) clean += c;
    return clean.substr(0, shortPath);
}

}  // namespace tsRtm::paths
