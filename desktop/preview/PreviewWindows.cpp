#include "desktop/preview/PreviewWindows.hpp"

#include <QBuffer>
#include <QClipboard>
#include <QEventLoop>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QPdfWriter>
#include <QPointer>
#include <QSvgGenerator>

#include "desktop/paper/PainterDevice.hpp"
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
        loop.exec();
    }
    void update() override { window_->refresh(); }

 private:
    QPointer<PreviewWindow> window_;
};

template <class Device>
void drawInto(Device& paper, const platform::PageSource& page, QSize pixels) {
    QPainter painter(&paper);
    PainterDevice device(painter, {kDotsPerInch, kDotsPerInch, 0, 0});
    page.draw(device, pixels.width(), pixels.height());
}

QByteArray asPdf(const platform::PageSource& page, QSize pixels) {
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QPdfWriter writer(&bytes);
    const auto facts = page.page();
    writer.setResolution(kDotsPerInch);
    writer.setPageMargins(QMarginsF());
    writer.setPageSize(QPageSize(QSizeF(facts.width, facts.height) / 20, QPageSize::Point, QString(),
                                 QPageSize::ExactMatch));
    drawInto(writer, page, pixels);
    return bytes.data();
}

QByteArray asSvg(const platform::PageSource& page, QSize pixels) {
    QBuffer bytes;
    QSvgGenerator generator;
    generator.setOutputDevice(&bytes);
    generator.setResolution(kDotsPerInch);
    generator.setSize(pixels);
    generator.setViewBox(QRect(QPoint(), pixels));
    drawInto(generator, page, pixels);
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
    content->setData(QStringLiteral("application/pdf"), asPdf(page, pixels));
    content->setData(QStringLiteral("image/svg+xml"), asSvg(page, pixels));
    content->setImageData(imageOf(&page, pixels));
    clipboard->setMimeData(content.release());
    return platform::SystemError::none;
}

}  // namespace tsRtm::desktop
