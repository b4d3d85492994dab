// Control.tsd of any content above sound records.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{u"Control.tsd"})
