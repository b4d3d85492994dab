#pragma once
#include <QDialog>
#include <QElapsedTimer>
#include <exception>
#include <memory>

#include "tsRtm/platform/DialogBoxes.hpp"

class QBoxLayout;
class QLabel;

namespace tsRtm::desktop {

// A text of a dialog as rich text: its line ends, and its links where they are wanted.
QString richText(TextView text);

// A box or task dialog. Escape and the close button are Cancel where it is offered, OK where that stands
// alone, and nothing else. The letter of a button's mnemonic presses it, with or without Alt; Ctrl+C copies
// the texts.
class TaskWindow final : public QDialog {
    Q_OBJECT

 public:
    // Shows it until it is answered. Where it goes without an answer, since its parent or the application
    // ends, the answer is the one that loses nothing. Throws what the listener throws.
    static platform::DialogAnswer ask(const platform::TaskDialog& dialog,
                                      const platform::DialogListener& tell, QWidget* parent);

    void reject() override;

 protected:
    void closeEvent(QCloseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    // Outlives the window.
    struct Outcome {
        platform::DialogAnswer answer;
        std::exception_ptr thrown;  // by the listener
    };

    TaskWindow(const platform::TaskDialog& dialog, const platform::DialogListener& tell, QWidget* parent);
    void makeIcon(QBoxLayout& row);
    void makeTexts(QBoxLayout& column);
    void makeOptions(QBoxLayout& column);
    void makeButtons(QBoxLayout& column);
    QWidget* addText(QBoxLayout& column, TextView text, double size = 1);
    void hold();
    // Hands a notice on; what comes back may close the dialog.
    void tell(platform::DialogNotice notice, int32 value = 0, TextView link = {});
    int32 heard(platform::DialogNotice notice, int32 value, TextView link);
    void click(int32 button);
    QString captionOf(int32 button) const;

    const platform::TaskDialog& dialog_;
    const platform::DialogListener& tell_;
    std::shared_ptr<Outcome> outcome_ = std::make_shared<Outcome>();
    QElapsedTimer age_;
    bool telling_ = false;
};

}  // namespace tsRtm::desktop
