#pragma once
#include <QAbstractListModel>
#include <QCache>
#include <QPixmap>

#include "tsRtm/platform/Previews.hpp"

namespace tsRtm::desktop {

// The pages of a job as small pictures, each drawn when it comes into sight.
class PageList final : public QAbstractListModel {
    Q_OBJECT

 public:
    PageList(const platform::PreviewedJob& job, QObject* parent);

    // Takes in the pages that have been closed since.
    void grow();
    // The job is gone; what has been drawn stays.
    void letGo() { job_ = nullptr; }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count_; }
    QVariant data(const QModelIndex& index, int role) const override;

 private:
    QPixmap picture(int page) const;

    const platform::PreviewedJob* job_;
    int count_ = 0;
    mutable QCache<int, QPixmap> drawn_;
};

}  // namespace tsRtm::desktop
