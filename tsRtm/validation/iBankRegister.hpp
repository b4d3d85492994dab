#pragma once
// What the banking checker asks a register of banks.
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// Whoever brings a register puts it into rtmMain::plugged().bankRegister. Without one, and while it is not
// open, the form of a value alone decides.
class iBankRegister : public Object {
 public:
    // Whether it can be asked; opens it where that has not been done.
    virtual bool IsOpen() = 0;
    // Name of a bank by its code or BIC, empty where it is unknown.
    virtual Text Name(TextView BLZorBIC) = 0;
    // Whether there is a record of this code or BIC.
    virtual bool HasRecord(TextView BICorBLZ) = 0;
};

}  // namespace tsRtm
