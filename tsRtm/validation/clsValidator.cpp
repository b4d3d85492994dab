#include "tsRtm/validation/clsValidator.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Dialogs.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"
#include "tsRtm/validation/texts/Quietly.hpp"

namespace tsRtm {
namespace {

constexpr int32 kPadding = 60;  // twips
constexpr int32 kInsideEvent = 365;

// What goes with each grade: the picture's resource number and the icon of the box.
struct GradeRow {
    eValidResult grade;
    int32 resource;
    int32 icon;
};
constexpr GradeRow kGrades[] = {
    {validInfo, 16005, dlgInformation},
    {validQuestion, 16003, dlgQuestion},
    {validWarning, 16004, dlgExclamation},
    {validError, 16002, dlgCritical},
};
const GradeRow* rowOf(eValidResult grade) noexcept {
    const auto* row = std::find_if(std::begin(kGrades), std::end(kGrades),
                                   [grade](const GradeRow& each) { return each.grade == grade; });
    return row == std::end(kGrades) ? nullptr : row;
}

}  // namespace

clsValidator::clsValidator(std::shared_ptr<iControlList> list, std::shared_ptr<iValidControl> control,
                           std::shared_ptr<iValidChecker> checker)
    : key_(KeyOf(control)),
      list_(std::move(list)),
      control_(std::move(control)),
      checker_(std::move(checker)),
      padding_(kPadding) {}

clsValidator::~clsValidator() { End(); }

std::shared_ptr<clsValidator> clsValidator::Bind(const std::shared_ptr<Object>& Frm,
                                                 const std::shared_ptr<iValidControl>& Ctrl,
                                                 const std::shared_ptr<iValidChecker>& Checker) {
    auto list = std::dynamic_pointer_cast<iControlList>(Frm);
    if (const auto form = std::dynamic_pointer_cast<iValidForm>(Frm))
        if (auto controls = quietly([&] { return form->Controls(); })) list = std::move(controls);
    if (!list || !Ctrl || !Checker) return nullptr;
    std::shared_ptr<clsValidator> validator(new clsValidator(std::move(list), Ctrl, Checker));
    validator->listen();
    return validator;
}

Text clsValidator::KeyOf(const std::shared_ptr<iValidControl>& Ctrl) {
    const int32 index = quietly([&] { return Ctrl->Index(); }).value_or(-1);
    return u"Val" + quietly([&] { return Ctrl->Name(); }) + (index >= 0 ? toText(index) : Text());
}

void clsValidator::listen() {
    if (quietly([&] { return control_->Index(); }).value_or(-1) >= 0) return;
    const bool heard = quietly([&] { return control_->Kind(); }) != ckOther ||
                       equalIgnoringCase(quietly([&] { return control_->TypeName(); }), u"RichTextBox");
    if (!heard) return;
    // The list may let go of the validator while it checks.
    quietly([&] {
        change_ = control_->OnChange([weak = weak_from_this()] {
            if (const auto self = weak.lock()) self->Check();
        });
    });
}

void clsValidator::End() {
    change_.end();
    click_.end();
    if (picture_) quietly([&] { list_->Remove(key_); });
    if (checker_) quietly([&] { checker_->Dispose(); });
    picture_.reset();
    list_.reset();
    control_.reset();
    checker_.reset();
}

void clsValidator::Alignment(eValidatorAlignment value) { alignment_ = value; }
void clsValidator::Padding(int32 value) { padding_ = value; }

void clsValidator::Check() {
    const auto control = control_;
    const auto checker = checker_;
    if (!checker) return;
    const Text text = quietly([&] { return control->Text(); }).value_or(Text());
    eValidResult result = validError;
    quietly([&] { result = checker->Check(control, text); });
    setGrade(result);
}

void clsValidator::setGrade(eValidResult grade) {
    if (!list_) return;
    if (grade != status_) {
        if (grade == validOK)
            takePictureAway();
        else
            showPicture(grade);
        status_ = grade;
    }
    // The message may be another one for the same grade.
    if (picture_) quietly([&] { picture_->ToolTipText(checker_->ErrorMsg()); });
}

void clsValidator::showPicture(eValidResult grade) {
    const auto* row = rowOf(grade);
    if (picture_) {
        quietly([&] { picture_->Visible(true); });
    } else {
        const auto& screen = rtmMain::state().screen;
        picture_ = quietly([&] {
            return list_->AddPicture(key_, screen.smallIconX * screen.twipsPerPixelX,
                                     screen.smallIconY * screen.twipsPerPixelY, control_->Container());
        });
        if (!picture_) return;
        quietly([&] {
            click_ = picture_->OnClick([weak = weak_from_this()] {
                if (const auto self = weak.lock()) self->explain();
            });
        });
        Refresh();
    }
    if (row) quietly([&] { picture_->Load(row->resource); });
}

void clsValidator::takePictureAway() {
    if (!picture_) return;
    try {
        list_->Remove(key_);
    } catch (const Failure& failure) {
        if (failure.Number() == kInsideEvent) {
            quietly([&] { picture_->Visible(false); });
            return;
        }
    } catch (const std::exception&) {  // it is forgotten all the same
    }
    click_.end();
    picture_.reset();
}

void clsValidator::Refresh() {
    if (!picture_) return;
    quietly([&] {
        const ControlPlace at = control_->Place();
        const bool right = (alignment_ & 1) != 0;
        const int32 left = right ? at.Left + at.Width + padding_ : at.Left - picture_->Width() - padding_;
        const int32 room = at.Height - picture_->Height();
        const int32 height = alignment_ / 2;  // 0 top, 1 middle, 2 bottom
        picture_->Move(left, height == 0 ? at.Top : at.Top + (height == 1 ? room / 2 : room));
    });
    const bool usable = quietly([&] { return control_->Visible(); }).value_or(true) &&
                        quietly([&] { return control_->Enabled(); }).value_or(true) &&
                        !quietly([&] { return control_->Locked(); }).value_or(false);
    quietly([&] { picture_->Visible(usable); });
}

void clsValidator::explain() {
    const auto row = rowOf(status_);
    const auto checker = checker_;
    if (!checker) return;
    Text text = quietly([&] { return checker->Msg(); });
    if (text.empty()) text = quietly([&] { return checker->ErrorMsg(); });
    quietly([&] { control_->SetFocus(); });
    // As it stands: an "@" in it parts nothing.
    platform::MessageBox box;
    box.title = u"Validator";
    box.body = std::move(text);
    box.buttons = dlgOKOnly | (row ? row->icon : 0);
    box.answers = plainButtons(dlgOKOnly);
    box.parent = rtmMain::state().appHWnd;
    logUnattended(box.body, rtmMain::system().dialogs.show(box));
}

}  // namespace tsRtm
