#include "desktop/dialogs/ChoiceWindow.hpp"

#include <QAbstractTableModel>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/dialogs/Captions.hpp"
#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kSample = 20;      // lines whose texts tell how wide columns are
constexpr int kWidest = 300;     // pixels of a column at first
constexpr int kCellMargin = 16;  // pixels around its text

bool movesInList(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

}  // namespace

class ChoiceWindow::Lines final : public QAbstractTableModel {
 public:
    explicit Lines(ChoiceWindow& window)
        : QAbstractTableModel(&window), window_(window), list_(window.list_) {
        columns_ = static_cast<int>(list_.titles.size());
        if (columns_ == 0 && list_.count > 0) columns_ = static_cast<int>(line(1).size());
    }
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : list_.count; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        const auto cells = line(index.row() + 1);
        const auto column = static_cast<std::size_t>(index.column());
        return column < cells.size() ? qt(cells[column]) : QString();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const auto column = static_cast<std::size_t>(section);
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal || column >= list_.titles.size())
            return {};
        return qt(list_.titles[column]);
    }

 private:
    std::vector<Text> line(int32 number) const {
        try {
            return list_.cells(number);
        } catch (...) {
            window_.fail();
            return {};
        }
    }

    ChoiceWindow& window_;
    const platform::ChoiceList& list_;
    int columns_ = 0;
};

ChoiceWindow::ChoiceWindow(const platform::ChoiceList& list, QWidget* parent) : QDialog(parent), list_(list) {
    setWindowTitle(qt(list.caption));
    auto* column = new QVBoxLayout(this);
    if (list.find) makeSearch(*column);
    makeTable(*column);
    auto* buttons = new QDialogButtonBox;
    auto* choose = buttons->addButton(caption(sidSelect), QDialogButtonBox::AcceptRole);
    choose->setDefault(true);
    choose->setEnabled(list.count > 0);
    buttons->addButton(caption(sidCancel), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
    resize(560, 420);
    stand(list.start);
}

void ChoiceWindow::makeSearch(QBoxLayout& column) {
    typed_ = new QLineEdit;
    typed_->setPlaceholderText(QStringLiteral("Suchbegriff"));
    typed_->setAccessibleName(typed_->placeholderText());
    typed_->setClearButtonEnabled(true);
    typed_->installEventFilter(this);
    connect(typed_, &QLineEdit::textChanged, this, &ChoiceWindow::search);
    column.addWidget(typed_);
}

void ChoiceWindow::makeTable(QBoxLayout& column) {
    table_ = new QTableView;
    auto* lines = new Lines(*this);
    table_->setModel(lines);
    table_->setAccessibleName(windowTitle());
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setVisible(!list_.titles.empty());
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setTabKeyNavigation(false);
    table_->installEventFilter(this);
    connect(table_, &QTableView::doubleClicked, this, [this] { accept(); });
    // As wide as the first lines are: the others are not asked for.
    const QFontMetrics metrics(table_->font());
    table_->verticalHeader()->setDefaultSectionSize(metrics.height() + kCellMargin / 2);
    table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    for (int at = 0; at < lines->columnCount({}); ++at) {
        int width =
            metrics.horizontalAdvance(lines->headerData(at, Qt::Horizontal, Qt::DisplayRole).toString());
        for (int row = 0; row < std::min(list_.count, kSample); ++row)
            width = std::max(width, metrics.horizontalAdvance(lines->index(row, at).data().toString()));
        table_->setColumnWidth(at, std::min(width + kCellMargin, kWidest));
    }
    column.addWidget(table_);
}

// What is typed is searched for, and the arrows move in the list, whichever of both has the focus.
bool ChoiceWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (watched == typed_ && movesInList(key->key())) return QCoreApplication::sendEvent(table_, event);
    const bool types = !key->text().isEmpty() && key->text().front().isPrint() &&
                       !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (watched != table_ || !typed_ || !types) return false;
    typed_->setFocus();
    return QCoreApplication::sendEvent(typed_, event);
}

void ChoiceWindow::stand(int32 line) {
    if (list_.count > 0) table_->selectRow(std::clamp(line, 1, list_.count) - 1);
}

void ChoiceWindow::search(const QString& typed) {
    try {
        stand(list_.find(fromQt(typed)));
    } catch (...) {
        fail();
    }
}

// What the list throws must not go through the toolkit: it waits for the end of the window.
void ChoiceWindow::fail() {
    if (!outcome_->thrown) outcome_->thrown = std::current_exception();
    QMetaObject::invokeMethod(this, &QDialog::reject, Qt::QueuedConnection);
}

void ChoiceWindow::accept() {
    if (list_.count > 0) outcome_->line = table_->currentIndex().row() + 1;
    QDialog::accept();
}

int32 ChoiceWindow::choose(const platform::ChoiceList& list, QWidget* parent) {
    const QPointer<ChoiceWindow> window(new ChoiceWindow(list, parent));
    const auto outcome = window->outcome_;
    window->exec();
    delete window;
    if (outcome->thrown) std::rethrow_exception(outcome->thrown);
    return outcome->line;
}

}  // namespace tsRtm::desktop
