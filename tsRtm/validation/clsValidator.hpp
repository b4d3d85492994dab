#pragma once
// One checker bound to one control, and the picture beside it that shows the grade.
#include "tsRtm/validation/iValidChecker.hpp"

namespace tsRtm {

// Made by clsValidationHelper::Add. Checks at each change of the control's text; a control of an array only
// when Check is called. Never fails: what the control, the form or the checker throws stays here, and a
// checker that throws has graded an error.
//
// While the grade is not validOK a picture stands beside the control, with the checker's message as its tool
// tip; a click on it shows the explanation in a box.
class clsValidator : public std::enable_shared_from_this<clsValidator> {
 public:
    // Frm is an iValidForm, or an iControlList itself. Nothing where one of the three is missing.
    static std::shared_ptr<clsValidator> Bind(const std::shared_ptr<Object>& Frm,
                                              const std::shared_ptr<iValidControl>& Ctrl,
                                              const std::shared_ptr<iValidChecker>& Checker);
    // Takes the picture away and disposes of the checker.
    ~clsValidator();
    clsValidator(const clsValidator&) = delete;
    clsValidator& operator=(const clsValidator&) = delete;

    // By which lists know the validator of a control: "Val", the control's name and its index in an array.
    static Text KeyOf(const std::shared_ptr<iValidControl>& Ctrl);

    const std::shared_ptr<iValidChecker>& Checker() const noexcept { return checker_; }
    eValidatorAlignment Alignment() const noexcept { return alignment_; }
    void Alignment(eValidatorAlignment value);
    // Between control and picture, in twips.
    int32 Padding() const noexcept { return padding_; }
    void Padding(int32 value);
    // Moves the picture to its place, and shows it where the control can be typed into.
    void Refresh();
    eValidResult Status() const noexcept { return status_; }
    // Reads the control's text and grades it.
    void Check();
    // As the destructor; the validator is of no more use.
    void End();

 private:
    clsValidator(std::shared_ptr<iControlList> list, std::shared_ptr<iValidControl> control,
                 std::shared_ptr<iValidChecker> checker);
    void listen();
    void setGrade(eValidResult grade);
    void showPicture(eValidResult grade);
    void takePictureAway();
    void explain();

    Text key_;
    std::shared_ptr<iControlList> list_;
    std::shared_ptr<iValidControl> control_;
    std::shared_ptr<iValidChecker> checker_;
    std::shared_ptr<iStatusPicture> picture_;
    Subscription change_;
    Subscription click_;
    eValidatorAlignment alignment_ = MiddleRight;
    int32 padding_;
    eValidResult status_ = validOK;
};

// The picture of a resource number as SVG, 16 by 16; empty for a number that is none. 16002 is an error,
// 16003 a question, 16004 a warning, 16005 information.
BytesView StatusPictureSvg(int32 Resource) noexcept;

}  // namespace tsRtm
