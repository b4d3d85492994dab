#include "tsRtm/database/sets/LoopProgress.hpp"

#include "tsRtm/frame/ground/Ground.hpp"

namespace tsRtm {

void LoopProgress::report() {
    tell_(done_, sum_);
    rtmMain::system().ui.processEvents();
}

}  // namespace tsRtm
