#pragma once
// Files overwritten before they are deleted.
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class NumberedFiles;

// Overwrites and deletes the file, or all files that match a wildcard name. Whether any was; raises what
// overwriting fails with. The numbered files are for one that somebody else has open.
bool secureKill(NumberedFiles& numbered, TextView name);

}  // namespace tsRtm
