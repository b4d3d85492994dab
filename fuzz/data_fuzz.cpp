// Data.tsd of any content below a sound tree index.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Data.tsd", .work = tsRtm::fuzz::workOnRecords})
