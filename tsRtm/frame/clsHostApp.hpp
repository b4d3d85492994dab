#pragma once
// The application that the library runs in.
#include <utility>

#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

// Name and path come from the running program; its version is known where the application has told it.
class clsHostApp : public Object {
 public:
    Text Name() const;  // file name of the program
    Text Path() const;  // its folder, without a delimiter at the end
    const Text& Version() const noexcept { return version_; }
    void Version(Text value) { version_ = std::move(value); }

 private:
    Text version_;
};

}  // namespace tsRtm
