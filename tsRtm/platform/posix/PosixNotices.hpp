#pragma once
// What a process without a window hears of its system.
#include <functional>

#include "tsRtm/platform/Notice.hpp"
#include "tsRtm/platform/posix/PosixHandle.hpp"
#include "tsRtm/platform/posix/PosixLocale.hpp"

namespace tsRtm::platform::posix {

// That the clock was set, by the kernel; and that the program itself asks for another locale in its
// environment. Of screens nothing is heard: a console has none.
class PosixNotices {
 public:
    // The locale outlives it, and changes with the environment.
    explicit PosixNotices(PosixLocale& locale);

    // False on a kernel that does not tell of the clock.
    bool hears() const noexcept { return static_cast<bool>(timer_); }
    // Tells what happened since the last time; cheap enough for every round of a wait.
    void tell(const std::function<void(Notice notice, int32 parameter)>& listener);

 private:
    bool clockWasSet() const noexcept;

    PosixLocale& locale_;
    Handle timer_;
};

}  // namespace tsRtm::platform::posix
