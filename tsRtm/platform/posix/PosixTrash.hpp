#pragma once
// The waste-paper basket after the freedesktop.org trash rules (version 1.0).
#include <string>

#include "tsRtm/platform/SystemError.hpp"

namespace tsRtm::platform::posix {

// Moves a file into the basket of the user: the one in the data folder, or the one at the top of the volume
// on which the file lies. notSupported where that volume has none and none can be made; the file is where it
// was after any error.
[[nodiscard]] SystemError moveToTrash(const std::string& path);

}  // namespace tsRtm::platform::posix
