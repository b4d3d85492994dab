#pragma once
#include <QMetaObject>
#include <QPointer>
#include <QWidget>
#include <vector>

#include "desktop/fields/Spelling.hpp"
#include "tsRtm/validation/iValidControl.hpp"

class QLineEdit;

namespace tsRtm::desktop {

// A line edit, combo box or label as validation sees it; nothing but its name once the widget is gone.
class Field final : public iValidControl, public std::enable_shared_from_this<Field> {
 public:
    // Nothing for another widget.
    static std::shared_ptr<Field> of(QWidget& widget, Spelling spelling);
    ~Field() override;

    QWidget* widget() const { return widget_; }
    // A field that was left shows its value in full.
    void left();

    tsRtm::Text Name() const override { return name_; }
    eControlKind Kind() const override { return kind_; }
    tsRtm::Text TypeName() const override;
    std::optional<tsRtm::Text> Text() const override;
    ControlPlace Place() const override;
    std::optional<bool> Visible() const override;
    std::optional<bool> Enabled() const override;
    std::optional<bool> Locked() const override;
    std::optional<int32> MaxLength() const override;
    void SetFocus() override;
    Subscription OnChange(const std::function<void()>& listener) override;

 private:
    Field(QWidget& widget, eControlKind kind, Spelling spelling);
    void listen();
    void changed();
    QLineEdit* edit() const;
    QString shown() const;

    QPointer<QWidget> widget_;
    tsRtm::Text name_;
    eControlKind kind_;
    Spelling spelling_;
    Event<> change_;
    bool telling_ = false;
    std::vector<QMetaObject::Connection> connections_;
};

}  // namespace tsRtm::desktop
