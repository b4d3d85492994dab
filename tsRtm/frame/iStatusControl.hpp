#pragma once
// A control of the application that can show status text.
#include <optional>

#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// A bag of properties, each of which a control may lack: what is not overridden is not there. A setter
// answers whether the control has the property; what it throws counts as not taken.
class iStatusControl : public Object {
 public:
    // Name of the control's type; "StatusBar" in any case is written to by panel.
    virtual tsRtm::Text TypeName() const = 0;
    // Whether it is a label, which shows its Caption.
    virtual bool IsLabel() const { return false; }
    // Of a status bar: 0 has panels, others a SimpleText.
    virtual std::optional<int32> Style() const { return std::nullopt; }
    // Text of the first panel of a status bar.
    virtual bool PanelText(TextView) { return false; }
    virtual bool SimpleText(TextView) { return false; }
    virtual bool Caption(TextView) { return false; }
    virtual bool Text(TextView) { return false; }
    // The property a control has without a name.
    virtual bool DefaultProperty(TextView) { return false; }
    virtual void Refresh() {}
};

}  // namespace tsRtm
