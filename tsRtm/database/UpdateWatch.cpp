#include "tsRtm/database/UpdateWatch.hpp"

#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {
namespace {

constexpr int32 kMostAttempts = 400;  // about 40 ms
constexpr int32 kBusyAttempts = 64;   // an update takes microseconds
constexpr int32 kAskForOwner = 128;   // then somebody must hold the lock, or the mark was left behind
constexpr std::chrono::microseconds kPause{100};

}  // namespace

bool UpdateWatch::quiet() {
    if (!worthRepeating()) return true;
    const bool marked = count_.marked();
    if (!marked) leftBehind_ = false;
    return !marked || leftBehind_;
}

bool UpdateWatch::pause(int32 attempt) {
    if (attempt >= kMostAttempts) return false;
    if (attempt == kAskForOwner) {
        const auto owned = count_.file().isLocked(countFormat::byteAt(countFormat::kDatabaseLock));
        leftBehind_ = owned.ok() && !*owned && count_.marked();
    }
    rtmMain::system().clock.sleep(attempt < kBusyAttempts ? std::chrono::microseconds(0) : kPause);
    return true;
}

}  // namespace tsRtm
