#pragma once
// The numbers of the library in plain English.
#include <string>

#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::cli {

// An error number of a database: what it means and, where that helps, what to do.
std::string databaseErrorText(int32 number);
// What the operating system answered.
std::string systemErrorText(platform::SystemError error);

}  // namespace tsRtm::cli
