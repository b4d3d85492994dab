#pragma once
// Descriptors of what lies outside the record.
#include <string>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// A memo field as the control file tells it.
class clsMemo {
 public:
    clsMemo(int32 Breit, int32 Feld) noexcept : breit_(Breit), feld_(Feld) {}
    // The block length of the control file, in characters.
    int32 Breit() const noexcept { return breit_; }
    // Field number, 1-based.
    int32 Feld() const noexcept { return feld_; }

 private:
    int32 breit_;
    int32 feld_;
};

}  // namespace tsRtm
