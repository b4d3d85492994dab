#pragma once
// The notices of an open database.
#include <memory>

#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class clsTSRecord;

struct DatabaseEvents {
    // A long work goes on: phase, done so far, of how many.
    Event<int32, int32, int32> UpdateProgress;
    // Asks for a record object of this number that a listener holds; the listener puts it in.
    Event<int32, std::shared_ptr<clsTSRecord>&> HalloSatz;
    // An index changed: its primary field.
    Event<int32> IndexChange;
    // A record was written, locked, unlocked or deleted.
    Event<int32> RecordChange;
};

}  // namespace tsRtm
