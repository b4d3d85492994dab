#include "desktop/paper/PdfWriting.hpp"

#include "desktop/paper/PdfPages.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm::desktop {
namespace {

using platform::SystemError;

// Written beside its place and flushed, then given its name in one step.
SystemError store(TextView name, const QByteArray& bytes) {
    auto& files = rtmMain::system().files;
    const Text beside = Text(name) + u".tmp";
    const auto write = [&] {
        auto file = files.open(beside, {platform::Access::readWrite, platform::Sharing::none,
                                        platform::Disposition::createEmpty});
        if (!file) return file.error();
        const auto error = (*file)->writeAt(
            0, std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
        return platform::failed(error) ? error : (*file)->flush();
    };
    auto error = write();
    if (!platform::failed(error)) error = files.rename(beside, name, false);
    if (platform::failed(error)) static_cast<void>(files.remove(beside));
    return error;
}

class Document final : public platform::PdfDocument {
 public:
    explicit Document(const platform::PdfSettings& settings) : pages_(settings) {}

    platform::PageDevice& page(int32 width, int32 height) override { return pages_.page(width, height); }

    SystemError finish(TextView name) override {
        try {
            return store(name, pages_.finish());
        } catch (const std::exception& failure) {
            rtmMain::DebugLog(u"PDF: " + fromUtf8(failure.what()));
            return SystemError::writeFault;
        }
    }

 private:
    PdfPages pages_;
};

}  // namespace

std::unique_ptr<platform::PdfDocument> PdfWriting::begin(const platform::PdfSettings& settings) {
    return std::make_unique<Document>(settings);
}

}  // namespace tsRtm::desktop
