#include "desktop/dialogs/ChoiceWindow.hpp"

#include <QAbstractTableModel>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

class Lines final : public QAbstractTableModel {
 public:
    Lines(const platform::ChoiceList& list, QObject* parent) : QAbstractTableModel(parent), list_(list) {
        columns_ = static_cast<int>(list.titles.size());
        if (columns_ == 0 && list.count > 0) columns_ = static_cast<int>(list.cells(1).size());
    }
    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : list_.count; }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : columns_; }
    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole) return {};
        const auto line = list_.cells(index.row() + 1);
        const auto column = static_cast<std::size_t>(index.column());
        return column < line.size() ? qt(line[column]) : QString();
    }
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const auto column = static_cast<std::size_t>(section);
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal || column >= list_.titles.size())
            return {};
        return qt(list_.titles[column]);
    }

 private:
    const platform::ChoiceList& list_;
    int columns_ = 0;
};

}  // namespace

ChoiceWindow::ChoiceWindow(const platform::ChoiceList& list, QWidget* parent)
    : QDialog(parent), list_(list), table_(new QTableView) {
    setWindowTitle(qt(list.caption));
    auto* column = new QVBoxLayout(this);
    if (list.find) {
        auto* typed = new QLineEdit;
        typed->setPlaceholderText(QString::fromUtf8("Suchbegriff"));
        typed->setClearButtonEnabled(true);
        connect(typed, &QLineEdit::textChanged, this,
                [this](const QString& text) { stand(list_.find(fromQt(text))); });
        column->addWidget(typed);
    }
    table_->setModel(new Lines(list, table_));
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->verticalHeader()->hide();
    table_->horizontalHeader()->setVisible(!list.titles.empty());
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->setTabKeyNavigation(false);
    connect(table_, &QTableView::doubleClicked, this, &QDialog::accept);
    column->addWidget(table_);
    auto* buttons = new QDialogButtonBox;
    auto* choose = buttons->addButton(QString::fromUtf8("Auswählen"), QDialogButtonBox::AcceptRole);
    choose->setDefault(true);
    choose->setEnabled(list.count > 0);
    buttons->addButton(QStringLiteral("Abbrechen"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
    resize(560, 420);
    stand(list.start);
}

void ChoiceWindow::stand(int32 line) {
    if (list_.count > 0) table_->selectRow(std::clamp(line, 1, list_.count) - 1);
}

int32 ChoiceWindow::hold() {
    if (exec() != QDialog::Accepted || list_.count == 0) return 0;
    return table_->currentIndex().row() + 1;
}

}  // namespace tsRtm::desktop
