// Autowert.tsd of any content.
#include "fuzz/HostileDatabase.hpp"

namespace tsRtm::fuzz {

static void work(clsTSDB& db) { add(db); }

}  // namespace tsRtm::fuzz

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Autowert.tsd", .serial = true, .work = tsRtm::fuzz::work})
