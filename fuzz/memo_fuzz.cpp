// Memo-ooo.fff of any content.
#include "fuzz/HostileDatabase.hpp"

namespace tsRtm::fuzz {

static void work(clsTSDB& db) {
    for (const int32 record : {2, 3, 8, 30, 70}) workOnMemo(db, record);
}

}  // namespace tsRtm::fuzz

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Memo-000.006", .memo = true, .work = tsRtm::fuzz::work})
