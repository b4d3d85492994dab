#pragma once
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// An object whose properties clsTSRecord::GetObject fills from the fields that name them.
class iPropertyTarget {
 public:
    virtual ~iPropertyTarget() = default;
    // False where it has no such property.
    virtual bool Set(TextView Name, TextView Wert) = 0;
};

}  // namespace tsRtm
