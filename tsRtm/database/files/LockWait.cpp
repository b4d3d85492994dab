#include "tsRtm/database/files/LockWait.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

using namespace std::chrono_literals;

constexpr int32 kLocked = 0;
constexpr int32 kNotLocked = 70;

constexpr int32 kMsgWeiter = 6;
constexpr int32 kMsgNochKeinZugriffDatei = 44;
constexpr int32 kMsgKeinZugriffSatz = 61;
constexpr int32 kMsgNochKeinZugriffSatzBlank = 2091;
constexpr int32 kMsgKeinZugriffSatzBlank = 2109;

Text fileText(const platform::File& file) { return Text(u"Datei \"").append(file.name()).append(u"\": "); }

Text statusText(MessagesTopic& messages, const platform::File& file, const LockRequest& request) {
    return fileText(file) + (request.database
                                 ? messages.RtmMsg(kMsgNochKeinZugriffDatei)
                                 : messages.RtmMsg(kMsgNochKeinZugriffSatzBlank) + toText(request.position));
}

Text questionText(MessagesTopic& messages, const platform::File& file, const LockRequest& request) {
    const int64 record = (request.position - 11) / 10;
    Text what;
    if (!request.database)
        what = messages.RtmMsg(kMsgKeinZugriffSatz);
    else if (record != 0)
        what = messages.RtmMsg(kMsgKeinZugriffSatzBlank) + toText(record);
    else
        what = messages.RtmMsg(kMsgNochKeinZugriffDatei);
    return what + fileText(file) + messages.RtmMsg(kMsgWeiter);
}

platform::ByteRange byteOf(const LockRequest& request) {
    return {static_cast<uint64>(request.position - 1), 1};
}

// Marks the wait for timers, and takes a status line away at its end.
class Waiting {
 public:
    explicit Waiting(MessagesTopic& messages) : messages_(messages), before_(rtmMain::state().lockWait) {
        rtmMain::state().lockWait = true;
    }
    ~Waiting() {
        if (statusShown_) messages_.ClearMsg();
        rtmMain::state().lockWait = before_;
    }
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;

    void show(const Text& text) {
        messages_.Nachricht(text);
        statusShown_ = true;
    }
    // A held lock is mostly given back at once: first only the turn is passed on, then the pauses grow.
    void pause() {
        auto& ground = rtmMain::system();
        ground.ui.processEvents();
        ground.clock.sleep(attempts_ < 16 ? 0us
                                          : std::min<std::chrono::nanoseconds>(5ms, (attempts_ - 15) * 20us));
        ++attempts_;
    }

 private:
    MessagesTopic& messages_;
    bool before_;
    bool statusShown_ = false;
    int32 attempts_ = 0;
};

// Tries until the lock is won or the wait is over.
bool won(MessagesTopic& messages, platform::File& file, const LockRequest& request, Waiting& waiting,
         const LockHooks& hooks) {
    auto& state = rtmMain::state();
    auto& clock = rtmMain::system().clock;
    const auto unit = std::chrono::seconds(state.netWait);
    auto start = clock.elapsed();
    bool passed = !hooks.gate;  // once through it, it is ours
    for (;;) {
        const auto error = !passed && !(passed = hooks.gate()) ? platform::SystemError::lockViolation
                                                               : file.tryLock(byteOf(request));
        if (!failed(error)) return true;
        if (error != platform::SystemError::lockViolation) return false;
        if (state.stopping || state.stopped || (hooks.givenUp && hooks.givenUp())) return false;
        const auto waited = clock.elapsed() - start;
        if (request.wait == 0 && waited >= unit) {
            waiting.show(statusText(messages, file, request));
            start = clock.elapsed();
        } else if (request.wait != 0 && waited >= unit * std::abs(request.wait)) {
            bool goOn = false;
            if (request.wait > 0) messages.Frage(questionText(messages, file, request), goOn);
            if (!goOn) return false;
            start = clock.elapsed();
        }
        waiting.pause();
    }
}

}  // namespace

int32 lockWithWait(MessagesTopic& messages, platform::File& file, const LockRequest& request,
                   const LockHooks& hooks) {
    auto& state = rtmMain::state();
    // The common case, without the cost of a wait.
    if (!hooks.gate && !failed(file.tryLock(byteOf(request)))) {
        state.F = kLocked;
        return kLocked;
    }
    if (hooks.aboutToWait) hooks.aboutToWait();
    Waiting waiting(messages);
    const bool locked = won(messages, file, request, waiting, hooks);
    state.F = locked ? kLocked : kNotLocked;
    return state.F;
}

}  // namespace tsRtm
