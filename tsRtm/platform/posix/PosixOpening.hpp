#pragma once
// The opening of a regular file under its share mode.
#include <string>

#include "tsRtm/platform/FileSystem.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"

namespace tsRtm::platform::posix {

// Opens a path. Every opening holds a shared lock on one byte far above all data, an exclusive one an
// exclusive lock, so that all openings of the library in all processes honour each other; programs that know
// nothing of it do not. On a file system without locks files open unprotected: probeLocks() finds that out
// before a database is shared.
Result<Handle> openShared(const std::string& path, OpenRequest request);

// Holds a regular file for its removal or replacement: sharingViolation while any opening of the library has
// it, and until the handle ends no other gets it. An empty handle for what is no regular file, or may not be
// opened.
Result<Handle> holdForRemoval(const std::string& path);

// Whether the path still leads to the opened file. Before its lock was there, another one may have taken the
// place: who wrote on in the old one would write for nobody.
bool stillInPlace(int descriptor, const std::string& path) noexcept;

// No permission to write for anyone: the read-only attribute, which binds an administrator too.
bool readOnlyMode(unsigned mode) noexcept;

}  // namespace tsRtm::platform::posix
