#include "desktop/paper/PdfWriting.hpp"

#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include "desktop/paper/PainterDevice.hpp"
#include "desktop/paper/PdfProperties.hpp"
#include "desktop/paper/Qt.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm::desktop {
namespace {

using platform::SystemError;

constexpr int kPixelsPerInch = 1200;
constexpr qreal kTwipsPerPoint = 20;

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
    explicit Document(const platform::PdfSettings& settings) : settings_(settings), writer_(&buffer_) {
        buffer_.open(QIODevice::WriteOnly);
        writer_.setPdfVersion(settings.archive ? QPagedPaintDevice::PdfVersion_A1b
                                               : QPagedPaintDevice::PdfVersion_1_6);
        writer_.setResolution(kPixelsPerInch);
        writer_.setPageMargins(QMarginsF());
    }

    platform::PageDevice& page(int32 width, int32 height) override {
        const QSizeF points(width / kTwipsPerPoint, height / kTwipsPerPoint);
        const bool landscape = width > height;
        writer_.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
        writer_.setPageSize(QPageSize(landscape ? points.transposed() : points, QPageSize::Point, QString(),
                                      QPageSize::ExactMatch));
        if (device_)
            writer_.newPage();
        else
            painter_.begin(&writer_);
        device_ = std::make_unique<PainterDevice>(
            painter_, platform::DeviceResolution{kPixelsPerInch, kPixelsPerInch, 0, 0});
        return *device_;
    }

    SystemError finish(TextView name) override {
        painter_.end();
        buffer_.close();
        try {
            return store(name, completed(buffer_.data(), settings_));
        } catch (const std::exception& failure) {
            rtmMain::DebugLog(u"PDF: " + fromUtf8(failure.what()));
            return SystemError::writeFault;
        }
    }

 private:
    platform::PdfSettings settings_;
    QBuffer buffer_;
    QPdfWriter writer_;
    QPainter painter_;
    std::unique_ptr<PainterDevice> device_;
};

}  // namespace

std::unique_ptr<platform::PdfDocument> PdfWriting::begin(const platform::PdfSettings& settings) {
    return std::make_unique<Document>(settings);
}

}  // namespace tsRtm::desktop
