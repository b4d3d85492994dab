#include "tsRtm/platform/posix/PosixClock.hpp"

#include <thread>

#include "tsRtm/platform/posix/PosixTime.hpp"

namespace tsRtm::platform::posix {

Date PosixClock::now() { return localDate(std::time(nullptr)); }

std::chrono::nanoseconds PosixClock::elapsed() { return std::chrono::steady_clock::now().time_since_epoch(); }

void PosixClock::sleep(std::chrono::nanoseconds duration) { std::this_thread::sleep_for(duration); }

}  // namespace tsRtm::platform::posix
