// A tree index file of any content.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"I001", .work = tsRtm::fuzz::workOnIndex})
