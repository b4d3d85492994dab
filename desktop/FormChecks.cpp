#include "desktop/FormChecks.hpp"

#include <QEvent>
#include <QLayout>
#include <algorithm>

#include "desktop/fields/Field.hpp"
#include "desktop/fields/StatusPicture.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"
#include "tsRtm/validation/clsValidationHelper.hpp"

namespace tsRtm::desktop {
namespace {

// The pictures stand beside the fields: where the fields end at the edge of their parent, it gets room.
void makeRoom(const QWidget& field, const clsValidator& validator) {
    auto* layout = field.parentWidget() ? field.parentWidget()->layout() : nullptr;
    if (!layout) return;
    const auto& screen = rtmMain::state().screen;
    const int needed = screen.smallIconX + 2 * pixelsX(validator.Padding());
    QMargins margins = layout->contentsMargins();
    if (validator.Alignment() & 1)
        margins.setRight(std::max(margins.right(), needed));
    else
        margins.setLeft(std::max(margins.left(), needed));
    layout->setContentsMargins(margins);
}

}  // namespace

// A field has a list of its own, so that it can go alone.
struct FormChecks::Entry {
    explicit Entry(QWidget& of) : widget(&of), pictures(std::make_shared<StatusPictures>(of)) {}

    const QWidget* widget;  // only its address: it may be gone
    std::shared_ptr<StatusPictures> pictures;
    std::shared_ptr<Field> field;
    clsValidationHelper checks;
    std::shared_ptr<clsValidator> validator;
    QMetaObject::Connection gone;
};

// Lets the pictures follow their fields.
class FormChecks::Watch final : public QObject {
 public:
    explicit Watch(const FormChecks& checks) : checks_(checks) {}
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
            case QEvent::Move:
            case QEvent::Resize:
            case QEvent::ShowToParent:
            case QEvent::HideToParent:
            case QEvent::EnabledChange:
            case QEvent::ReadOnlyChange:
                if (const auto entry = checks_.find(static_cast<QWidget*>(watched))) entry->checks.Resize();
                break;
            default:
                break;
        }
        return false;
    }

 private:
    const FormChecks& checks_;
};

FormChecks::FormChecks() : watch_(std::make_unique<Watch>(*this)) { rtmMain::ensureStarted(); }
FormChecks::~FormChecks() { clear(); }

std::shared_ptr<FormChecks::Entry> FormChecks::find(const QWidget* field) const {
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const auto& entry) { return entry->widget == field; });
    return at == entries_.end() ? nullptr : *at;
}

std::shared_ptr<clsValidator> FormChecks::add(QWidget& field, eValidatorType type, int32 options,
                                              TextView errorMsg, TextView description, TextView params,
                                              const std::shared_ptr<iValidChecker>& checker) {
    const auto before = find(&field);
    const auto entry = before ? before : std::make_shared<Entry>(field);
    auto control = Field::of(field, checker ? Spelling::plain : spellingOf(type));
    auto validator =
        entry->checks.Add(entry->pictures, control, type, options, errorMsg, description, params, checker);
    if (!validator) return nullptr;
    entry->field = std::move(control);
    entry->validator = validator;
    makeRoom(field, *validator);
    if (before) return validator;
    entries_.push_back(entry);
    field.installEventFilter(watch_.get());
    entry->gone = QObject::connect(&field, &QObject::destroyed, watch_.get(),
                                   [this, widget = &field] { drop(widget); });
    return validator;
}

void FormChecks::remove(QWidget& field) {
    drop(&field);
    field.removeEventFilter(watch_.get());
}

void FormChecks::drop(const QWidget* field) {
    const auto entry = find(field);
    if (!entry) return;
    std::erase(entries_, entry);
    QObject::disconnect(entry->gone);
    entry->checks.Clear();
}

void FormChecks::clear() {
    while (!entries_.empty()) drop(entries_.back()->widget);
}

eValidResult FormChecks::status() const {
    eValidResult worst = validOK;
    for (const auto& entry : entries_) worst = std::max(worst, entry->checks.Status());
    return worst;
}

eValidResult FormChecks::status(const QWidget& field) const {
    const auto entry = find(&field);
    return entry ? entry->checks.Status() : validOK;
}

Text FormChecks::value(const QWidget& field) const {
    const auto entry = find(&field);
    return entry ? entry->field->Text().value_or(Text()) : Text();
}

void FormChecks::check(const QWidget& field) {
    if (const auto entry = find(&field)) entry->validator->Check();
}

}  // namespace tsRtm::desktop
