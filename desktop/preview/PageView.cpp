#include "desktop/preview/PageView.hpp"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

#include "desktop/paper/PainterDevice.hpp"
#include "desktop/preview/Measures.hpp"

namespace tsRtm::desktop {

QImage imageOf(const platform::PageSource* page, QSize pixels) {
    QImage image(pixels.expandedTo({1, 1}), QImage::Format_RGB32);
    image.fill(Qt::white);
    if (page && page->page().closed) {
        QPainter painter(&image);
        PainterDevice device(painter, {96, 96, 0, 0});
        page->draw(device, image.width(), image.height());
    }
    return image;
}

PageView::PageView(const platform::PreviewedJob& job, QWidget* parent)
    : QAbstractScrollArea(parent), job_(job) {
    viewport()->setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    layOut();
}

void PageView::show(int page) {
    page_ = page;
    image_ = {};
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

void PageView::layOut() {
    const auto source = job_.source(page_);
    const auto facts = source ? source->page() : platform::PreviewedPage();
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

void PageView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), palette().color(QPalette::Dark));
    // In the pixels of the screen, of which there may be several to one of the window.
    const QSize pixels = size_ * devicePixelRatioF();
    if (image_.size() != pixels) {
        const auto source = job_.source(page_);
        image_ = imageOf(source.get(), pixels);
    }
    const QRect place = sheet();
    painter.drawImage(place, image_);
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
