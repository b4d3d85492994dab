#pragma once
// The name of an operating system of the family whose rules the library follows.
#include "tsRtm/platform/SystemInfo.hpp"

namespace tsRtm {

// "Windows 10", "Windows Server 2008 R2", "Windows Version 6.5".
Text osName(const platform::OsVersion& os);

}  // namespace tsRtm
