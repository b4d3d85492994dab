#include "tsRtm/database/files/DatabaseFolder.hpp"

#include <utility>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kOpenSilently = -1;

}  // namespace

Text DatabaseFolder::path(TextView file) const {
    return FilesTopic::MakePath({Variant(name), Variant(Text(file))});
}

std::vector<Text> DatabaseFolder::fileNames() const {
    std::vector<Text> names;
    const auto entries = rtmMain::system().files.list(name);
    for (const auto& entry : entries ? *entries : std::vector<platform::FolderEntry>())
        if (!entry.status.folder) names.push_back(entry.name);
    return names;
}

int32 DatabaseFolder::open(TextView file, bool sharedOpening) const {
    int32 number = 0;
    files.DB_Open(path(file), number, modus(), sharedOpening, 0, kOpenSilently);
    return number;
}

void DatabaseFolder::close(int32& number) const noexcept {
    try {
        if (const int32 file = std::exchange(number, 0); file != 0) files.TS_Close(file);
    } catch (const Failure&) {  // clean-up ignores failures
    }
}

void DatabaseFolder::closeHandle(int32& handle) const noexcept {
    try {
        if (const int32 file = std::exchange(handle, 0); file != 0) files.CloseAPI(file);
    } catch (const Failure&) {  // clean-up ignores failures
    }
}

}  // namespace tsRtm
