#include "desktop/preview/PreviewWindow.hpp"

#include <QActionGroup>
#include <QCloseEvent>
#include <QDockWidget>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>

#include "desktop/paper/Qt.hpp"
#include "desktop/preview/PageView.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kPrintAll = 1, kClipboard = 2, kPrintPage = 4;  // of what is not offered
constexpr int kMaximised = 2;
constexpr int kThumbnail = 110;
constexpr int kFrameTwips = 288;
constexpr double kTwipsPerInch = 1440;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

}  // namespace

PreviewWindow::PreviewWindow(platform::PreviewedJob& job) : job_(&job), view_(new PageView(job, this)) {
    setCentralWidget(view_);
    pages_ = new QListWidget;
    pages_->setIconSize({kThumbnail, kThumbnail});
    pages_->setViewMode(QListView::IconMode);
    pages_->setFlow(QListView::TopToBottom);
    pages_->setWrapping(false);
    pages_->setMovement(QListView::Static);
    pages_->setFixedWidth(kThumbnail + 40);
    auto* dock = new QDockWidget(text("Seiten"), this);
    dock->setWidget(pages_);
    dock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    makeActions();
    makeStatus();
    connect(pages_, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0 && row + 1 != view_->page()) go(row + 1);
    });
    connect(view_, &PageView::moved, this, &PreviewWindow::tell);
    refresh();
}

void PreviewWindow::makeActions() {
    auto* bar = addToolBar(text("Vorschau"));
    bar->setMovable(false);
    const auto add = [&](const char* name, const QKeySequence& key, auto slot) {
        auto* action = bar->addAction(text(name));
        action->setShortcut(key);
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    auto* views = new QActionGroup(this);
    const char* const names[] = {"Ganze Seite", "Fensterbreite", "Vergrößert"};
    for (int view = 1; view <= 3; ++view) {
        auto* action = add(names[view - 1], QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + view)),
                           [this, view] { setView(view); });
        action->setCheckable(true);
        action->setData(view);
        views->addAction(action);
    }
    bar->addSeparator();
    crosshair_ = add("Fadenkreuz", QKeySequence(Qt::Key_F), [this](bool on) {
        view_->setCrosshair(on);
        crosshair_->setToolTip(text(on ? "Fadenkreuz ausschalten" : "Fadenkreuz einschalten"));
    });
    crosshair_->setCheckable(true);
    crosshair_->setToolTip(text("Fadenkreuz einschalten"));
    copy_ = add("Kopieren", QKeySequence::Copy, [this] {
        if (job_) job_->copyPage(view_->page());
    });
    printPage_ = add("Seite drucken", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P), [this] {
        if (job_) job_->printPage(view_->page());
    });
    bar->addSeparator();
    add("Erste", QKeySequence(Qt::Key_Home), [this] { move(Move::first); });
    add("Zurück", QKeySequence(Qt::Key_PageUp), [this] { move(Move::previous); });
    add("Weiter", QKeySequence(Qt::Key_PageDown), [this] { move(Move::next); });
    add("Letzte", QKeySequence(Qt::Key_End), [this] { move(Move::last); });
    bar->addSeparator();
    printAll_ = new QPushButton;
    printAll_->setShortcut(QKeySequence::Print);
    printAll_->setDefault(true);
    bar->addWidget(printAll_);
    connect(printAll_, &QPushButton::clicked, this, [this] { leave(true); });
    add("Schließen", QKeySequence(Qt::Key_Escape), [this] { close(); });
}

void PreviewWindow::makeStatus() {
    number_ = new QLabel;
    duplex_ = new QLabel;
    copies_ = new QLabel;
    measureButton_ = new QPushButton(placeText(measure_, 0, 0));
    measureButton_->setFlat(true);
    measureButton_->setToolTip(text("Maßeinheit wechseln"));
    connect(measureButton_, &QPushButton::clicked, this, [this] {
        measure_ = nextMeasure(measure_);
        measureButton_->setText(placeText(measure_, 0, 0));
    });
    for (auto* label : {number_, duplex_, copies_}) statusBar()->addWidget(label);
    statusBar()->addPermanentWidget(measureButton_);
}

QSize PreviewWindow::roomForPages() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double dots = screen->logicalDotsPerInch();
    const int frame = static_cast<int>(kFrameTwips * dots / kTwipsPerInch);
    const QSize around = sizeHint() - centralWidget()->sizeHint();
    return screen->availableSize() - QSize(frame, frame) - around.expandedTo({0, 0});
}

void PreviewWindow::open(const platform::PreviewWish& wish) {
    const auto facts = job_->facts();
    setWindowTitle(text("Druckvorschau ") + qt(facts.jobName));
    if (const auto first = job_->source(1)) {
        const double dots = QGuiApplication::primaryScreen()->logicalDotsPerInch();
        const auto page = first->page();
        const QSize pixels(static_cast<int>(page.width * dots / kTwipsPerInch),
                           static_cast<int>(page.height * dots / kTwipsPerInch));
        const QSize around = (sizeHint() - centralWidget()->sizeHint()).expandedTo({0, 0});
        resize(within(pixels, roomForPages()) + around);
    }
    setView(wish.view);
    if (wish.modal) setWindowModality(Qt::ApplicationModal);
    if (wish.windowState == kMaximised)
        showMaximized();
    else
        QMainWindow::show();
    view_->setFocus();
}

void PreviewWindow::refresh() {
    if (!job_) return;
    const auto facts = job_->facts();
    const int count = job_->pages();
    number_->setText(QStringLiteral("%1/%2").arg(view_->page()).arg(count));
    printAll_->setText(QStringLiteral("%1 %2 auf %3")
                           .arg(count)
                           .arg(text(count < 2 ? "Seite" : "Seiten"), qt(facts.device)));
    duplex_->setText(facts.duplex ? text("Duplex") : QString());
    copies_->setText(QStringLiteral("%1 Drucke").arg(facts.copies));
    printPage_->setToolTip(
        QStringLiteral("Drucken Seite %1 auf %2").arg(view_->page()).arg(qt(facts.device)));
    copy_->setToolTip(QStringLiteral("Seite %1 in die Zwischenablage").arg(view_->page()));
    printAll_->setVisible(!(facts.buttonsOff & kPrintAll));
    copy_->setVisible(!(facts.buttonsOff & kClipboard));
    printPage_->setVisible(!(facts.buttonsOff & kPrintPage));
    for (int number = pages_->count() + 1; number <= count; ++number) {
        const auto source = job_->source(number);
        if (!source || !source->page().closed) break;
        const auto page = source->page();
        const QSize size = QSize(page.width, page.height).scaled(kThumbnail, kThumbnail, Qt::KeepAspectRatio);
        pages_->addItem(
            new QListWidgetItem(QPixmap::fromImage(imageOf(source.get(), size)), QString::number(number)));
    }
    pages_->setCurrentRow(view_->page() - 1);
}

void PreviewWindow::go(int page) {
    view_->show(page);
    refresh();
}

void PreviewWindow::move(Move where) {
    if (!job_) return;
    const int page = view_->page(), count = job_->pages();
    const auto isClosed = [&](int number) {
        const auto source = job_->source(number);
        return source && source->page().closed;
    };
    switch (where) {
        case Move::first:
            // The whole first page is there already.
            if (page != 1 || view_->view() != 1) go(1);
            break;
        case Move::previous:
            if (page >= 2) go(page - 1);
            break;
        case Move::next:
            if (isClosed(page + 1)) go(page + 1);
            break;
        case Move::last:
            go(std::max(isClosed(count) ? count : count - 1, 1));
            break;
    }
}

void PreviewWindow::setView(int view) {
    view_->setView(view);
    for (auto* action : findChildren<QAction*>())
        if (action->data().toInt() == view) action->setChecked(true);
}

void PreviewWindow::tell(double x, double y) {
    measureButton_->setText(placeText(measure_, x, y));
    // Near the upper edge of the page the sheet runs under the mouse.
    if (view_->view() != 1 && rowOf(measure_, y) < 10) view_->stepUp();
}

void PreviewWindow::leave(bool print) {
    auto* job = std::exchange(job_, nullptr);
    hide();
    emit closed();
    if (job) job->leave(print);
}

void PreviewWindow::letGo() {
    job_ = nullptr;
    hide();
    emit closed();
    deleteLater();
}

void PreviewWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (job_) leave(false);
}

}  // namespace tsRtm::desktop
