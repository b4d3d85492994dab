#include "tsRtm/database/DatabaseParts.hpp"

#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {

Text DatabaseParts::indexName(int32 number) const {
    const Text digits = toText(1000 + index(number).keys.primary());
    return u"I" + digits.substr(digits.size() - 3);
}

void DatabaseParts::refreshCount() {
    if (!store) return;
    store.refresh();
    refreshed = rtmMain::system().clock.elapsed();
}

void DatabaseParts::refreshWhenDue() {
    if (!shared || !store) return;
    if (rtmMain::system().clock.elapsed() - refreshed > std::chrono::seconds(6 * rtmMain::state().netWait))
        refreshCount();
}

bool DatabaseParts::hasRecord(int32 record) {
    if (store.has(record)) return true;
    if (record < 1 || !shared || !store) return false;
    refreshCount();
    return store.has(record);
}

RecordBuffer DatabaseParts::takeBuffer() {
    if (!spareBuffer) return RecordBuffer(layout);
    RecordBuffer buffer = std::move(*spareBuffer);
    spareBuffer.reset();
    buffer.clear();
    return buffer;
}

void DatabaseParts::close(int32& number) noexcept {
    try {
        if (const int32 file = std::exchange(number, 0); file != 0) files.TS_Close(file);
    } catch (const Failure&) {  // clean-up ignores failures
    }
}

void DatabaseParts::closeHandle(int32& handle) noexcept {
    try {
        if (const int32 file = std::exchange(handle, 0); file != 0) files.CloseAPI(file);
    } catch (const Failure&) {  // clean-up ignores failures
    }
}

void recordFailure(DatabaseParts& parts, const Failure& failure) noexcept {
    parts.fehler = failure.Number();
    rtmMain::state().F = failure.Number();
    try {
        rtmMain::DebugLog(failure.Source() + u": " + failure.Description());
    } catch (...) {  // the log is never a reason to fail
    }
}

}  // namespace tsRtm
