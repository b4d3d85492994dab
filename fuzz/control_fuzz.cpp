// Control.tsd of any content above sound records; what is read can be written again.
#include "fuzz/HostileDatabase.hpp"
#include "tsRtm/control/clsCTL.hpp"

namespace tsRtm::fuzz {

static void work(clsTSDB&) {
    clsRtm rtm;
    if (const auto control = clsCTL(rtm).OpenControl(u"/d/X")) static_cast<void>(control->TextAs(true));
}

}  // namespace tsRtm::fuzz

TSRTM_FUZZ_DATABASE(tsRtm::fuzz::Form{.hostile = u"Control.tsd", .work = tsRtm::fuzz::work})
