#pragma once
// The steps of the library's start, in their order.
namespace tsRtm::rtmMain {

// Fills the state from the ground. `hearsNotices` tells whether notices of the system will be heard, for the
// log.
void runStartSequence(bool hearsNotices);

}  // namespace tsRtm::rtmMain
