#pragma once
#include <QDialog>
#include <QElapsedTimer>

#include "tsRtm/platform/DialogBoxes.hpp"

class QBoxLayout;
class QLabel;

namespace tsRtm::desktop {

// A text of a dialog as rich text: its line ends, and its links where they are wanted.
QString richText(TextView text);

// A box or task dialog. Escape and the close button are Cancel where it is offered, OK where that stands
// alone, and nothing else.
class TaskWindow final : public QDialog {
    Q_OBJECT

 public:
    TaskWindow(const platform::TaskDialog& dialog, const platform::DialogListener& tell,
               QWidget* parent = nullptr);

    // Until it is closed.
    platform::DialogAnswer hold();

    void reject() override;

 protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

 private:
    void makeTexts(QBoxLayout& column);
    void makeOptions(QBoxLayout& column);
    void makeButtons(QBoxLayout& column);
    QLabel* addText(QBoxLayout& column, TextView text);
    // Hands a notice on; what comes back may close the dialog.
    void tell(platform::DialogNotice notice, int32 value = 0, TextView link = {});
    void click(int32 button);
    Text captionOf(int32 button) const;

    const platform::TaskDialog& dialog_;
    const platform::DialogListener& tell_;
    platform::DialogAnswer answer_;
    QElapsedTimer age_;
};

}  // namespace tsRtm::desktop
