#include "desktop/paper/PdfPages.hpp"

#include <QPageSize>

#include "desktop/paper/PdfProperties.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kPixelsPerInch = 1200;
constexpr qreal kTwipsPerPoint = 20;

}  // namespace

PdfPages::PdfPages(const platform::PdfSettings& settings) : settings_(settings), writer_(&buffer_) {
    buffer_.open(QIODevice::WriteOnly);
    writer_.setPdfVersion(settings.archive ? QPagedPaintDevice::PdfVersion_A1b
                                           : QPagedPaintDevice::PdfVersion_1_6);
    writer_.setResolution(kPixelsPerInch);
    writer_.setPageMargins(QMarginsF());
}

platform::PageDevice& PdfPages::page(int32 width, int32 height) {
    const QSizeF points(width / kTwipsPerPoint, height / kTwipsPerPoint);
    const bool landscape = width > height;
    writer_.setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    writer_.setPageSize(QPageSize(landscape ? points.transposed() : points, QPageSize::Point, QString(),
                                  QPageSize::ExactMatch));
    if (device_)
        writer_.newPage();
    else
        painter_.begin(&writer_);
    sizes_.emplace_back(width, height);
    device_ = std::make_unique<PainterDevice>(
        painter_, platform::DeviceResolution{kPixelsPerInch, kPixelsPerInch, 0, 0});
    return *device_;
}

QByteArray PdfPages::finish() {
    painter_.end();
    buffer_.close();
    return completed(buffer_.data(), settings_, sizes_);
}

}  // namespace tsRtm::desktop
