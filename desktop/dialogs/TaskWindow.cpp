#include "desktop/dialogs/TaskWindow.hpp"

#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCommandLinkButton>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

using platform::DialogIcon;
using platform::DialogNotice;

constexpr int kIconSize = 32;
constexpr int kTextWidth = 420;
constexpr int kTick = 200;  // milliseconds
constexpr int32 kOk = 1, kCancel = 2;

QPixmap iconOf(const platform::TaskDialog& dialog, const QStyle& style) {
    if (dialog.icon == DialogIcon::picture) {
        QPixmap picture;
        picture.loadFromData(reinterpret_cast<const uchar*>(dialog.picture.data()),
                             static_cast<uint>(dialog.picture.size()), "SVG");
        return picture.scaled(kIconSize, kIconSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    const std::pair<DialogIcon, QStyle::StandardPixmap> icons[] = {
        {DialogIcon::information, QStyle::SP_MessageBoxInformation},
        {DialogIcon::warning, QStyle::SP_MessageBoxWarning},
        {DialogIcon::stop, QStyle::SP_MessageBoxCritical},
        {DialogIcon::shield, QStyle::SP_VistaShield},
    };
    for (const auto& [icon, pixmap] : icons)
        if (icon == dialog.icon) return style.standardIcon(pixmap).pixmap(kIconSize);
    return {};
}

}  // namespace

QString richText(TextView text) {
    constexpr TextView kOpen = u"<A HREF=\"", kMiddle = u"\">", kClose = u"</A>";
    const auto plain = [](TextView part) {
        const Text lines = replaceAll(replaceAll(part, u"\r\n", u"\n"), u"\r", u"\n");
        return qt(lines).toHtmlEscaped().replace(QChar(u'\n'), QStringLiteral("<br>"));
    };
    QString rich;
    for (auto at = text.find(kOpen); at != TextView::npos; at = text.find(kOpen)) {
        const auto middle = text.find(kMiddle, at);
        const auto close = middle == TextView::npos ? middle : text.find(kClose, middle);
        if (close == TextView::npos) break;
        const TextView address = text.substr(at + kOpen.size(), middle - at - kOpen.size());
        rich += plain(text.substr(0, at)) + QStringLiteral("<a href=\"") + qt(address).toHtmlEscaped() +
                QStringLiteral("\">") + plain(text.substr(middle + 2, close - middle - 2)) +
                QStringLiteral("</a>");
        text.remove_prefix(close + kClose.size());
    }
    return rich + plain(text);
}

TaskWindow::TaskWindow(const platform::TaskDialog& dialog, const platform::DialogListener& tell,
                       QWidget* parent)
    : QDialog(parent), dialog_(dialog), tell_(tell) {
    answer_.option = dialog.defaultOption;
    answer_.checked = dialog.checked;
    setWindowTitle(qt(dialog.title));
    setModal(true);
    if (dialog.rightToLeft) setLayoutDirection(Qt::RightToLeft);
    auto* column = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    column->addLayout(row);
    if (const auto icon = iconOf(dialog, *style()); !icon.isNull()) {
        auto* label = new QLabel;
        label->setPixmap(icon);
        row->addWidget(label, 0, Qt::AlignTop);
    }
    auto* texts = new QVBoxLayout;
    row->addLayout(texts, 1);
    makeTexts(*texts);
    makeOptions(*texts);
    makeButtons(*column);
    if (!dialog.footer.empty()) {
        auto* line = new QFrame;
        line->setFrameShape(QFrame::HLine);
        column->addWidget(line);
        addText(*column, dialog.footer);
    }
}

QLabel* TaskWindow::addText(QBoxLayout& column, TextView text) {
    auto* label = new QLabel(richText(text));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setWordWrap(true);
    label->setMinimumWidth(kTextWidth);
    connect(label, &QLabel::linkActivated, this,
            [this](const QString& link) { tell(DialogNotice::hyperlink, 0, fromQt(link)); });
    column.addWidget(label);
    return label;
}

void TaskWindow::makeTexts(QBoxLayout& column) {
    if (!dialog_.headline.empty()) {
        auto* headline = addText(column, dialog_.headline);
        QFont font = headline->font();
        font.setPointSizeF(font.pointSizeF() * 1.3);
        headline->setFont(font);
    }
    if (!dialog_.body.empty()) addText(column, dialog_.body);
    if (dialog_.expanded.empty()) return;
    auto* more = addText(column, dialog_.expanded);
    more->hide();
    auto* button = new QPushButton(QString::fromUtf8("Mehr zeigen"));
    button->setCheckable(true);
    button->setFlat(true);
    button->setAutoDefault(false);
    connect(button, &QPushButton::toggled, this, [this, more, button](bool open) {
        more->setVisible(open);
        button->setText(QString::fromUtf8(open ? "Weniger zeigen" : "Mehr zeigen"));
        tell(DialogNotice::expand, open ? 1 : 0);
    });
    column.addWidget(button, 0, Qt::AlignLeft);
}

void TaskWindow::makeOptions(QBoxLayout& column) {
    for (const auto& option : dialog_.options) {
        auto* button = new QRadioButton(qt(option.caption));
        button->setChecked(option.number == dialog_.defaultOption);
        connect(button, &QRadioButton::clicked, this, [this, number = option.number] {
            answer_.option = number;
            tell(DialogNotice::optionClick, number);
        });
        column.addWidget(button);
    }
}

Text TaskWindow::captionOf(int32 button) const {
    for (const auto& own : dialog_.ownButtons)
        if (own.number == button) return own.caption;
    return Text(platform::usualCaption(button));
}

void TaskWindow::makeButtons(QBoxLayout& column) {
    auto* row = new QHBoxLayout;
    if (!dialog_.checkBox.empty()) {
        auto* box = new QCheckBox(qt(dialog_.checkBox));
        box->setChecked(dialog_.checked);
        connect(box, &QCheckBox::toggled, this, [this](bool on) {
            answer_.checked = on;
            tell(DialogNotice::verify, on ? 1 : 0);
        });
        row->addWidget(box);
    }
    row->addStretch();
    const auto isOwn = [&](int32 number) {
        return std::any_of(dialog_.ownButtons.begin(), dialog_.ownButtons.end(),
                           [&](const auto& own) { return own.number == number; });
    };
    for (const int32 number : dialog_.answers) {
        const QString caption = qt(captionOf(number));
        const bool link = dialog_.commandLinks && isOwn(number);
        QPushButton* button = link ? new QCommandLinkButton(caption) : new QPushButton(caption);
        button->setObjectName(QStringLiteral("answer%1").arg(number));
        button->setDefault(number == dialog_.defaultAnswer);
        button->setAutoDefault(number == dialog_.defaultAnswer);
        connect(button, &QPushButton::clicked, this, [this, number] { click(number); });
        if (link)
            column.addWidget(button);
        else
            row->addWidget(button);
    }
    if (!dialog_.helpFile.empty()) {
        auto* help = new QPushButton(QStringLiteral("Hilfe"));
        help->setShortcut(QKeySequence::HelpContents);
        help->setAutoDefault(false);
        connect(help, &QPushButton::clicked, this, [this] { tell(DialogNotice::help); });
        row->addWidget(help);
    }
    column.addLayout(row);
}

platform::DialogAnswer TaskWindow::hold() {
    age_.start();
    if (dialog_.timer) startTimer(kTick);
    tell(DialogNotice::constructed, static_cast<int32>(winId()));
    if (answer_.button == 0) tell(DialogNotice::created);
    if (answer_.button == 0) exec();
    tell_(DialogNotice::destroyed, 0, {});
    return answer_;
}

void TaskWindow::tell(DialogNotice notice, int32 value, TextView link) {
    if (const int32 button = tell_(notice, value, link); button != 0) click(button);
}

void TaskWindow::click(int32 button) {
    if (std::exchange(answer_.button, button) != 0) return;
    tell_(DialogNotice::buttonClick, button, {});
    done(QDialog::Accepted);
}

void TaskWindow::reject() {
    const auto& answers = dialog_.answers;
    if (std::find(answers.begin(), answers.end(), kCancel) != answers.end()) return click(kCancel);
    if (answers.size() == 1 && answers.front() == kOk) click(kOk);
}

void TaskWindow::closeEvent(QCloseEvent* event) {
    if (answer_.button == 0) reject();
    event->setAccepted(answer_.button != 0);
}

void TaskWindow::timerEvent(QTimerEvent*) { tell(DialogNotice::timer, static_cast<int32>(age_.elapsed())); }

}  // namespace tsRtm::desktop
