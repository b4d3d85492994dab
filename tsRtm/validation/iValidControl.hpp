#pragma once
// The form as validation sees it: its controls, their list, and the small picture beside a control. A toolkit
// implements these over its own.
#include <optional>

#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// Kinds of controls whose changes are heard; of the others only a call checks them.
enum eControlKind : int32 {
    ckOther = 0,
    ckTextBox = 1,
    ckComboBox = 2,
    ckOwnText = 3,  // the library's own text control
    ckRichText = 4,
};

// In twips, within the control's container.
struct ControlPlace {
    int32 Left = 0, Top = 0, Width = 0, Height = 0;
};

// An input control. Properties that a control may lack are not there unless they are overridden; what a
// property throws counts as not there.
class iValidControl : public Object {
 public:
    virtual tsRtm::Text Name() const = 0;
    // Place in a control array.
    virtual std::optional<int32> Index() const { return std::nullopt; }
    virtual eControlKind Kind() const = 0;
    // Name of the control's type; "RichTextBox" is of the kind ckRichText, whatever Kind says.
    virtual tsRtm::Text TypeName() const { return {}; }
    virtual std::optional<tsRtm::Text> Text() const { return std::nullopt; }
    virtual std::shared_ptr<Object> Container() const { return nullptr; }
    virtual ControlPlace Place() const = 0;
    virtual std::optional<bool> Visible() const { return std::nullopt; }
    virtual std::optional<bool> Enabled() const { return std::nullopt; }
    virtual std::optional<bool> Locked() const { return std::nullopt; }
    virtual std::optional<int32> MaxLength() const { return std::nullopt; }
    virtual std::optional<int32> Decimals() const { return std::nullopt; }
    virtual void SetFocus() {}
    // Calls the listener after each change of the text, until the subscription ends. Empty for a control that
    // tells nothing.
    [[nodiscard]] virtual Subscription OnChange(const std::function<void()>&) { return {}; }
};

// The status picture beside a control.
class iStatusPicture : public Object {
 public:
    // In twips.
    virtual int32 Width() const = 0;
    virtual int32 Height() const = 0;
    virtual void Move(int32 Left, int32 Top) = 0;
    virtual void Visible(bool value) = 0;
    virtual void ToolTipText(TextView value) = 0;
    // Shows the picture of this resource number; StatusPictureSvg has one for each.
    virtual void Load(int32 Resource) = 0;
    [[nodiscard]] virtual Subscription OnClick(const std::function<void()>& listener) = 0;
};

// The controls of a form.
class iControlList : public Object {
 public:
    // A new image control under this key: without border, stretched, of this size in twips, in this
    // container, in front of all else.
    virtual std::shared_ptr<iStatusPicture> AddPicture(TextView Key, int32 Width, int32 Height,
                                                       const std::shared_ptr<Object>& Container) = 0;
    // Raises 365 where it cannot be while one of the form's events is under way.
    virtual void Remove(TextView Key) = 0;
};

// A form that has a list of its controls; another one may be such a list itself.
class iValidForm : public Object {
 public:
    virtual std::shared_ptr<iControlList> Controls() const = 0;
};

}  // namespace tsRtm
