#include "tsRtm/database/files/UpdateWatch.hpp"

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr int32 kBusyAttempts = 64;    // an update takes microseconds
constexpr int32 kMostCrossings = 400;  // then the lock is quicker
constexpr int32 kMostOnShare = 8;      // where each costs the way to the server and back
constexpr int32 kAskForOwner = 128;    // somebody must hold the lock, or the mark was left behind
constexpr int32 kPatience = 6;         // times NetWait: whole indexes may be built
constexpr std::chrono::microseconds kPauseOfSearch{100};
constexpr std::chrono::microseconds kPauseOnShare{2000};

}  // namespace

UpdateWatch::Look UpdateWatch::look() {
    const bool share = guard_.needed();
    if (!changes_ && findChanges && count_.atWork()) findChanges();
    const uint64 served = share ? guard_.newest() : 0;
    // Without a count of changes a mark is as good as an odd number.
    if (!changes_) return count_.marked() ? Look{1, false} : Look{++unknown_ * 2, true};
    const uint64 value = share ? served : changes_.value();
    return {value, ChangeCount::isQuiet(value)};
}

UpdateWatch::Look UpdateWatch::firstLook() {
    if (!guard_.needed() || !changes_ || !guard_.passed()) return look();
    // What the caches held in order at this number still holds where it is the number afterwards.
    return {*guard_.passed(), ChangeCount::isQuiet(*guard_.passed())};
}

bool UpdateWatch::same(const Look& before) {
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
    if (!quiet && UpdateMarks::underWayHere(count_)) raiseBusy();
    const int32 attempt = patience.attempts++;
    if (attempt == 0) patience.start = clock.elapsed();
    if (attempt % kAskForOwner == kAskForOwner - 1 && !quiet && !locks_.databaseHeldByOther() &&
        look().number == now.number) {
        if (!folder_.readOnly) return heal && heal();
        diedAt(now.number);
        return false;
    }
    // On a share the lock has an order of those who wait, while moments without an update may not be met.
    const bool lockIsQuicker = guard_.needed() ? attempt >= kMostOnShare : quiet && attempt >= kMostCrossings;
    if (lockIsQuicker && folder_.filesWritable) return false;
    if (clock.elapsed() - patience.start > std::chrono::seconds(kPatience * rtmMain::state().netWait))
        return false;
    clock.sleep(guard_.needed()           ? kPauseOnShare
                : attempt < kBusyAttempts ? std::chrono::microseconds(0)
                                          : kPauseOfSearch);
    return true;
}

void UpdateWatch::healOrGiveUp() {
    if (!folder_.readOnly && heal && heal()) return;
    if (folder_.readOnly) diedAt(look().number);
    raiseBusy();
}

void UpdateWatch::diedAt(uint64 number) {
    dead_ = number;
    metDeath_ = true;
    if (guard_.needed()) guard_.forget();
}

void UpdateWatch::raiseBusy() const {
    raise(numberOf(DatabaseError::locked), kFileFailureSource,
          u"Die Indizes von " + folder_.name + u" werden gerade geändert");
}

}  // namespace tsRtm
