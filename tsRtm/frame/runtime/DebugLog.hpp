#pragma once
// The debug log, the file RTMDebug.txt in the user's application data.
#include "tsRtm/types/Text.hpp"

namespace tsRtm::rtmMain {

// One line in the debug log while the log is on. Failures are ignored.
void DebugLog(TextView text);

}  // namespace tsRtm::rtmMain
