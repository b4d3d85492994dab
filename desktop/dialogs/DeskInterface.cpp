#include "desktop/dialogs/DeskInterface.hpp"

#include <QApplication>
#include <QDesktopServices>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include "desktop/dialogs/ChoiceWindow.hpp"
#include "desktop/dialogs/TaskWindow.hpp"
#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {

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
        auto* abort = new QPushButton(QStringLiteral("Abbrechen"));
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
    constexpr std::pair<int32, DialogIcon> icons[] = {{16, DialogIcon::stop},
                                                      {48, DialogIcon::warning},
                                                      {64, DialogIcon::information},
                                                      {80, DialogIcon::shield}};
    for (const auto& [flag, icon] : icons)
        if ((box.buttons & 112) == flag) dialog.icon = icon;
    const platform::DialogListener nobody = [](platform::DialogNotice, int32, TextView) { return 0; };
    return TaskWindow(dialog, nobody, QApplication::activeWindow()).hold().button;
}

std::optional<platform::DialogAnswer> DeskInterface::showTaskDialog(const platform::TaskDialog& dialog,
                                                                    const platform::DialogListener& tell) {
    return TaskWindow(dialog, tell, QApplication::activeWindow()).hold();
}

std::optional<Text> DeskInterface::ask(TextView prompt, TextView title, TextView preset) {
    bool given = false;
    const QString line = QInputDialog::getText(QApplication::activeWindow(), qt(title), qt(prompt),
                                               QLineEdit::Normal, qt(preset), &given);
    if (!given) return std::nullopt;
    return fromQt(line);
}

int32 DeskInterface::choose(const platform::ChoiceList& list) {
    return ChoiceWindow(list, QApplication::activeWindow()).hold();
}

void DeskInterface::openLink(TextView address) {
    const QUrl url(qt(address));
    const QStringList opened{QStringLiteral("http"), QStringLiteral("https"), QStringLiteral("mailto")};
    if (opened.contains(url.scheme().toLower())) QDesktopServices::openUrl(url);
}

}  // namespace tsRtm::desktop
