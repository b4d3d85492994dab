#include "desktop/preview/PreviewWindows.hpp"

#include <QBuffer>
#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QPointer>
#include <QSvgGenerator>

#include "desktop/paper/PainterDevice.hpp"
#include "desktop/paper/PdfPages.hpp"
#include "desktop/preview/PageView.hpp"
#include "desktop/preview/PreviewWindow.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kDotsPerInch = 300;
constexpr int kTwipsPerInch = 1440;

// The job's hold on a window, which may have to outlive it by a call of its own.
class Opened final : public platform::Preview {
 public:
    explicit Opened(platform::PreviewedJob& job) : window_(new PreviewWindow(job)) {}
    ~Opened() override {
        if (window_) window_->letGo();
    }
    void show(const platform::PreviewWish& wish) override {
        window_->open(wish);
        if (!wish.modal) return;
        QEventLoop loop;
        QObject::connect(window_, &PreviewWindow::closed, &loop, &QEventLoop::quit);
        QObject::connect(window_, &QObject::destroyed, &loop, &QEventLoop::quit);
        loop.exec();
    }
    void update() override { window_->refresh(); }

 private:
    QPointer<PreviewWindow> window_;
};

QByteArray asPdf(const platform::PageSource& page) {
    PdfPages pages({});
    const auto facts = page.page();
    auto& device = pages.page(facts.width, facts.height);
    const int32 dots = device.resolution().pixelsPerInchX;
    page.draw(device, facts.width * dots / kTwipsPerInch, facts.height * dots / kTwipsPerInch);
    return pages.finish();
}

QByteArray asSvg(const platform::PageSource& page, QSize pixels) {
    QBuffer bytes;
    QSvgGenerator generator;
    generator.setOutputDevice(&bytes);
    generator.setResolution(kDotsPerInch);
    generator.setSize(pixels);
    generator.setViewBox(QRect(QPoint(), pixels));
    QPainter painter(&generator);
    PainterDevice device(painter, {kDotsPerInch, kDotsPerInch, 0, 0});
    page.draw(device, pixels.width(), pixels.height());
    painter.end();
    return bytes.data();
}

}  // namespace

std::unique_ptr<platform::Preview> PreviewWindows::open(platform::PreviewedJob& job) {
    return std::make_unique<Opened>(job);
}

platform::SystemError PreviewWindows::copy(const platform::PageSource& page) {
    auto* clipboard = QGuiApplication::clipboard();
    if (!clipboard) return platform::SystemError::notSupported;
    const auto facts = page.page();
    const QSize pixels(facts.width * kDotsPerInch / kTwipsPerInch,
                       facts.height * kDotsPerInch / kTwipsPerInch);
    auto content = std::make_unique<QMimeData>();
    content->setData(QStringLiteral("application/pdf"), asPdf(page));
    content->setData(QStringLiteral("image/svg+xml"), asSvg(page, pixels));
    content->setImageData(imageOf(&page, pixels));
    clipboard->setMimeData(content.release());
    return platform::SystemError::none;
}

}  // namespace tsRtm::desktop
