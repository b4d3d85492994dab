#pragma once
#include <QDialog>
#include <exception>
#include <memory>

#include "tsRtm/platform/Choices.hpp"

class QBoxLayout;
class QLineEdit;
class QTableView;

namespace tsRtm::desktop {

// A list to choose from: by mouse, by arrow keys, or by typing the beginning of a key, wherever the focus is.
// Only the lines that are seen are asked for.
class ChoiceWindow final : public QDialog {
    Q_OBJECT

 public:
    // The line chosen, from 1; 0 for none. Throws what the list throws.
    static int32 choose(const platform::ChoiceList& list, QWidget* parent);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    class Lines;
    // Outlives the window.
    struct Outcome {
        int32 line = 0;
        std::exception_ptr thrown;  // by the list
    };

    ChoiceWindow(const platform::ChoiceList& list, QWidget* parent);
    void makeSearch(QBoxLayout& column);
    void makeTable(QBoxLayout& column);
    void stand(int32 line);
    void search(const QString& typed);
    void fail();
    void accept() override;

    const platform::ChoiceList& list_;
    std::shared_ptr<Outcome> outcome_ = std::make_shared<Outcome>();
    QTableView* table_ = nullptr;
    QLineEdit* typed_ = nullptr;  // none where the list cannot be searched
};

}  // namespace tsRtm::desktop
