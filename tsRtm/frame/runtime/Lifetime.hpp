#pragma once
// The start of the library, the notices of the system while it runs, and its stop.
#include <functional>

#include "tsRtm/platform/Platform.hpp"

namespace tsRtm::rtmMain {

// What Main does; a second call does nothing. Never fails and reports nothing to the user.
void start(platform::Platform& ground);
// A start on the ground of this machine where there was none; what every facade object calls at its creation.
void ensureStarted();
bool started() noexcept;
// Starts anew on another ground, with a fresh state. For tests.
void TEST_restart(platform::Platform& ground);
// Back to "not started" with a fresh state on the ground of this machine. For tests whose ground ends.
void TEST_forget();

// What WMStop does: ends listening to the system. May run twice. The state stays readable.
void stop();
// Hands over how the object that hears the system's events ends its listening; the stop calls it once.
void holdSystemEvents(std::function<void()> dispose);

// What the library does on a notice of the system between calls; the ground tells it through the seam.
// Nothing after the stop.
void notify(platform::Notice notice, int32 parameter);

}  // namespace tsRtm::rtmMain
