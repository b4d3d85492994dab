#include "tsRtm/platform/posix/PosixNotices.hpp"

#include <sys/timerfd.h>

#include <cerrno>
#include <limits>

namespace tsRtm::platform::posix {
namespace {

constexpr int32 kLocaleSettings = 0;  // parameter of a setting change

// A timer that never fires: all it does is to be cancelled when somebody sets the clock.
Handle watchOfTheClock() {
    Handle timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC));
    itimerspec never{};
    never.it_value.tv_sec = std::numeric_limits<int32>::max();
    const bool armed = timer && ::timerfd_settime(timer.get(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET,
                                                  &never, nullptr) == 0;
    return armed ? std::move(timer) : Handle();
}

}  // namespace

PosixNotices::PosixNotices(PosixLocale& locale) : locale_(locale), timer_(watchOfTheClock()) {}

bool PosixNotices::clockWasSet() const noexcept {
    uint64 expirations = 0;
    return timer_ && ::read(timer_.get(), &expirations, sizeof(expirations)) < 0 && errno == ECANCELED;
}

void PosixNotices::tell(const std::function<void(Notice notice, int32 parameter)>& listener) {
    if (clockWasSet()) listener(Notice::timeChange, 0);
    if (locale_.become(environmentLocale())) listener(Notice::settingChange, kLocaleSettings);
}

}  // namespace tsRtm::platform::posix
