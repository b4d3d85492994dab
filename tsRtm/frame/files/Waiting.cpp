#include "tsRtm/frame/files/Waiting.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {
constexpr std::chrono::nanoseconds shortest = std::chrono::microseconds(50);
constexpr std::chrono::nanoseconds longest = std::chrono::milliseconds(5);
}  // namespace

Waiting::Waiting() : since_(rtmMain::system().clock.elapsed()), next_(shortest) {}

bool Waiting::longerThan(int64 seconds) const {
    return rtmMain::system().clock.elapsed() - since_ > std::chrono::seconds(seconds);
}

void Waiting::pause() {
    rtmMain::system().ui.processEvents();
    rtmMain::system().clock.sleep(next_);
    next_ = std::min(next_ * 2, longest);
}

bool driveMayBecomeReady(Messages& messages, TextView name) {
    if (rtmMain::system().files.driveKind(name) != platform::DriveKind::removable) return false;
    if (messages.Frage(u"Laufwerk " + Text(name.substr(0, 2)) + u" nicht bereit. Weiter")) return true;
    rtmMain::state().F = 71;
    return false;
}

}  // namespace tsRtm
