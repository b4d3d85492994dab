#pragma once
// From the names of the library to the paths of the system.
#include <string>

#include "tsRtm/platform/SystemError.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm::platform::posix {

// A path as the system takes it, UTF-8 or whatever bytes the folder holds.
struct FoundPath {
    std::string path;
    bool exists = false;  // false: the folder is there, its last component keeps the name as given
};

// Finds what a name means. Each component is looked for as it is written first, then without regard to case
// (German letters too); of several that fit, the first by its bytes. Errors: invalidName (empty, or with a
// NUL), pathNotFound (a folder on the way is missing or none), accessDenied, nameTooLong.
Result<FoundPath> findPath(TextView name);

// The path from the root; links stay unresolved.
std::string absolutePath(const std::string& path);
// The folder of a path: "/" for what lies in the root, "." for a bare name.
std::string folderOf(const std::string& path);
std::string lastComponent(const std::string& path);
// A name of the library in the system's spelling, nothing looked up: "/" once between the components, none at
// the end.
std::string plainPath(TextView name);

}  // namespace tsRtm::platform::posix
