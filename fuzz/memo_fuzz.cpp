// Memo-ooo.fff of any content.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Memo-000.006", .memo = true})
