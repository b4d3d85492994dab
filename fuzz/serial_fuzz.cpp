// Autowert.tsd of any content.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Autowert.tsd", .serial = true, .work = tsRtm::fuzz::add})
