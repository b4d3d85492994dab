#include "tsRtm/database/files/ShareGuard.hpp"

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::RefreshAs;
using platform::SystemError;

constexpr std::chrono::milliseconds kPauseToForget{20};
// Clients believe for a second or two what they keep of files and names, if nothing else is set.
constexpr std::chrono::milliseconds kBelieved{2500};

constexpr TextView kCutOff =
    u"Die Verbindung zum Netzlaufwerk war unterbrochen, alle Sperren sind verloren.@Bitte schließen Sie die "
    u"Datenbank und öffnen Sie sie neu.";
constexpr TextView kStale =
    u"Das Netzlaufwerk liefert veraltete Daten.@Damit nichts verloren geht, wird nicht geschrieben.";

// False where the client cannot be made to forget for want of the right to write.
bool renew(platform::File& file, RefreshAs standing) {
    const auto error = file.refresh(standing);
    if (error == SystemError::notSupported) return false;
    must(error, file);
    return true;
}

}  // namespace

// Who has no right to make the client forget waits for it at the next number.
void ShareGuard::opened(platform::File& file) {
    if (needed()) static_cast<void>(renew(file, inside_ ? RefreshAs::soleWriter : RefreshAs::reader));
}

bool ShareGuard::gate() {
    return count_.file().tryLock(platform::lockRanges::kGate) != SystemError::lockViolation;
}

void ShareGuard::leaveGate() noexcept {
    if (needed()) static_cast<void>(count_.file().unlock(platform::lockRanges::kGate));
}

bool ShareGuard::refresh(RefreshAs standing) {
    bool certain = renew(count_.file(), standing);
    if (eachFile) eachFile([&](platform::File& file) { certain = renew(file, standing) && certain; });
    return certain;
}

bool ShareGuard::catchesUp() {
    changes_.alone(true);
    entry_ = changes_.value();
    if (known_ == entry_) {
        // Nobody wrote since: what this client remembers holds, but for the signs of who is at work.
        static_cast<void>(renew(count_.file(), RefreshAs::soleWriter));
    } else {
        refresh(RefreshAs::soleWriter);
        static_cast<void>(renew(changes_.file(), RefreshAs::soleWriter));
        if (changes_.cached() != entry_) return false;
    }
    const auto shown = count_.file().greatestShown(shownAs(entry_));
    if (!shown) raiseFileFailure(shown.error(), count_.file().name());
    return *shown == 0 && entry_ >= written_;
}

bool ShareGuard::entered() {
    if (!needed()) return true;
    auto& clock = rtmMain::system().clock;
    const auto start = clock.elapsed();
    try {
        const auto stands = count_.file().stands();
        if (!stands || !*stands) return refused(kCutOff);
        inside_ = true;
        // A reader of a database in which nobody of ours has written.
        if (!changes_) return refresh(RefreshAs::soleWriter), true;
        while (!catchesUp()) {
            known_.reset();
            if (clock.elapsed() - start > std::chrono::seconds(rtmMain::state().netWait)) {
                inside_ = false;
                changes_.alone(false);
                return refused(kStale);
            }
            clock.sleep(kPauseToForget);
        }
        passed_ = known_ = entry_;
        return true;
    } catch (const Failure& failure) {
        rtmMain::DebugLog(failure.Description());
    }
    inside_ = false;
    changes_.alone(false);
    return refused(kCutOff);
}

bool ShareGuard::refused(TextView why) {
    why_ = why;
    rtmMain::DebugLog(Text(folder_.name).append(u": ").append(why));
    return false;
}

void ShareGuard::tellRefusal() {
    if (needed() && !why_.empty())
        folder_.messages().TSMsgBox(u"Datenbank \"" + folder_.name + u"\": " + Text(why_), dlgCritical,
                                    u"clsTSDB");
    why_ = {};
}

void ShareGuard::tellLost() {
    if (!needed()) return;
    if (const auto asked = count_.file().isLocked(platform::lockRanges::kProbe); asked) return;
    refused(kCutOff);
    tellRefusal();
}

void ShareGuard::leaving() noexcept {
    if (!inside_) return;
    try {
        // Of an update that was given up, too, nothing may come after the lock is gone.
        if (eachFile) eachFile([](platform::File& file) { static_cast<void>(file.flush()); });
        if (changes_) {
            flushMarks();
            if (const uint64 now = changes_.value(); now != entry_) {
                // An odd number is that of an update that was given up: its mark tells, not its number.
                written_ = now - now % 2;
                passed_ = known_ = now;
                static_cast<void>(count_.file().show(shownAs(written_)));
            }
        }
    } catch (const Failure& failure) {
        passed_.reset();
        known_.reset();
        rtmMain::DebugLog(failure.Description());
    }
    inside_ = false;
    changes_.alone(false);
}

void ShareGuard::flushMarks() {
    if (changes_) must(changes_.file().flush(), changes_.file());
    must(count_.file().flush(), count_.file());
}

void ShareGuard::announced() {
    if (inside_) flushMarks();
}

bool ShareGuard::written() {
    if (inside_ && eachFile) eachFile([](platform::File& file) { must(file.flush(), file); });
    return holds();
}

bool ShareGuard::holds() {
    if (!inside_) return true;
    const auto stands = count_.file().stands();
    if (stands && *stands) return true;
    try {
        count_.mark();
    } catch (const Failure& failure) {  // no way to the server: nothing comes there any more
        rtmMain::DebugLog(failure.Description());
    }
    return refused(kCutOff);
}

void ShareGuard::told() {
    if (inside_) flushMarks();
}

void ShareGuard::renamed() {
    if (count_ && count_.file().remote()) rtmMain::system().clock.sleep(kBelieved);
}

void ShareGuard::closed() noexcept {
    inside_ = false;
    entry_ = written_ = 0;
    passed_.reset();
    known_.reset();
    why_ = {};
}

uint64 ShareGuard::newest() {
    const uint64 now = changes_ ? changes_.value() : 0;
    if (changes_ && (passed_ == now || !ChangeCount::isQuiet(now))) return now;
    forget();
    passed_ = now;
    return now;
}

void ShareGuard::forget() {
    if (!refresh(RefreshAs::reader)) rtmMain::system().clock.sleep(kBelieved);
}

}  // namespace tsRtm
