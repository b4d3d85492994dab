#include "tsRtm/database/files/UpdateMarks.hpp"

#include <algorithm>

#include "tsRtm/database/files/DatabaseError.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

namespace {

// One file has many names: a lock of the one opening shows to the other.
bool sameFile(const CountFile& writer, const CountFile& asker) {
    if (&writer == &asker) return true;
    if (!writer || !asker || platform::failed(writer.file().tryLock(platform::lockRanges::kProbe)))
        return false;
    const auto held = asker.file().isLocked(platform::lockRanges::kProbe);
    static_cast<void>(writer.file().unlock(platform::lockRanges::kProbe));
    return held && *held;
}

}  // namespace

bool UpdateMarks::underWayHere(const CountFile& count) {
    const auto& writers = rtmMain::state().updatesUnderWay;
    return std::any_of(writers.begin(), writers.end(),
                       [&](const CountFile* writer) { return sameFile(*writer, count); });
}

bool UpdateMarks::leftBehind() { return !underWay_ && count_ && areSet(count_, changes_); }

void UpdateMarks::keep(int32 record, uint32 offset, BytesView bytes, BytesView before) {
    if (underWay_ && changes_) changes_.keep(record, offset, bytes, before);
}

ChangeCount::Kept UpdateMarks::kept() {
    return !underWay_ && changes_ ? changes_.kept() : ChangeCount::Kept();
}

void UpdateMarks::begin() {
    if (underWay_) return;
    // Readers first: they wait from here on. The mark before the first index: it tells what a death left.
    if (changes_) changes_.begin();
    count_.mark();
    underWay_ = true;
    rtmMain::state().updatesUnderWay.push_back(&count_);
    guard_.announced();
}

void UpdateMarks::end(int32 records) {
    if (!underWay_) return;
    written();
    count_.finish(records);
    // Where that fails it is under way still, and healed by who has begun it.
    if (changes_) changes_.end();
    giveUp();
    guard_.told();
}

void UpdateMarks::touched() {
    if (!changes_ || !guard_.needed()) return;
    written();
    changes_.touch();
    guard_.told();
}

void UpdateMarks::written() {
    if (guard_.written()) return;
    giveUp();
    raise(numberOf(DatabaseError::locked), kFileFailureSource, count_.file().name() + u": Sperren verloren");
}

void UpdateMarks::giveUp() noexcept {
    if (!underWay_) return;
    underWay_ = false;
    std::erase(rtmMain::state().updatesUnderWay, &count_);
}

}  // namespace tsRtm
