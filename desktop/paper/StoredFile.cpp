#include "desktop/paper/StoredFile.hpp"

#include <span>

#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm::desktop {

using platform::SystemError;

SystemError storeFile(TextView name, const QByteArray& content, bool replace) {
    auto& files = rtmMain::system().files;
    const Text beside = Text(name) + u".tmp";
    const auto write = [&] {
        auto file = files.open(beside, {platform::Access::readWrite, platform::Sharing::none,
                                        platform::Disposition::createEmpty});
        if (!file) return file.error();
        const auto error = (*file)->writeAt(
            0, std::as_bytes(std::span(content.constData(), static_cast<std::size_t>(content.size()))));
        return platform::failed(error) ? error : (*file)->flush();
    };
    auto error = write();
    if (!platform::failed(error)) error = files.rename(beside, name, replace);
    if (platform::failed(error)) static_cast<void>(files.remove(beside));
    return error;
}

}  // namespace tsRtm::desktop
