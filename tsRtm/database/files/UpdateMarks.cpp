#include "tsRtm/database/files/UpdateMarks.hpp"

#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

bool UpdateMarks::leftBehind() {
    if (underWay_ || !count_) return false;
    return count_.marked() || (changes_ && !ChangeCount::isQuiet(changes_.value()));
}

void UpdateMarks::keep(int32 record, uint32 offset, BytesView bytes) {
    if (underWay_ && changes_) changes_.keep(record, offset, bytes);
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
    ++rtmMain::state().updatesUnderWay;
    guard_.flushMarks();
}

void UpdateMarks::end(int32 records) {
    if (!underWay_) return;
    guard_.flushFiles();
    count_.finish(records);
    giveUp();
    if (changes_) changes_.end();
}

void UpdateMarks::touched() {
    if (changes_ && guard_.needed()) changes_.touch();
}

void UpdateMarks::giveUp() noexcept {
    if (!underWay_) return;
    underWay_ = false;
    --rtmMain::state().updatesUnderWay;
}

}  // namespace tsRtm
