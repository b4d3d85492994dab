#include "desktop/paper/PdfWriting.hpp"

#include "desktop/paper/PdfPages.hpp"
#include "desktop/paper/StoredFile.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm::desktop {
namespace {

using platform::SystemError;

class Document final : public platform::PdfDocument {
 public:
    Document(const platform::PdfSettings& settings, std::shared_ptr<PdfFonts> fonts)
        : pages_(settings, std::move(fonts)) {}

    platform::PageDevice& page(int32 width, int32 height) override { return pages_.page(width, height); }

    SystemError finish(TextView name) override {
        try {
            if (content_.isEmpty()) content_ = pages_.finish();
            return storeFile(name, content_, false);
        } catch (const std::exception& failure) {
            rtmMain::DebugLog(u"PDF: " + fromUtf8(failure.what()));
            return SystemError::writeFault;
        }
    }

 private:
    PdfPages pages_;
    QByteArray content_;  // once it is whole
};

}  // namespace

PdfWriting::PdfWriting() : fonts_(std::make_shared<PdfFonts>()) {}

std::unique_ptr<platform::PdfDocument> PdfWriting::begin(const platform::PdfSettings& settings) {
    return std::make_unique<Document>(settings, fonts_);
}

}  // namespace tsRtm::desktop
