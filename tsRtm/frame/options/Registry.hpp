#pragma once
// Settings as the library keeps them: texts below one root, flags as "-1" and "0".
#include "tsRtm/types/HKeys.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

namespace registry {

// All settings of the library and its applications lie below this key.
inline constexpr TextView kRoot = u"Software\\Tessarol";

// The whole path of a key below the root; an empty one is the root itself.
Text pathOf(TextView subkey);
// What a value is stored as: "WAHR" and "TRUE" in any case become "-1", "FALSCH" and "FALSE" "0". On the NT
// family an empty value becomes one NUL, so that it exists and still reads as empty.
Text storedForm(TextView value);

// By whole paths. None of these fails: what cannot be read is empty, and what cannot be written stays.
//
// Reading brings flags that older releases stored as words up to date, in the store too, unless another
// process has changed them meanwhile. Where the store may not be written the word comes back as it is.
Text read(HKeys hive, TextView path, TextView name);
void write(HKeys hive, TextView path, TextView name, TextView value);
// An empty name means the key with all that lies below it; a hive as a whole stays.
void erase(HKeys hive, TextView path, TextView name);
// Whether the user has a right at a key, or where it would be made. `mask`: 1 and 0x120089 read; 2, 4, 64 and
// 0x120116 write. Always where the system has no rights.
bool mayAccess(HKeys hive, TextView path, int32 mask);

}  // namespace registry
}  // namespace tsRtm
