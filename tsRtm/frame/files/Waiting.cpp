#include "tsRtm/frame/files/Waiting.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"

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

}  // namespace tsRtm
