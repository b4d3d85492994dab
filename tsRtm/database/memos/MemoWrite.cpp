#include "tsRtm/database/memos/MemoWrite.hpp"

#include <tuple>

#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

MemoWrite::MemoWrite(MemoStores& stores, int32 field, TextView text)
    : stores_(stores), field_(field), empty_(text.empty()) {
    std::tie(head_, payload_) = stores.texts(field).encode(text);
}

MemoWrite::MemoWrite(MemoStores& stores, int32 field, BytesView bytes)
    : stores_(stores), field_(field), empty_(bytes.empty()) {
    std::tie(head_, payload_) = stores.texts(field).encodeBytes(Bytes(bytes));
}

void MemoWrite::prepare(BytesView stored, std::span<char> image) {
    old_ = stores_.pointerIn(stored, field_);
    appended_ = false;
    int32 pointer = 0;
    if (!empty_) {
        pointer = stores_.open(field_).append(head_, payload_);
        appended_ = true;
    }
    stores_.setPointer(image, field_, pointer);
}

void MemoWrite::flush() {
    if (!appended_) return;
    auto& file = stores_.open(field_).file();
    must(file.flush(), file);
}

void MemoWrite::finish() noexcept {
    try {
        stores_.release(field_, old_);
    } catch (const std::exception&) {  // room is lost, no text
    }
}

void MemoWrite::undo() noexcept {
    if (!std::exchange(appended_, false)) return;
    try {
        stores_.open(field_).takeBack();
    } catch (const Failure& failure) {
        rtmMain::DebugLog(failure.Description());
    }
}

}  // namespace tsRtm
