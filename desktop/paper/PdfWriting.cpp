#include "desktop/paper/PdfWriting.hpp"

#include "desktop/paper/PdfPages.hpp"
#include "desktop/paper/StoredFile.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm::desktop {
namespace {

using platform::SystemError;

class Document final : public platform::PdfDocument {
 public:
    explicit Document(const platform::PdfSettings& settings) : pages_(settings) {}

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

std::unique_ptr<platform::PdfDocument> PdfWriting::begin(const platform::PdfSettings& settings) {
    return std::make_unique<Document>(settings);
}

}  // namespace tsRtm::desktop
