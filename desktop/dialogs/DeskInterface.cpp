#include "desktop/dialogs/DeskInterface.hpp"

#include <QApplication>
#include <QDesktopServices>
#include <QInputDialog>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include "desktop/dialogs/Captions.hpp"
#include "desktop/dialogs/ChoiceWindow.hpp"
#include "desktop/dialogs/TaskWindow.hpp"
#include "desktop/paper/Qt.hpp"
#include "tsRtm/frame/messages/DialogTexts.hpp"
#include "tsRtm/types/DialogConstants.hpp"

namespace tsRtm::desktop {
namespace {

// The window that a dialog stands before: the application's where it names one, else where the user is.
QWidget* parentOf(int32 window) {
    auto* named = window == 0 ? nullptr : QWidget::find(static_cast<WId>(window));
    return named ? named->window() : QApplication::activeWindow();
}

}  // namespace

DeskInterface::DeskInterface(platform::UserInterface& ground) : ground_(ground) {}
DeskInterface::~DeskInterface() = default;

void DeskInterface::showMessageWindow(TextView message) {
    if (!window_) {
        window_ = std::make_unique<QWidget>(
            nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowStaysOnTopHint);
        window_->setAttribute(Qt::WA_ShowWithoutActivating);
        auto* column = new QVBoxLayout(window_.get());
        text_ = new QLabel;
        text_->setTextFormat(Qt::RichText);
        column->addWidget(text_);
        auto* abort = new QPushButton(caption(sidAbort));
        column->addWidget(abort, 0, Qt::AlignHCenter);
        QObject::connect(abort, &QPushButton::clicked, window_.get(), [this] {
            window_->hide();
            if (onAbort) onAbort();
        });
    }
    text_->setText(richText(message));
    window_->adjustSize();
    window_->show();
}

void DeskInterface::hideMessageWindow() {
    if (window_) window_->hide();
}

void DeskInterface::processEvents() {
    QCoreApplication::processEvents();
    // A copy: who hears of the end of the system stops listening.
    ground_.onNotice = onNotice;
    ground_.processEvents();
}

void DeskInterface::beep() { QApplication::beep(); }

int32 DeskInterface::show(const platform::MessageBox& box) {
    platform::TaskDialog dialog;
    static_cast<platform::MessageBox&>(dialog) = box;
    using platform::DialogIcon;
    constexpr int32 kIcon = 112;  // the bits of the icon
    constexpr std::pair<int32, DialogIcon> icons[] = {{dlgCritical, DialogIcon::stop},
                                                      {dlgQuestion, DialogIcon::picture},
                                                      {dlgExclamation, DialogIcon::warning},
                                                      {dlgInformation, DialogIcon::information},
                                                      {dlgShield, DialogIcon::shield}};
    for (const auto& [flag, icon] : icons)
        if ((box.buttons & kIcon) == flag) dialog.icon = icon;
    dialog.picture = RtmIcon();
    const platform::DialogListener nobody = [](platform::DialogNotice, int32, TextView) { return 0; };
    return TaskWindow::ask(dialog, nobody, parentOf(box.parent)).button;
}

std::optional<platform::DialogAnswer> DeskInterface::showTaskDialog(const platform::TaskDialog& dialog,
                                                                    const platform::DialogListener& tell) {
    return TaskWindow::ask(dialog, tell, parentOf(dialog.parent));
}

std::optional<Text> DeskInterface::ask(TextView prompt, TextView title, TextView preset) {
    const QPointer<QInputDialog> window(new QInputDialog(parentOf(0)));
    window->setWindowTitle(qt(title));
    window->setLabelText(qt(prompt));
    window->setTextValue(qt(preset));
    window->setOkButtonText(caption(sidOK));
    window->setCancelButtonText(caption(sidCancel));
    std::optional<Text> line;
    if (window->exec() == QDialog::Accepted) line = fromQt(window->textValue());
    delete window;
    return line;
}

int32 DeskInterface::choose(const platform::ChoiceList& list) {
    return ChoiceWindow::choose(list, parentOf(0));
}

void DeskInterface::openLink(TextView address) {
    const QUrl url(qt(address));
    const QStringList opened{QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto")};
    if (opened.contains(url.scheme().toLower())) QDesktopServices::openUrl(url);
}

}  // namespace tsRtm::desktop
