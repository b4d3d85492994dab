// Opening with a file number, and the waits for locked files.
#include <cstdlib>
#include <utility>

#include "tsRtm/frame/files/FolderLists.hpp"
#include "tsRtm/frame/files/NumberedFiles.hpp"
#include "tsRtm/frame/files/SystemFailures.hpp"
#include "tsRtm/frame/files/Waiting.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

namespace {

using platform::Access;
using platform::Disposition;
using platform::OpenRequest;
using platform::Sharing;
using platform::SystemError;

constexpr int32 lastMode = 5;

OpenRequest requestOf(int32 mode, bool shared) {
    const Sharing asked = shared ? Sharing::all : Sharing::none;
    switch (mode) {
        case 1:
            return {Access::read, asked, Disposition::openExisting};
        // Writing and appending always lock all others out, whatever the caller asks for.
        case 2:
            return {Access::readWrite, Sharing::none, Disposition::createEmpty};
        case 3:
            return {Access::readWrite, Sharing::none, Disposition::openOrCreate};
        // An existing binary file is shared even where the caller asks for it alone.
        case 5:
            return {Access::readWrite, Sharing::all, Disposition::openExisting};
        default:
            return {Access::readWrite, asked, Disposition::openOrCreate};
    }
}

bool writingRefused(SystemError error) {
    return error == SystemError::accessDenied || error == SystemError::writeProtected;
}

// A taken number that goes back unless it is kept.
class NumberInHand {
 public:
    explicit NumberInHand(OpenFileTable& table) : table_(table), number_(table.take()) {}
    ~NumberInHand() {
        if (!kept_) table_.release(number_);
    }
    NumberInHand(const NumberInHand&) = delete;
    NumberInHand& operator=(const NumberInHand&) = delete;
    int32 value() const noexcept { return number_; }
    int32 keep() noexcept {
        kept_ = true;
        return number_;
    }

 private:
    OpenFileTable& table_;
    int32 number_;
    bool kept_ = false;
};

void clearPendingFailure() {
    rtmMain::state().FE_ = 0;
    rtmMain::state().pendingText.clear();
}

}  // namespace

struct NumberedFiles::OpenAttempt {
    Text name;
    Text source;
    int32 mode;
    bool shared;
    int32 warten;
    Waiting waiting;
    bool unhidden = false;  // the hidden attribute has been taken off
};

void NumberedFiles::DB_Open(TextView FileName, int32& FileNummer, int32 Mode, bool AccessType, int32 Laenge,
                            int32 Warten) {
    FileNummer = 0;
    const Text name(FileName);
    const Text source = u"DB_Open (" + name + u")";
    for (Then then = Then::startAnew; then == Then::startAnew;) {
        // What an earlier operation left pending is not a failure of this one.
        clearPendingFailure();
        NumberInHand number(numbers_);
        if (number.value() == 0) {
            rtmMain::state().F = failureNumber(SystemError::tooManyOpenFiles);
            messages_.TSMsgBox(u"FreeFile kann kein Handle für \"" + name + u"\" bereitstellen", 16,
                               u"clsRtm.DB_Open");
            return;
        }
        OpenAttempt attempt{name, source, Mode, AccessType, Warten, {}};
        do {
            if (auto file = tryOpen(attempt)) {
                const uint64 end = Mode == 3 ? file->size().ok() ? *file->size() : 0 : 0;
                numbers_.enter(
                    {name, number.value(), Mode, AccessType, Laenge, std::move(file), end, end, {}});
                FileNummer = number.keep();
                return;
            }
            then = afterFailure(attempt);
        } while (then == Then::tryAgain);
    }
}

std::unique_ptr<platform::File> NumberedFiles::tryOpen(const OpenAttempt& attempt) {
    std::unique_ptr<platform::File> opened;
    const auto open = [&] {
        if (attempt.mode < 0 || attempt.mode > lastMode) {
            rtmMain::state().FE_ = 54;
            return;
        }
        if (attempt.mode == 5 && !fileExists(attempt.name)) raise(53, attempt.source, failureText(53));
        OpenRequest request = requestOf(attempt.mode, attempt.shared);
        auto result = rtmMain::system().files.open(attempt.name, request);
        if (attempt.mode == 5 && writingRefused(result.error())) {
            // A database on a medium that may only be read still serves its readers.
            request.access = Access::read;
            result = rtmMain::system().files.open(attempt.name, request);
        }
        if (result)
            opened = std::move(*result);
        else
            raise(failureNumber(result.error()), attempt.source, failureText(failureNumber(result.error())));
    };
    try {
        open();
    } catch (const Failure& failure) {
        record(failure, attempt.source);
    }
    messages_.ErrorHandler(-1, attempt.source);
    return opened;
}

NumberedFiles::Then NumberedFiles::afterFailure(OpenAttempt& attempt) {
    switch (rtmMain::state().F) {
        case 53:
        case 55:
        case 64:
        case 67:
        case 76:
            return Then::giveUp;
        case 70:
            return afterLocked(attempt);
        case 71:
            return driveMayBecomeReady(messages_, attempt.name) ? Then::startAnew : Then::giveUp;
        case 75:
            return afterAccessRefused(attempt);
        default:
            rtmMain::state().FE_ = rtmMain::state().F;
            messages_.ErrorHandler(0, attempt.source);
            return Then::giveUp;
    }
}

NumberedFiles::Then NumberedFiles::afterLocked(OpenAttempt& attempt) {
    if (rtmMain::state().stopping) return Then::giveUp;
    const int64 limit = int64{rtmMain::state().netWait} * std::abs(int64{attempt.warten});
    // A wait of 0 has no limit: it ends with the lock.
    if (attempt.warten == 0 || !attempt.waiting.longerThan(limit)) {
        attempt.waiting.pause();
        return Then::tryAgain;
    }
    if (attempt.warten > 0 && messages_.Frage(u"Kein Zugriff auf Datei " + attempt.name + u". Weiter"))
        return Then::startAnew;
    rtmMain::state().F = 70;
    return Then::giveUp;
}

NumberedFiles::Then NumberedFiles::afterAccessRefused(OpenAttempt& attempt) {
    auto& files = rtmMain::system().files;
    // A hidden file may not be emptied as long as it is hidden; no other refusal is tried again.
    if (attempt.mode != 2 || std::exchange(attempt.unhidden, true)) return Then::giveUp;
    auto status = files.status(attempt.name);
    if (!status || status->folder || !status->hidden) return Then::giveUp;
    return platform::failed(files.unhide(attempt.name)) ? Then::giveUp : Then::tryAgain;
}

void NumberedFiles::record(const Failure& failure, TextView Source) {
    leaveFailure(failure.Number(), failure.Description());
    messages_.ErrorHandler(-2, Source);
}

}  // namespace tsRtm
