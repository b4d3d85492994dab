#include "desktop/dialogs/TaskWindow.hpp"

#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QCommandLinkButton>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QSvgRenderer>
#include <QTextDocumentFragment>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/dialogs/Captions.hpp"
#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

using platform::DialogIcon;
using platform::DialogNotice;

constexpr int kIconSize = 32;
constexpr int kTextWidth = 420;
constexpr int kTick = 200;  // milliseconds
constexpr int32 kOk = 1, kCancel = 2;

// The dialog's own picture, sharp at any density of the screen.
QPixmap drawn(BytesView svg, qreal density) {
    QPixmap picture(QSize(kIconSize, kIconSize) * density);
    picture.fill(Qt::transparent);
    QSvgRenderer renderer(
        QByteArray(reinterpret_cast<const char*>(svg.data()), static_cast<qsizetype>(svg.size())));
    QPainter painter(&picture);
    renderer.render(&painter, picture.rect());
    picture.setDevicePixelRatio(density);
    return picture;
}

QString answerName(int32 answer) { return QStringLiteral("answer%1").arg(answer); }

struct IconRow {
    DialogIcon icon;
    QStyle::StandardPixmap pixmap;
    const char* name;  // for those who do not see it
};
constexpr IconRow kIcons[] = {
    {DialogIcon::information, QStyle::SP_MessageBoxInformation, "Hinweis"},
    {DialogIcon::warning, QStyle::SP_MessageBoxWarning, "Warnung"},
    {DialogIcon::stop, QStyle::SP_MessageBoxCritical, "Fehler"},
    {DialogIcon::shield, QStyle::SP_VistaShield, "Sicherheit"},
    {DialogIcon::picture, QStyle::SP_MessageBoxQuestion, "Frage"},
};

// Where the beginning of a tag stands, which may be written in capitals or not.
std::size_t findTag(TextView text, TextView tag, std::size_t from = 0) {
    const auto at = std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), tag.begin(),
                                tag.end(), [](char16_t a, char16_t b) { return upper(a) == b; });
    return at == text.end() ? TextView::npos : static_cast<std::size_t>(at - text.begin());
}

}  // namespace

QString richText(TextView text) {
    constexpr TextView kOpen = u"<A HREF=\"", kMiddle = u"\">", kClose = u"</A>";
    const auto plain = [](TextView part) {
        const Text lines = replaceAll(replaceAll(part, u"\r\n", u"\n"), u"\r", u"\n");
        return qt(lines).toHtmlEscaped().replace(QChar(u'\n'), QStringLiteral("<br>"));
    };
    QString rich;
    for (auto at = findTag(text, kOpen); at != TextView::npos; at = findTag(text, kOpen)) {
        const auto middle = text.find(kMiddle, at + kOpen.size());
        const auto close = middle == TextView::npos ? middle : findTag(text, kClose, middle);
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
    outcome_->answer.option = dialog.defaultOption;
    outcome_->answer.checked = dialog.checked;
    setWindowTitle(qt(dialog.title));
    setModal(true);
    if (dialog.rightToLeft) setLayoutDirection(Qt::RightToLeft);
    auto* column = new QVBoxLayout(this);
    // As large as its texts are, also when more of them shows.
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto* row = new QHBoxLayout;
    column->addLayout(row);
    makeIcon(*row);
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
    // Else it would be with a text, since those can be selected.
    if (auto* usual = findChild<QPushButton*>(answerName(dialog.defaultAnswer))) usual->setFocus();
    // Read out when it opens.
    setAccessibleDescription(qt(dialog.headline + u"\n" + dialog.body));
}

void TaskWindow::makeIcon(QBoxLayout& row) {
    for (const auto& [icon, pixmap, name] : kIcons) {
        if (icon != dialog_.icon) continue;
        auto* label = new QLabel;
        label->setPixmap(icon == DialogIcon::picture ? drawn(dialog_.picture, devicePixelRatioF())
                                                     : style()->standardIcon(pixmap).pixmap(kIconSize));
        label->setAccessibleName(QString::fromUtf8(name));
        row.addWidget(label, 0, Qt::AlignTop);
    }
}

// Gives the label, or what it scrolls in where it is too high for the screen.
QWidget* TaskWindow::addText(QBoxLayout& column, TextView text, double size) {
    auto* label = new QLabel(richText(text));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
    label->setWordWrap(true);
    label->setMinimumWidth(kTextWidth);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * size);
    label->setFont(font);
    connect(label, &QLabel::linkActivated, this,
            [this](const QString& link) { tell(DialogNotice::hyperlink, 0, fromQt(link)); });
    const int most = QGuiApplication::primaryScreen()->availableSize().height() / 2;
    if (label->heightForWidth(kTextWidth) <= most) {
        column.addWidget(label);
        return label;
    }
    auto* area = new QScrollArea;
    area->setWidget(label);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFixedSize(kTextWidth + style()->pixelMetric(QStyle::PM_ScrollBarExtent), most);
    column.addWidget(area);
    return area;
}

void TaskWindow::makeTexts(QBoxLayout& column) {
    constexpr double kHeadline = 1.3;
    if (!dialog_.headline.empty()) addText(column, dialog_.headline, kHeadline);
    if (!dialog_.body.empty()) addText(column, dialog_.body);
    if (dialog_.expanded.empty()) return;
    auto* more = addText(column, dialog_.expanded);
    more->hide();
    auto* button = new QPushButton(QStringLiteral("&Mehr zeigen"));
    button->setCheckable(true);
    button->setFlat(true);
    button->setAutoDefault(false);
    connect(button, &QPushButton::toggled, this, [this, more, button](bool open) {
        more->setVisible(open);
        button->setText(QString::fromUtf8(open ? "&Weniger zeigen" : "&Mehr zeigen"));
        tell(DialogNotice::expand, open ? 1 : 0);
    });
    column.addWidget(button, 0, Qt::AlignLeft);
}

void TaskWindow::makeOptions(QBoxLayout& column) {
    for (const auto& option : dialog_.options) {
        auto* button = new QRadioButton(qt(option.caption));
        button->setChecked(option.number == dialog_.defaultOption);
        connect(button, &QRadioButton::clicked, this, [this, number = option.number] {
            outcome_->answer.option = number;
            tell(DialogNotice::optionClick, number);
        });
        column.addWidget(button);
    }
}

QString TaskWindow::captionOf(int32 button) const {
    for (const auto& own : dialog_.ownButtons)
        if (own.number == button) return qt(own.caption);
    return captionOfAnswer(button);
}

void TaskWindow::makeButtons(QBoxLayout& column) {
    auto* row = new QHBoxLayout;
    if (!dialog_.checkBox.empty()) {
        auto* box = new QCheckBox(qt(dialog_.checkBox));
        box->setChecked(dialog_.checked);
        connect(box, &QCheckBox::toggled, this, [this](bool on) {
            outcome_->answer.checked = on;
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
        const QString caption = captionOf(number);
        const bool link = dialog_.commandLinks && isOwn(number);
        QPushButton* button = link ? new QCommandLinkButton(caption) : new QPushButton(caption);
        button->setObjectName(answerName(number));
        button->setAutoDefault(number == dialog_.defaultAnswer);
        button->setDefault(number == dialog_.defaultAnswer);
        connect(button, &QPushButton::clicked, this, [this, number] { click(number); });
        if (link)
            column.addWidget(button);
        else
            row->addWidget(button);
    }
    if (!dialog_.helpFile.empty()) {
        auto* help = new QPushButton(caption(sidHelp));
        help->setShortcut(QKeySequence::HelpContents);
        help->setAutoDefault(false);
        connect(help, &QPushButton::clicked, this, [this] { tell(DialogNotice::help); });
        row->addWidget(help);
    }
    column.addLayout(row);
}

platform::DialogAnswer TaskWindow::ask(const platform::TaskDialog& dialog,
                                       const platform::DialogListener& tell, QWidget* parent) {
    const QPointer<TaskWindow> window(new TaskWindow(dialog, tell, parent));
    const auto outcome = window->outcome_;
    window->hold();
    delete window;
    if (outcome->thrown) std::rethrow_exception(outcome->thrown);
    if (outcome->answer.button == 0) outcome->answer.button = platform::safeAnswer(dialog);
    tell(DialogNotice::destroyed, 0, {});
    return outcome->answer;
}

void TaskWindow::hold() {
    const QPointer<TaskWindow> self(this);
    const auto open = [self] {
        return self && self->outcome_->answer.button == 0 && !self->outcome_->thrown;
    };
    age_.start();
    if (dialog_.timer) startTimer(kTick);
    tell(DialogNotice::constructed, static_cast<int32>(winId()));
    if (open()) tell(DialogNotice::created);
    if (open()) exec();
}

// What the listener throws must not go through the toolkit: it waits for the end of the dialog.
int32 TaskWindow::heard(DialogNotice notice, int32 value, TextView link) {
    const auto outcome = outcome_;
    try {
        return tell_(notice, value, link);
    } catch (...) {
        if (!outcome->thrown) outcome->thrown = std::current_exception();
        return 0;
    }
}

void TaskWindow::tell(DialogNotice notice, int32 value, TextView link) {
    const QPointer<TaskWindow> self(this);
    const bool outer = std::exchange(telling_, true);
    const int32 button = heard(notice, value, link);
    if (!self) return;
    telling_ = outer;
    if (outcome_->thrown)
        done(QDialog::Rejected);
    else if (button != 0)
        click(button);
}

void TaskWindow::click(int32 button) {
    if (std::exchange(outcome_->answer.button, button) != 0) return;
    const QPointer<TaskWindow> self(this);
    heard(DialogNotice::buttonClick, button, {});
    if (self) done(QDialog::Accepted);
}

void TaskWindow::reject() {
    const auto& answers = dialog_.answers;
    if (std::find(answers.begin(), answers.end(), kCancel) != answers.end()) return click(kCancel);
    if (answers.size() == 1 && answers.front() == kOk) click(kOk);
}

void TaskWindow::closeEvent(QCloseEvent* event) {
    if (outcome_->answer.button == 0) reject();
    event->setAccepted(outcome_->answer.button != 0);
}

// Not while the listener is still busy with an earlier notice, or with the answer: its own dialog lets time pass,
// too.
void TaskWindow::timerEvent(QTimerEvent*) {
    if (!telling_ && outcome_->answer.button == 0) tell(DialogNotice::timer, static_cast<int32>(age_.elapsed()));
}

void TaskWindow::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        QString all;
        for (const auto* label : findChildren<QLabel*>())
            if (label->isVisible() && !label->text().isEmpty())
                all += QTextDocumentFragment::fromHtml(label->text()).toPlainText() + u'\n';
        return QGuiApplication::clipboard()->setText(all);
    }
    if (event->modifiers() == Qt::NoModifier && !event->text().isEmpty())
        for (auto* button : findChildren<QAbstractButton*>()) {
            const QKeySequence mnemonic = button->shortcut();
            if (mnemonic.isEmpty() || mnemonic[0].key() != event->key() || !button->isEnabled()) continue;
            return button->click();
        }
    QDialog::keyPressEvent(event);
}

}  // namespace tsRtm::desktop
