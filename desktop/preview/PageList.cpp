#include "desktop/preview/PageList.hpp"

#include <QGuiApplication>
#include <QPainter>

#include "desktop/preview/PageView.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kSide = 110;   // of the square in which a page stands, pixels
constexpr int kNumber = 24;  // height of its number
constexpr int kDrawn = 200;  // pages whose pictures are kept

}  // namespace

PageList::PageList(const platform::PreviewedJob& job, QObject* parent)
    : QAbstractListModel(parent), job_(&job), drawn_(kDrawn) {
    grow();
}

void PageList::grow() {
    if (!job_) return;
    int count = count_;
    for (auto source = job_->source(count + 1); source && source->page().closed;
         source = job_->source(count + 1))
        ++count;
    if (count == count_) return;
    beginInsertRows({}, count_, count - 1);
    count_ = count;
    endInsertRows();
}

QPixmap PageList::picture(int page) const {
    if (const auto* known = drawn_.object(page)) return *known;
    const auto source = job_ ? job_->source(page) : nullptr;
    if (!source) return {};
    const auto facts = source->page();
    const qreal density = qGuiApp->devicePixelRatio();
    const QSize size = QSize(facts.width, facts.height).scaled(kSide, kSide, Qt::KeepAspectRatio);
    QImage image = imageOf(source.get(), size * density);
    // White paper on white ground.
    QPainter painter(&image);
    painter.setPen(Qt::gray);
    painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    painter.end();
    auto* made = new QPixmap(QPixmap::fromImage(image));
    made->setDevicePixelRatio(density);
    QPixmap given = *made;
    drawn_.insert(page, made);
    return given;
}

QVariant PageList::data(const QModelIndex& index, int role) const {
    const int page = index.row() + 1;
    switch (role) {
        case Qt::DisplayRole:
            return QString::number(page);
        case Qt::AccessibleTextRole:
            return QStringLiteral("Seite %1").arg(page);
        case Qt::DecorationRole:
            return picture(page);
        case Qt::SizeHintRole:
            return QSize(kSide + 10, kSide + kNumber);
        default:
            return {};
    }
}

}  // namespace tsRtm::desktop
