// Data.tsd of any content below a sound flat index.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{u"Data.tsd", 3000})
