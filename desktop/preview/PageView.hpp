#pragma once
#include <QAbstractScrollArea>

#include "tsRtm/platform/Previews.hpp"

namespace tsRtm::desktop {

// A page as an image in so many pixels, or the part of it in this rectangle; white where it cannot be shown.
QImage imageOf(const platform::PageSource* page, QSize pixels, QRect part = {});

// The sheet, with scroll bars where it is larger than the window.
class PageView final : public QAbstractScrollArea {
    Q_OBJECT

 public:
    explicit PageView(const platform::PreviewedJob& job, QWidget* parent = nullptr);

    int page() const noexcept { return page_; }
    int view() const noexcept { return view_; }
    void show(int page);
    void setView(int view);
    void setCrosshair(bool on);
    // A small step up, where there is room above.
    void stepUp();
    // The job is gone; what has been drawn stays.
    void letGo() { job_ = nullptr; }

 signals:
    // The mouse is over this place of the page, twips.
    void moved(double x, double y);

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

 private:
    void layOut();
    QRect sheet() const;
    void draw(QRect part);

    std::unique_ptr<platform::PageSource> source() const;

    const platform::PreviewedJob* job_;
    int page_ = 1;
    int view_ = 1;
    bool crosshair_ = false;
    QPoint mouse_{-1, -1};
    QSize paper_;  // twips
    QSize size_;   // of the sheet, pixels
    // What is seen of the page, in pixels of the screen, of which there may be several to one of the window;
    // and where on the sheet that is.
    QImage image_;
    QRect part_;
    QSize whole_;
};

}  // namespace tsRtm::desktop
