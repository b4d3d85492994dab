// Data.tsd of any content below a sound flat index.
#include "fuzz/HostileDatabase.hpp"

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{
    .hostile = u"Data.tsd", .most = 3000, .work = tsRtm::fuzz::workOnRecords})
