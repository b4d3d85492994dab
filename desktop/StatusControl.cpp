#include "desktop/StatusControl.hpp"

#include <QLabel>
#include <QMetaProperty>
#include <QPointer>
#include <QStatusBar>

#include "desktop/paper/Qt.hpp"
#include "tsRtm/frame/iStatusControl.hpp"

namespace tsRtm::desktop {
namespace {

constexpr int32 kPanels = 0, kSimple = 1;

class Control final : public iStatusControl {
 public:
    explicit Control(QWidget& widget) : widget_(&widget) {}

    tsRtm::Text TypeName() const override {
        if (bar()) return u"StatusBar";
        return widget_ ? fromQt(QString::fromLatin1(widget_->metaObject()->className())) : tsRtm::Text();
    }
    bool IsLabel() const override { return label(); }
    std::optional<int32> Style() const override {
        if (!bar()) return std::nullopt;
        return panel() ? kPanels : kSimple;
    }
    bool PanelText(TextView text) override { return put(panel(), text); }
    bool SimpleText(TextView text) override {
        if (auto* found = bar()) return found->showMessage(qt(text)), true;
        return false;
    }
    bool Caption(TextView text) override { return label() ? put(label(), text) : set("title", text); }
    bool Text(TextView text) override { return set("text", text); }
    bool DefaultProperty(TextView text) override {
        return widget_ && widget_->metaObject()->userProperty().write(widget_, qt(text));
    }
    void Refresh() override {
        if (widget_) widget_->repaint();
    }

 private:
    QStatusBar* bar() const { return qobject_cast<QStatusBar*>(widget_); }
    QLabel* label() const { return qobject_cast<QLabel*>(widget_); }
    QLabel* panel() const {
        return bar() ? bar()->findChild<QLabel*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
    }
    // As it stands: names of files may look like tags.
    static bool put(QLabel* label, TextView text) {
        if (!label) return false;
        label->setTextFormat(Qt::PlainText);
        label->setText(qt(text));
        return true;
    }
    bool set(const char* property, TextView text) {
        return widget_ && widget_->metaObject()->indexOfProperty(property) >= 0 &&
               widget_->setProperty(property, qt(text));
    }

    QPointer<QWidget> widget_;
};

}  // namespace

std::shared_ptr<Object> statusControl(QWidget& widget) { return std::make_shared<Control>(widget); }

}  // namespace tsRtm::desktop
