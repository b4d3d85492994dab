#include "desktop/paper/PdfPages.hpp"

#include <QPageSize>
#include <variant>

namespace tsRtm::desktop {
namespace {

constexpr int kPixelsPerInch = 1200;
constexpr qreal kTwipsPerPoint = 20;

}  // namespace

// Tells a page as far as it goes. At the first thing that only a painter can do the page begins anew on one.
class PdfPages::Device final : public platform::PageDevice {
 public:
    Device(PdfPages& owner, int32 width, int32 height, bool painted)
        : owner_(owner), width_(width), height_(height), content_(owner.fonts_, height, kPixelsPerInch) {
        if (painted) painter_.emplace(owner_.paint(width, height));
    }

    platform::DeviceResolution resolution() override { return {kPixelsPerInch, kPixelsPerInch, 0, 0}; }
    void map(const platform::PageMapping& mapping) override {
        if (painter_) return painter_->map(mapping);
        soFar_.emplace_back(mapping);
        content_.map(mapping);
    }
    void draw(const platform::DrawingCommand& command) override {
        if (!painter_ && content_.draw(command)) {
            soFar_.emplace_back(command);
            return;
        }
        repaint();
        painter_->draw(command);
    }
    void draw(const platform::PlacedText& text) override {
        repaint();
        painter_->draw(text);
    }
    PdfPage finished() const {
        return {width_, height_, painter_ ? std::string() : deflated(content_.bytes()), painter_.has_value()};
    }

 private:
    void repaint() {
        if (painter_) return;
        painter_.emplace(owner_.paint(width_, height_));
        for (const auto& one : soFar_) {
            if (const auto* mapping = std::get_if<platform::PageMapping>(&one))
                painter_->map(*mapping);
            else
                painter_->draw(std::get<platform::DrawingCommand>(one));
        }
        soFar_.clear();
    }

    PdfPages& owner_;
    int32 width_, height_;
    PdfContent content_;
    std::vector<std::variant<platform::PageMapping, platform::DrawingCommand>> soFar_;
    std::optional<PainterDevice> painter_;
};

PdfPages::PdfPages(const platform::PdfSettings& settings, std::shared_ptr<PdfFonts> fonts)
    : settings_(settings), fonts_(std::move(fonts)) {}

PdfPages::~PdfPages() = default;

platform::PageDevice& PdfPages::page(int32 width, int32 height) {
    keepPage();
    device_ = std::make_unique<Device>(*this, width, height, settings_.archive);
    return *device_;
}

void PdfPages::keepPage() {
    if (const auto page = std::move(device_)) pages_.push_back(page->finished());
}

PainterDevice PdfPages::paint(int32 width, int32 height) {
    const bool first = !writer_;
    if (first) {
        buffer_.open(QIODevice::WriteOnly);
        writer_.emplace(&buffer_);
        writer_->setPdfVersion(settings_.archive ? QPagedPaintDevice::PdfVersion_A1b
                                                 : QPagedPaintDevice::PdfVersion_1_6);
        writer_->setResolution(kPixelsPerInch);
        writer_->setPageMargins(QMarginsF());
    }
    const QSizeF points(width / kTwipsPerPoint, height / kTwipsPerPoint);
    const bool landscape = width > height;
    writer_->setPageOrientation(landscape ? QPageLayout::Landscape : QPageLayout::Portrait);
    writer_->setPageSize(QPageSize(landscape ? points.transposed() : points, QPageSize::Point, QString(),
                                   QPageSize::ExactMatch));
    if (first)
        painter_.begin(&*writer_);
    else
        writer_->newPage();
    return PainterDevice(painter_, platform::DeviceResolution{kPixelsPerInch, kPixelsPerInch, 0, 0});
}

QByteArray PdfPages::finish() {
    keepPage();
    if (writer_) {
        painter_.end();
        buffer_.close();
    }
    return completed(buffer_.data(), settings_, pages_, fonts_.all());
}

}  // namespace tsRtm::desktop
