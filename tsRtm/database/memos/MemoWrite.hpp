#pragma once
// The write of one memo or blob together with its record.
#include "tsRtm/database/memos/MemoStores.hpp"
#include "tsRtm/database/records/SideWrite.hpp"

namespace tsRtm {

// A text, or the bytes of a blob, always goes to a new entry at the end of its store; the record then points
// there, and the old entry becomes zeros. An empty one is pointer 0.
class MemoWrite final : public SideWrite {
 public:
    // The stores outlive it.
    MemoWrite(MemoStores& stores, int32 field, TextView text);
    MemoWrite(MemoStores& stores, int32 field, BytesView bytes);

    void prepare(BytesView stored, std::span<char> image) override;
    void flush() override;
    void finish() noexcept override;
    void undo() noexcept override;

 private:
    MemoStores& stores_;
    int32 field_;
    memoFormat::Head head_;
    Bytes payload_;
    bool empty_;
    bool appended_ = false;
    int32 old_ = 0;  // pointer
};

}  // namespace tsRtm
