#pragma once
// The one exception type of the library: the raised route of failures.
#include <exception>

#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// A raised failure: a run-time error number by its general meaning (5 invalid call, 9 index, 53 file not
// found, 70 no permission, 91 object missing, 380 bad value, 445 action not supported ...), the class or
// operation it comes from, and a German description.
class Failure : public std::exception {
 public:
    Failure(int32 Number, TextView Source, TextView Description);

    int32 Number() const noexcept { return number_; }
    const Text& Source() const noexcept { return source_; }
    const Text& Description() const noexcept { return description_; }
    // "Source: Description (Number)" in UTF-8.
    const char* what() const noexcept override { return what_.c_str(); }

 private:
    int32 number_;
    Text source_;
    Text description_;
    std::string what_;
};

[[noreturn]] void raise(int32 Number, TextView Source, TextView Description);

}  // namespace tsRtm
