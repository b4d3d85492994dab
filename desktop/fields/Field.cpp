#include "desktop/fields/Field.hpp"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

#include "desktop/fields/StatusPicture.hpp"
#include "desktop/paper/Qt.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int kNoLimit = 32767;  // of a line edit that nobody has limited

}  // namespace

std::shared_ptr<Field> Field::of(QWidget& widget, Spelling spelling) {
    const eControlKind kind = qobject_cast<QLineEdit*>(&widget)   ? ckTextBox
                              : qobject_cast<QComboBox*>(&widget) ? ckComboBox
                                                                  : ckOther;
    if (kind == ckOther && !qobject_cast<QLabel*>(&widget)) return nullptr;
    std::shared_ptr<Field> field(new Field(widget, kind, spelling));
    field->listen();
    return field;
}

Field::Field(QWidget& widget, eControlKind kind, Spelling spelling)
    : widget_(&widget), name_(fromQt(widget.objectName())), kind_(kind), spelling_(spelling) {}

Field::~Field() {
    for (const auto& connection : connections_) QObject::disconnect(connection);
}

void Field::listen() {
    const auto call = [weak = weak_from_this()](void (Field::*what)()) {
        if (const auto self = weak.lock()) (self.get()->*what)();
    };
    const auto onChange = [call] { call(&Field::changed); };
    if (auto* box = qobject_cast<QComboBox*>(widget_))
        connections_.push_back(QObject::connect(box, &QComboBox::currentTextChanged, onChange));
    else if (edit())
        connections_.push_back(QObject::connect(edit(), &QLineEdit::textChanged, onChange));
    if (edit() && spelling_ != Spelling::plain)
        connections_.push_back(
            QObject::connect(edit(), &QLineEdit::editingFinished, [call] { call(&Field::left); }));
}

QLineEdit* Field::edit() const {
    if (auto* box = qobject_cast<QComboBox*>(widget_)) return box->lineEdit();
    return qobject_cast<QLineEdit*>(widget_);
}

QString Field::shown() const {
    if (const auto* box = qobject_cast<QComboBox*>(widget_)) return box->currentText();
    if (const auto* label = qobject_cast<QLabel*>(widget_)) return label->text();
    return edit() ? edit()->text() : QString();
}

void Field::left() {
    const QString full = qt(inFull(spelling_, fromQt(shown())));
    if (edit() && !edit()->isReadOnly() && full != shown()) edit()->setText(full);
}

// A checker may change the text that it checks: that is checked once more, but not for ever, and the caret
// stays where the user types.
void Field::changed() {
    if (telling_) return;
    telling_ = true;
    const QString before = shown();
    const int caret = edit() ? edit()->cursorPosition() : 0;
    change_();
    if (shown() != before) {
        change_();
        if (edit() && edit()->hasFocus()) edit()->setCursorPosition(caret);
    }
    telling_ = false;
}

tsRtm::Text Field::TypeName() const {
    return widget_ ? fromQt(QString::fromLatin1(widget_->metaObject()->className())) : tsRtm::Text();
}

std::optional<tsRtm::Text> Field::Text() const {
    if (!widget_) return std::nullopt;
    return valueOf(spelling_, fromQt(shown()));
}

ControlPlace Field::Place() const {
    if (!widget_) return {};
    const QRect place = widget_->geometry();
    return {twipsX(place.left()), twipsY(place.top()), twipsX(place.width()), twipsY(place.height())};
}

std::optional<bool> Field::Visible() const {
    return widget_ && widget_->isVisibleTo(widget_->parentWidget());
}
std::optional<bool> Field::Enabled() const { return widget_ && widget_->isEnabled(); }

std::optional<bool> Field::Locked() const {
    if (!edit()) return std::nullopt;
    return edit()->isReadOnly();
}

std::optional<int32> Field::MaxLength() const {
    if (!edit() || edit()->maxLength() == kNoLimit) return std::nullopt;
    return edit()->maxLength();
}

void Field::SetFocus() {
    if (widget_) widget_->setFocus();
}

Subscription Field::OnChange(const std::function<void()>& listener) { return change_.connect(listener); }

}  // namespace tsRtm::desktop
