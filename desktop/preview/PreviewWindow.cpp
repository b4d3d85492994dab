#include "desktop/preview/PreviewWindow.hpp"

#include <QActionGroup>
#include <QCloseEvent>
#include <QDockWidget>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QWindow>

#include "desktop/paper/Qt.hpp"
#include "desktop/preview/PageList.hpp"
#include "desktop/preview/PageView.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kPrintAll = 1, kClipboard = 2, kPrintPage = 4;  // of what is not offered
constexpr int kMaximised = 2;
constexpr int kListWidth = 150;
constexpr int kFrameTwips = 288;
constexpr double kTwipsPerInch = 1440;

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

}  // namespace

PreviewWindow::PreviewWindow(platform::PreviewedJob& job) : job_(&job), view_(new PageView(job, this)) {
    setCentralWidget(view_);
    list_ = new PageList(job, this);
    pages_ = new QListView;
    pages_->setModel(list_);
    pages_->setViewMode(QListView::IconMode);
    pages_->setFlow(QListView::TopToBottom);
    pages_->setWrapping(false);
    pages_->setMovement(QListView::Static);
    // Else every page would be drawn to be measured.
    pages_->setUniformItemSizes(true);
    pages_->setFixedWidth(kListWidth);
    pages_->setAccessibleName(text("Seiten"));
    auto* dock = new QDockWidget(text("Seiten"), this);
    dock->setWidget(pages_);
    dock->setFeatures(QDockWidget::NoDockWidgetFeatures);
    addDockWidget(Qt::LeftDockWidgetArea, dock);
    makeActions();
    makeStatus();
    connect(pages_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& to) {
                if (to.isValid() && to.row() + 1 != view_->page()) go(to.row() + 1);
            });
    connect(view_, &PageView::moved, this, &PreviewWindow::tell);
    refresh();
}

void PreviewWindow::makeActions() {
    auto* bar = addToolBar(text("Vorschau"));
    bar->setMovable(false);
    const auto add = [&](const char* name, const QKeySequence& key, const char* keyName, auto slot) {
        auto* action = bar->addAction(text(name));
        action->setShortcut(key);
        action->setToolTip(QStringLiteral("%1 (%2)").arg(text(name), text(keyName)));
        connect(action, &QAction::triggered, this, slot);
        return action;
    };
    auto* views = new QActionGroup(this);
    const char* const names[] = {"Ganze Seite", "Fensterbreite", "Vergrößert"};
    const char* const keys[] = {"Strg+1", "Strg+2", "Strg+3"};
    for (int view = 1; view <= 3; ++view) {
        auto* action = add(names[view - 1], QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_0 + view)),
                           keys[view - 1], [this, view] { setView(view); });
        action->setCheckable(true);
        action->setData(view);
        views->addAction(action);
    }
    bar->addSeparator();
    crosshair_ = add("Fadenkreuz", QKeySequence(Qt::Key_F), "F", [this](bool on) {
        view_->setCrosshair(on);
        crosshair_->setToolTip(text(on ? "Fadenkreuz ausschalten" : "Fadenkreuz einschalten"));
    });
    crosshair_->setCheckable(true);
    crosshair_->setToolTip(text("Fadenkreuz einschalten"));
    copy_ = add("Kopieren", QKeySequence::Copy, "Strg+C", [this] {
        if (job_) job_->copyPage(view_->page());
    });
    printPage_ =
        add("Seite drucken", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_P), "Strg+Umschalt+P", [this] {
            if (job_) job_->printPage(view_->page());
        });
    bar->addSeparator();
    add("Erste", QKeySequence(Qt::Key_Home), "Pos1", [this] { move(Move::first); });
    add("Zurück", QKeySequence(Qt::Key_PageUp), "Bild auf", [this] { move(Move::previous); });
    add("Weiter", QKeySequence(Qt::Key_PageDown), "Bild ab", [this] { move(Move::next); });
    add("Letzte", QKeySequence(Qt::Key_End), "Ende", [this] { move(Move::last); });
    bar->addSeparator();
    printAll_ = new QPushButton;
    printAll_->setDefault(true);
    printAll_->setToolTip(text("Alles drucken (Strg+P)"));
    // The bar shows and hides what stands on it by its action; the key works also where there is no room.
    printAllAction_ = bar->addWidget(printAll_);
    connect(printAll_, &QPushButton::clicked, this, [this] { leave(true); });
    auto* printKey = new QShortcut(QKeySequence::Print, this);
    connect(printKey, &QShortcut::activated, this, [this] {
        if (job_ && !(job_->facts().buttonsOff & kPrintAll)) leave(true);
    });
    add("Schließen", QKeySequence(Qt::Key_Escape), "Esc", [this] { close(); });
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
        // All buttons are to be seen.
        const int barWidth = findChild<QToolBar*>()->sizeHint().width();
        const QSize around = (sizeHint() - centralWidget()->sizeHint()).expandedTo({0, 0});
        resize((within(pixels, roomForPages()) + around).expandedTo({barWidth, 0}));
    }
    setView(wish.view);
    if (wish.modal) setWindowModality(Qt::ApplicationModal);
    // Before its owner, without going with it: the job closes it.
    auto* owner = wish.owner == 0 ? nullptr : QWidget::find(static_cast<WId>(wish.owner));
    if (owner && winId()) windowHandle()->setTransientParent(owner->window()->windowHandle());
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
    printAllAction_->setVisible(!(facts.buttonsOff & kPrintAll));
    copy_->setVisible(!(facts.buttonsOff & kClipboard));
    printPage_->setVisible(!(facts.buttonsOff & kPrintPage));
    list_->grow();
    const QModelIndex current = list_->index(view_->page() - 1);
    pages_->selectionModel()->setCurrentIndex(current, QItemSelectionModel::ClearAndSelect);
    pages_->scrollTo(current);
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
    list_->letGo();
    view_->letGo();
    hide();
    emit closed();
    if (job) job->leave(print);
}

void PreviewWindow::letGo() {
    job_ = nullptr;
    list_->letGo();
    view_->letGo();
    hide();
    emit closed();
    deleteLater();
}

void PreviewWindow::closeEvent(QCloseEvent* event) {
    event->accept();
    if (job_) leave(false);
}

}  // namespace tsRtm::desktop
