#pragma once
#include <QDialog>

#include "tsRtm/platform/Choices.hpp"

class QTableView;

namespace tsRtm::desktop {

// A list to choose from: by mouse, by arrow keys, or by typing the beginning of a key. Only the lines that
// are seen are asked for.
class ChoiceWindow final : public QDialog {
    Q_OBJECT

 public:
    explicit ChoiceWindow(const platform::ChoiceList& list, QWidget* parent = nullptr);

    // The line chosen, from 1; 0 for none.
    int32 hold();

 private:
    void stand(int32 line);

    const platform::ChoiceList& list_;
    QTableView* table_;
};

}  // namespace tsRtm::desktop
