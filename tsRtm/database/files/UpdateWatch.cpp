#include "tsRtm/database/files/UpdateWatch.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr int32 kBusyAttempts = 64;    // an update takes microseconds
constexpr int32 kMostCrossings = 400;  // then the lock is quicker
constexpr int32 kAskForOwner = 128;    // somebody must hold the lock, or the mark was left behind
constexpr int32 kPatience = 6;         // times NetWait: whole indexes may be built
constexpr std::chrono::microseconds kPause{100};

}  // namespace

UpdateWatch::Look UpdateWatch::look() {
    Look now;
    // Who writes on a share holds the lock, and shows a newer number before he gives it back.
    const bool share = guard_.needed();
    if (share && locks_.databaseHeldByOther()) now.quiet = false;
    if (share) now.shown = guard_.newest();
    if (!changes_ && findChanges && count_.atWork()) findChanges();
    if (!changes_) {
        // Without a count of changes a mark is as good as an odd number.
        const bool marked = count_.marked();
        now.number = marked ? 1 : ++unknown_ * 2;
        now.quiet = now.quiet && !marked;
        return now;
    }
    now.number = changes_.value();
    now.quiet = now.quiet && ChangeCount::isQuiet(now.number) && now.number + 1 >= now.shown;
    return now;
}

bool UpdateWatch::same(const Look& before) {
    if (guard_.needed()) {
        const Look now = look();
        return now.quiet && now.shown == before.shown && (!changes_ || now.number == before.number);
    }
    return changes_ ? changes_.value() == before.number : !count_.marked();
}

bool UpdateWatch::waits(Patience& patience) {
    auto& clock = rtmMain::system().clock;
    const Look now = look();
    const bool quiet = now.quiet;
    if (folder_.readOnly && diesOver(now) && !locks_.databaseHeldByOther()) {
        metDeath_ = true;
        return false;
    }
    // It is below us on the stack: waiting would have no end.
    if (!quiet && UpdateMarks::underWayHere(folder_)) raiseBusy();
    const int32 attempt = patience.attempts++;
    if (attempt == 0) patience.start = clock.elapsed();
    if (attempt % kAskForOwner == kAskForOwner - 1 && !quiet && !locks_.databaseHeldByOther() &&
        look().number == now.number) {
        if (!folder_.readOnly) return heal && heal();
        dead_ = now.number;
        metDeath_ = true;
        return false;
    }
    if (quiet && attempt >= kMostCrossings && !folder_.readOnly) return false;
    if (clock.elapsed() - patience.start > std::chrono::seconds(kPatience * rtmMain::state().netWait))
        return false;
    clock.sleep(attempt < kBusyAttempts ? std::chrono::microseconds(0) : kPause);
    return true;
}

void UpdateWatch::healOrGiveUp() {
    if (!folder_.readOnly && heal && heal()) return;
    if (folder_.readOnly) {
        dead_ = look().number;
        metDeath_ = true;
    }
    raiseBusy();
}

void UpdateWatch::raiseBusy() const {
    raise(numberOf(DatabaseError::locked), kFileFailureSource,
          u"Die Indizes von " + folder_.name + u" werden gerade geändert");
}

}  // namespace tsRtm
