#include "desktop/paper/StoredFile.hpp"

#include <span>

#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::desktop {

using platform::SystemError;

SystemError storeFile(TextView name, const QByteArray& content, bool replace) {
    auto& files = rtmMain::system().files;
    // Another name each time: somebody else may be writing a file of this name.
    const Text beside = Text(name.substr(0, name.find_last_of(u"/\\") + 1)) + FilesTopic::TempName();
    auto file = files.open(
        beside, {platform::Access::readWrite, platform::Sharing::none, platform::Disposition::createEmpty});
    if (!file) return file.error();
    auto error = (*file)->writeAt(
        0, std::as_bytes(std::span(content.constData(), static_cast<std::size_t>(content.size()))));
    if (!platform::failed(error)) error = (*file)->flush();
    file->reset();
    if (!platform::failed(error)) error = files.rename(beside, name, replace);
    if (platform::failed(error)) static_cast<void>(files.remove(beside));
    return error;
}

}  // namespace tsRtm::desktop
