#pragma once
// The error numbers of POSIX in the words of the library.
#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform::posix {

// The one place where errno becomes a SystemError; 0 gives none, an unknown number deviceError.
SystemError fromErrno(int number) noexcept;
// Of the call that failed last.
SystemError lastError() noexcept;

}  // namespace tsRtm::platform::posix
