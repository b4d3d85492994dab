#pragma once
#include <QMainWindow>

#include "desktop/preview/Measures.hpp"
#include "tsRtm/platform/Previews.hpp"

class QLabel;
class QListView;
class QPushButton;

namespace tsRtm::desktop {

class PageList;
class PageView;

// Shows a job's pages and lets the user print them, one of them, or none.
class PreviewWindow final : public QMainWindow {
    Q_OBJECT

 public:
    explicit PreviewWindow(platform::PreviewedJob& job);

    void open(const platform::PreviewWish& wish);
    // Another page is there, or the facts have changed; the page shown stays.
    void refresh();
    // The job lets go of it.
    void letGo();

 signals:
    void closed();

 protected:
    void closeEvent(QCloseEvent* event) override;

 private:
    enum class Move { first, previous, next, last };

    void makeActions();
    void makeStatus();
    void move(Move where);
    void go(int page);
    void setView(int view);
    void leave(bool print);
    void tell(double x, double y);
    QSize roomForPages() const;

    platform::PreviewedJob* job_;
    PageView* view_;
    QListView* pages_;
    PageList* list_;
    QLabel *number_, *duplex_, *copies_;
    QPushButton *measureButton_, *printAll_;
    QAction *crosshair_, *copy_, *printPage_, *printAllAction_;
    Measure measure_ = Measure::millimetres;
};

}  // namespace tsRtm::desktop
