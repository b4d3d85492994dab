#pragma once
// The start of the library on a ground of the application's choice, and its stop.
#include "tsRtm/platform/Paper.hpp"
#include "tsRtm/platform/Platform.hpp"

namespace tsRtm::rtmMain {

// Starts the library on a ground; a second call does nothing. Never fails and reports nothing to the user.
// The first facade object of a program that has not called it does so, on the ground of this machine.
void Main(platform::Platform& ground);

// The ground of this machine, also for a ground of one's own that keeps some of its parts.
platform::Platform& defaultGround();

// Who draws, prints and shows pages, before or after the start; nullptr: nobody. Jobs keep what there was
// when they were made.
void usePaper(const platform::Paper* paper) noexcept;

// Stops the library: ends listening to the system. May run twice. The state stays readable.
void WMStop();

}  // namespace tsRtm::rtmMain
