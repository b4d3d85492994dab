#pragma once
// The progress of a loop over records, and the turn of the program's other events.
#include <functional>

#include "tsRtm/types/Numbers.hpp"

namespace tsRtm {

// Tells each hundredth of the work, and lets events run then.
class LoopProgress {
 public:
    LoopProgress(int32 sum, std::function<void(int32 done, int32 sum)> tell)
        : tell_(std::move(tell)), sum_(sum), each_(sum / 100 + 1) {}
    void step() {
        if (++done_ % each_ == 0) report();
    }

 private:
    void report();

    std::function<void(int32, int32)> tell_;
    int32 sum_, each_;
    int32 done_ = 0;
};

}  // namespace tsRtm
