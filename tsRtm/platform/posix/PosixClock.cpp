#include "tsRtm/platform/posix/PosixClock.hpp"

#include <time.h>

#include <thread>

#include "tsRtm/platform/posix/PosixTime.hpp"

namespace tsRtm::platform::posix {

Date PosixClock::now() { return localDate(std::time(nullptr)); }

// The coarse clock ticks every few milliseconds, and costs a fraction of the exact one: it is asked at every
// record.
std::chrono::nanoseconds PosixClock::elapsed() {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void PosixClock::sleep(std::chrono::nanoseconds duration) {
    if (duration > std::chrono::nanoseconds::zero())
        std::this_thread::sleep_for(duration);
    else
        std::this_thread::yield();
}

}  // namespace tsRtm::platform::posix
