#pragma once
// The hives of the settings store.
#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// Registry hives by the numbers of the store's interface. Another number names no hive: it reads as empty and
// takes nothing.
enum HKeys : int32 {
    HKEY_CLASSES_ROOT = -2147483647 - 1,
    HKEY_CURRENT_USER = -2147483647,
    HKEY_LOCAL_MACHINE = -2147483646,
    HKEY_USERS = -2147483645,
    HKEY_PERFORMANCE_DATA = -2147483644,
};

}  // namespace tsRtm
