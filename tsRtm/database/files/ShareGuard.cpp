#include "tsRtm/database/files/ShareGuard.hpp"

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::RefreshAs;

constexpr std::chrono::milliseconds kPause{20};

void must(platform::SystemError error, const platform::File& file) {
    if (platform::failed(error)) raiseFileFailure(error, file.name());
}

}  // namespace

void ShareGuard::refreshMarks(RefreshAs standing) {
    static_cast<void>(count_.file().refresh(standing));
    if (changes_) static_cast<void>(changes_.file().refresh(standing));
}

void ShareGuard::refreshFiles(RefreshAs standing) {
    if (eachFile) eachFile([standing](platform::File& file) { static_cast<void>(file.refresh(standing)); });
}

bool ShareGuard::gate() {
    return count_.file().tryLock(platform::lockRanges::kGate) != platform::SystemError::lockViolation;
}

void ShareGuard::leaveGate() noexcept {
    if (needed()) static_cast<void>(count_.file().unlock(platform::lockRanges::kGate));
}

bool ShareGuard::entered() {
    if (!needed()) return true;
    auto& clock = rtmMain::system().clock;
    const auto start = clock.elapsed();
    for (;;) {
        const auto shown = count_.file().greatestShown(0);
        refreshMarks(RefreshAs::soleWriter);
        entry_ = changes_ ? changes_.value() : 0;
        if (!shown || !changes_ || shownAs(entry_) >= *shown) {
            // Nobody wrote since this client was last abreast: what it remembers still holds.
            const bool abreast = changes_ && known_ == entry_ + 1 && !count_.marked();
            if (!abreast) refreshFiles(RefreshAs::soleWriter);
            known_ = entry_ + 1;
            return true;
        }
        if (clock.elapsed() - start > std::chrono::seconds(rtmMain::state().netWait)) break;
        clock.sleep(kPause);
    }
    folder_.messages().TSMsgBox(
        u"Die Datenbank \"" + folder_.name +
            u"\" liegt auf einem Netzlaufwerk, das veraltete Daten liefert.@Damit nichts "
            u"verloren geht, wird nicht geschrieben.",
        16, u"clsTSDB");
    return false;
}

void ShareGuard::leaving() noexcept {
    if (!needed()) return;
    try {
        const uint64 now = changes_ ? changes_.value() : 0;
        if (now == entry_) return;
        flushFiles();
        flushMarks();
        known_ = now + 1;
        // An odd number is that of an update that was given up: its mark tells, not its number.
        static_cast<void>(count_.file().show(shownAs(now - now % 2)));
    } catch (const Failure& failure) {
        rtmMain::DebugLog(failure.Description());
    }
}

void ShareGuard::flushMarks() {
    if (!needed()) return;
    if (changes_) must(changes_.file().flush(), changes_.file());
    must(count_.file().flush(), count_.file());
}

void ShareGuard::flushFiles() {
    if (needed() && eachFile) eachFile([](platform::File& file) { must(file.flush(), file); });
}

uint64 ShareGuard::newest() {
    const auto shown = count_.file().greatestShown(0);
    const uint64 now = shown ? *shown : 0;
    if (now != seen_) {
        refreshMarks(RefreshAs::reader);
        refreshFiles(RefreshAs::reader);
        seen_ = now;
    }
    return now;
}

}  // namespace tsRtm
