#pragma once
// The desktop as the commands of paper need it. The tool proper starts without it: there attach() hands the
// command over to the program beside it that has one.
#include <memory>

#include "tsRtm/platform/Previews.hpp"

namespace tsRtm::cli {

class Paper {
 public:
    virtual ~Paper() = default;
    // A page as a picture of so many dots an inch.
    virtual platform::SystemError savePicture(const platform::PageSource& page, TextView name,
                                              int32 dotsPerInch) = 0;
};

// From now on the library has paper, as long as the object lasts. With `windows` a preview can be shown.
// Throws a CliError where this build has no paper, or the screen is missing.
std::unique_ptr<Paper> attachPaper(bool windows);

}  // namespace tsRtm::cli
