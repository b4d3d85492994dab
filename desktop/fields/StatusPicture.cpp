#include "desktop/fields/StatusPicture.hpp"

#include <QAbstractButton>
#include <QPainter>
#include <QSvgRenderer>

#include "desktop/paper/Qt.hpp"
#include "tsRtm/validation/clsValidator.hpp"

namespace tsRtm::desktop {
namespace {

// Draws itself at the density of its screen.
class Button final : public QAbstractButton {
 public:
    explicit Button(QWidget* parent) : QAbstractButton(parent) {
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::PointingHandCursor);
    }
    QSvgRenderer svg;

 protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        svg.render(&painter, rect());
    }
};

class Picture final : public iStatusPicture {
 public:
    Picture(Button& button, QPointer<QWidget> field) : button_(&button), field_(std::move(field)) {
        QObject::connect(&button, &QAbstractButton::clicked, [clicked = std::weak_ptr(clicked_)] {
            if (const auto event = clicked.lock()) (*event)();
        });
    }
    int32 Width() const override { return button_ ? twipsX(button_->width()) : 0; }
    int32 Height() const override { return button_ ? twipsY(button_->height()) : 0; }
    void Move(int32 Left, int32 Top) override {
        if (button_) button_->move(pixelsX(Left), pixelsY(Top));
    }
    void Visible(bool value) override {
        if (button_) button_->setVisible(value);
    }
    void ToolTipText(TextView value) override {
        const QString text = qt(value);
        if (button_) {
            // As it stands: what the user has typed may look like a tag.
            button_->setToolTip(QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()));
            button_->setAccessibleName(text);
        }
        if (field_) {
            field_->setAccessibleDescription(text);
            field_->setWhatsThis(text.toHtmlEscaped());
        }
    }
    void Load(int32 Resource) override {
        if (!button_) return;
        const BytesView svg = StatusPictureSvg(Resource);
        button_->svg.load(
            QByteArray(reinterpret_cast<const char*>(svg.data()), static_cast<qsizetype>(svg.size())));
        button_->update();
    }
    Subscription OnClick(const std::function<void()>& listener) override {
        return clicked_->connect(listener);
    }

 private:
    QPointer<Button> button_;
    QPointer<QWidget> field_;
    std::shared_ptr<Event<>> clicked_ = std::make_shared<Event<>>();
};

}  // namespace

std::shared_ptr<iStatusPicture> StatusPictures::AddPicture(TextView, int32 Width, int32 Height,
                                                           const std::shared_ptr<Object>&) {
    if (!field_ || !field_->parentWidget()) return nullptr;
    auto* button = new Button(field_->parentWidget());
    button->resize(pixelsX(Width), pixelsY(Height));
    button->raise();
    picture_ = button;
    return std::make_shared<Picture>(*button, field_);
}

void StatusPictures::Remove(TextView) {
    if (field_) {
        field_->setAccessibleDescription({});
        field_->setWhatsThis({});
    }
    if (!picture_) return;
    picture_->hide();
    // Later: its own click may have led here.
    picture_->deleteLater();
    picture_ = nullptr;
}

}  // namespace tsRtm::desktop
