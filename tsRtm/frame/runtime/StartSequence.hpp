#pragma once
// The steps of the library's start, in their order.
namespace tsRtm::rtmMain {

// Fills the state from the ground.
void runStartSequence();

}  // namespace tsRtm::rtmMain
