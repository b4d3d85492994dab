#pragma once

namespace tsRtm {

// The public owner of the shared enumerations; has no operations.
class clsEnumTS {};

}  // namespace tsRtm
