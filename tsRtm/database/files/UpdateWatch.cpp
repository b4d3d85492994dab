#include "tsRtm/database/files/UpdateWatch.hpp"

#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {
namespace {

constexpr int32 kBusyAttempts = 64;    // an update takes microseconds
constexpr int32 kMostCrossings = 400;  // then the lock is quicker
constexpr int32 kAskForOwner = 128;    // somebody must hold the lock, or the mark was left behind
constexpr int32 kPatience = 6;         // times NetWait: whole indexes may be built
constexpr std::chrono::microseconds kPause{100};

}  // namespace

UpdateWatch::Look UpdateWatch::look() {
    // Without a count of changes a mark is as good as an odd number.
    if (!changes_) return count_.marked() ? Look{1, false} : Look{++unknown_ * 2, true};
    const uint64 value = changes_.value();
    return {value, ChangeCount::isQuiet(value)};
}

bool UpdateWatch::same(const Look& before) {
    return changes_ ? changes_.value() == before.number : !count_.marked();
}

bool UpdateWatch::waits(Patience& patience) {
    auto& clock = rtmMain::system().clock;
    const Look now = look();
    const bool quiet = now.quiet;
    if (folder_.readOnly && diesOver(now)) return false;
    // It is below us on the stack: waiting would have no end.
    if (!quiet && rtmMain::state().updatesUnderWay > 0) raiseBusy();
    const int32 attempt = patience.attempts++;
    if (attempt == 0) patience.start = clock.elapsed();
    if (attempt % kAskForOwner == kAskForOwner - 1 && !quiet && !locks_.databaseHeldByOther() &&
        !look().quiet) {
        if (!folder_.readOnly) return heal && heal();
        dead_ = now.number;
        return false;
    }
    if (quiet && attempt >= kMostCrossings && !folder_.readOnly) return false;
    if (clock.elapsed() - patience.start > std::chrono::seconds(kPatience * rtmMain::state().netWait))
        return false;
    clock.sleep(attempt < kBusyAttempts ? std::chrono::microseconds(0) : kPause);
    return true;
}

void UpdateWatch::raiseBusy() const {
    raise(numberOf(DatabaseError::locked), kFileFailureSource,
          u"Die Indizes von " + folder_.name + u" werden gerade geändert");
}

}  // namespace tsRtm
