// KetteDat.nnn of any content.
#include "fuzz/HostileDatabase.hpp"

namespace tsRtm::fuzz {

static void work(clsTSDB& db) {
    for (const int32 record : {2, 8, 15, 36}) workOnChain(db, record);
}

}  // namespace tsRtm::fuzz

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"KetteDat.006", .chain = true, .work = tsRtm::fuzz::work})
