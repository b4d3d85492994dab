// A tree index file of any content.
#include "fuzz/HostileDatabase.hpp"

namespace tsRtm::fuzz {

static void work(clsTSDB& db) {
    searchAndWalk(db, 1, 20);
    change(db, 3);
    add(db);
}

}  // namespace tsRtm::fuzz

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"I001", .work = tsRtm::fuzz::work})
