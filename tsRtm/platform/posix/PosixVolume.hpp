#pragma once
// The file system on which a file lies.
#include <string>

#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::platform::posix {

struct Volume {
    Text fileSystem;  // "ext4", "nfs" ..., the number in hexadecimal digits where it has no name here
    int32 maxComponent = 255;  // bytes
    DriveKind kind = DriveKind::unknown;
};

// DriveKind::unknown where the system gives no answer.
Volume volumeOf(int descriptor);
Volume volumeOf(const std::string& path);

// Who answers for an open file. Elsewhere or by a program: caches of this machine may stand before it; so it
// counts as elsewhere where nothing is known.
enum class ServedBy { thisMachine, elsewhere, program };
ServedBy servedBy(int descriptor) noexcept;

}  // namespace tsRtm::platform::posix
