#include "tsRtm/printing/output/PdfName.hpp"

#include <algorithm>
#include <set>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/files/Paths.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/printing/output/Job.hpp"

namespace tsRtm {
namespace {

constexpr TextView kExtension = u".pdf";
constexpr int32 kMostNumbers = 1000000;
constexpr std::size_t kMostBytes = 255;  // of a name, as file systems count it

bool makeFolders(const Text& folder) {
    if (FilesTopic::ExistFolder(folder)) return true;
    const Text above = paths::folder(folder);
    if (above.empty() || above == folder || !makeFolders(above)) return false;
    return !platform::failed(rtmMain::system().files.makeFolder(folder));
}

// Shortened by whole characters.
Text shortened(Text base, std::size_t room) {
    while (toUtf8(base).size() > room) {
        const bool pair = base.size() > 1 && base.back() >= 0xDC00 && base.back() <= 0xDFFF;
        base.resize(base.size() - (pair ? 2 : 1));
    }
    return base;
}

}  // namespace

std::optional<Text> pdfPlace(TextView folder, TextView jobName) {
    auto& system = rtmMain::system();
    const Text place =
        folder.empty() ? system.system.folder(platform::FolderId::documents, true) : Text(folder);
    if (!makeFolders(place)) return std::nullopt;
    Text base = FilesTopic::PathCleanup(jobName);
    if (base.empty()) base = kProductName;
    Text extension(kExtension);
    if (base.size() > kExtension.size() &&
        upper(TextView(base).substr(base.size() - kExtension.size())) == u".PDF") {
        extension = base.substr(base.size() - kExtension.size());
        base.resize(base.size() - kExtension.size());
    }
    std::set<Text> taken;  // capitals: names that differ in case only are the same to others
    if (const auto entries = system.files.list(place))
        for (const auto& entry : *entries) taken.insert(upper(entry.name));
    Text name;
    for (int32 number = 1; number <= kMostNumbers; ++number) {
        const Text mark = number == 1 ? Text() : u"[" + toText(number) + u"]";
        const Text end = mark + extension;
        name = shortened(base, kMostBytes - toUtf8(end).size()) + end;
        if (!taken.contains(upper(name))) break;
    }
    return paths::join({place, name});
}

}  // namespace tsRtm
