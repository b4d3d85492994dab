#include "tsRtm/frame/runtime/DebugLog.hpp"

#include <chrono>
#include <span>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm::rtmMain {

namespace {

constexpr TextView logFolder = u"Tessarol";
constexpr TextView logFile = u"RTMDebug.txt";

// A writer holds this byte, far behind any text, between its look at the end and its line; another waits a
// moment for it, and writes without it rather than not at all.
constexpr platform::ByteRange kTurn{uint64{1} << 40, 1};
constexpr int32 kMostTries = 50;
constexpr std::chrono::microseconds kPause{100};

void waitForTurn(platform::File& file) {
    for (int32 tries = 0; tries < kMostTries; ++tries) {
        if (file.tryLock(kTurn) != platform::SystemError::lockViolation) return;
        system().clock.sleep(kPause);
    }
}

// Opened and closed for each line, so that the log is whole whenever the process ends; the lock ends with it.
void appendLine(TextView path, const Bytes& line) {
    const platform::OpenRequest request{platform::Access::readWrite, platform::Sharing::all,
                                        platform::Disposition::openOrCreate};
    const auto file = system().files.open(path, request);
    if (!file) return;
    waitForTurn(**file);
    const auto size = (*file)->size();
    if (!size) return;
    // A line that could not be written is lost: the log must never be in the way.
    static_cast<void>((*file)->writeAt(*size, std::as_bytes(std::span(line))));
}

}  // namespace

void DebugLog(TextView text) {
    if (!state().debugging) return;
    // Found anew for each line, and not UserDir: the log starts before the folders are known.
    const Text base = SpecialFolder(static_cast<int32>(platform::FolderId::applicationData));
    if (base.empty()) return;
    const Text line = GeneralDate(system().clock.now()) + u" - " + Text(text) + u"\r\n";
    appendLine(JoinPath({base, logFolder, logFile}), toAnsi(line));
}

}  // namespace tsRtm::rtmMain
