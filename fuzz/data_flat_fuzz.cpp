// Data.tsd of any content below a sound flat index.
#include "fuzz/HostileDatabase.hpp"

namespace tsRtm::fuzz {

static void work(clsTSDB& db) {
    searchAndWalk(db, 1, 20);
    searchAndWalk(db, 0, 10);
    change(db, 3);
}

}  // namespace tsRtm::fuzz

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Data.tsd", .most = 3000, .work = tsRtm::fuzz::work})
