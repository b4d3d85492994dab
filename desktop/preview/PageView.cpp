#include "desktop/preview/PageView.hpp"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "desktop/paper/PainterDevice.hpp"
#include "desktop/preview/Measures.hpp"

namespace tsRtm::desktop {

QImage imageOf(const platform::PageSource* page, QSize pixels, QRect part) {
    if (part.isEmpty()) part = QRect(QPoint(), pixels);
    QImage image(part.size().expandedTo({1, 1}), QImage::Format_RGB32);
    image.fill(Qt::white);
    if (page && page->page().closed) {
        QPainter painter(&image);
        // Beside the page's own transformations.
        painter.setWindow(QRect(QPoint(), part.size()));
        painter.setViewport(QRect(-part.topLeft(), part.size()));
        PainterDevice device(painter, {96, 96, 0, 0});
        page->draw(device, pixels.width(), pixels.height());
    }
    return image;
}

PageView::PageView(const platform::PreviewedJob& job, QWidget* parent)
    : QAbstractScrollArea(parent), job_(&job) {
    viewport()->setMouseTracking(true);
    setAccessibleName(QStringLiteral("Seite 1"));
    setFocusPolicy(Qt::StrongFocus);
    layOut();
}

void PageView::show(int page) {
    page_ = page;
    image_ = {};
    setAccessibleName(QStringLiteral("Seite %1").arg(page));
    layOut();
    verticalScrollBar()->setValue(0);
    viewport()->update();
}

void PageView::setView(int view) {
    view_ = view;
    layOut();
    viewport()->update();
}

void PageView::setCrosshair(bool on) {
    crosshair_ = on;
    viewport()->update();
}

void PageView::stepUp() { verticalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub); }

std::unique_ptr<platform::PageSource> PageView::source() const {
    return job_ ? job_->source(page_) : nullptr;
}

void PageView::layOut() {
    const auto shown = source();
    const auto facts = shown ? shown->page() : platform::PreviewedPage();
    paper_ = {facts.width, facts.height};
    setVerticalScrollBarPolicy(view_ == 1 ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(view_ == 3 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    const QSize window = viewport()->size();
    size_ = sheetSize(view_, paper_, window);
    const auto range = [](QScrollBar& bar, int sheet, int seen) {
        bar.setRange(0, std::max(sheet - seen, 0));
        bar.setSingleStep(std::max(sheet / 10, 1));
        bar.setPageStep(std::max(sheet / 5, 1));
    };
    range(*verticalScrollBar(), size_.height(), window.height());
    range(*horizontalScrollBar(), size_.width(), window.width());
}

QRect PageView::sheet() const {
    const QSize window = viewport()->size();
    const auto corner = [](int room, int size, int scrolled) {
        return size < room ? (room - size) / 2 : -scrolled;
    };
    return {QPoint(corner(window.width(), size_.width(), horizontalScrollBar()->value()),
                   corner(window.height(), size_.height(), verticalScrollBar()->value())),
            size_};
}

void PageView::draw(QRect part) {
    const qreal density = devicePixelRatioF();
    const auto scaled = [&](QPoint point) { return (QPointF(point) * density).toPoint(); };
    const QSize whole = size_ * density;
    const QRect pixels(scaled(part.topLeft()), part.size() * density);
    if (!job_ || (!image_.isNull() && part_ == pixels && whole_ == whole)) return;
    image_ = imageOf(source().get(), whole, pixels);
    part_ = pixels;
    whole_ = whole;
}

void PageView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Dark));
    const QRect place = sheet();
    const QRect seen = place & viewport()->rect();
    if (seen.isEmpty()) return;
    draw(seen.translated(-place.topLeft()));
    painter.drawImage(seen, image_);
    if (!crosshair_ || !place.contains(mouse_)) return;
    painter.setPen(Qt::red);
    painter.drawLine(place.left(), mouse_.y(), place.right(), mouse_.y());
    painter.drawLine(mouse_.x(), place.top(), mouse_.x(), place.bottom());
}

void PageView::resizeEvent(QResizeEvent*) { layOut(); }

void PageView::mouseMoveEvent(QMouseEvent* event) {
    mouse_ = event->position().toPoint();
    const QRect place = sheet();
    if (crosshair_) viewport()->update();
    if (!place.contains(mouse_) || size_.isEmpty()) return;
    emit moved((mouse_.x() - place.left()) * static_cast<double>(paper_.width()) / size_.width(),
               (mouse_.y() - place.top()) * static_cast<double>(paper_.height()) / size_.height());
}

}  // namespace tsRtm::desktop
