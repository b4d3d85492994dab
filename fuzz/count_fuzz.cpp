// Count.tsd of any content.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Count.tsd", .work = tsRtm::fuzz::workOnIndex})
