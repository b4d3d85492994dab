// A flat index file of any content.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"I001", .most = 3000, .work = tsRtm::fuzz::workOnIndex})
