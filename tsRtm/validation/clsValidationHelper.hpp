#pragma once
// The validators of a form.
//
//     clsValidationHelper checks;
//     checks.Add(form, txtBetrag, Numeric, voRequired | voError, {}, {}, u"/Min:1 /Max:12500");
//     checks.Add(form, txtIBAN, IBAN);
//     ...
//     if (checks.Status() < validError) save();
#include <vector>

#include "tsRtm/validation/clsValidator.hpp"

namespace tsRtm {

// One list a form. Nothing here raises.
class clsValidationHelper {
 public:
    clsValidationHelper() = default;
    ~clsValidationHelper();
    clsValidationHelper(const clsValidationHelper&) = delete;
    clsValidationHelper& operator=(const clsValidationHelper&) = delete;

    // Binds a checker to a control and checks it once. The checker is the one given, or made by Typ: its
    // options are those given with the mode of the type, its texts those given. Params, for types that have
    // them: "/Min:1 /Max:10" for numbers and dates ("D-30" is a day from today), "/Pattern:..." for IsLike. A
    // validator that the control had before goes. Nothing, and nothing changes, for a type that is none, and
    // where the form or the control cannot be bound.
    std::shared_ptr<clsValidator> Add(const std::shared_ptr<Object>& Frm,
                                      const std::shared_ptr<iValidControl>& Ctrl, eValidatorType Typ,
                                      int32 Options = 0, TextView ErrorMsg = {}, TextView Description = {},
                                      TextView Params = {},
                                      const std::shared_ptr<iValidChecker>& ValidChecker = nullptr);
    // Ends all validators.
    void Clear();
    // To be called when the form has another size.
    void Resize();
    // The worst grade of all, or that of one control; validOK for a control without validator.
    eValidResult Status(const std::shared_ptr<iValidControl>& Ctrl = nullptr) const;
    void Check(const std::shared_ptr<iValidControl>& Ctrl);

 private:
    struct Entry {
        Text key;
        std::shared_ptr<clsValidator> validator;
    };
    std::shared_ptr<clsValidator> find(const std::shared_ptr<iValidControl>& Ctrl) const;

    std::vector<Entry> entries_;
};

}  // namespace tsRtm
