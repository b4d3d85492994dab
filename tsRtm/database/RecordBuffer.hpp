#pragma once
// The current record in memory: its bytes as they stand in the file, and its fields as text, each decoded
// when asked for. Element 0 is the deleted mark.
#include "tsRtm/database/RecordLayout.hpp"

namespace tsRtm {

// A value; keeps its room from record to record.
class RecordBuffer {
 public:
    RecordBuffer() = default;
    explicit RecordBuffer(const RecordLayout& layout);

    // Takes over a record; `plain` reads memo, blob and chain fields as plain text.
    void load(BytesView record, bool plain = false);
    // Empties every element.
    void clear();
    // 0..fields; the reference holds until the element changes.
    const Text& operator[](int32 number) const;
    // The same without a Text of its own where the bytes are plain; holds until the record changes.
    TextView view(int32 number) const;
    void set(int32 number, TextView text);
    bool deleted() const noexcept { return deleted_; }
    // The record as it is to be written: untouched fields keep their bytes.
    const Bytes& image();
    // The block number that a memo or blob field points to, 0 for none.
    int32 pointer(int32 number) const;

 private:
    enum class State : uint8 { stored, decoded, changed };

    const RecordLayout* layout_ = nullptr;
    Bytes bytes_;
    bool deleted_ = false;
    bool plain_ = false;
    bool anyChanged_ = false;
    mutable Text widened_;  // the whole record, where view() needed it
    mutable bool isWidened_ = false;
    mutable std::vector<State> states_;
    mutable std::vector<Text> texts_;
};

}  // namespace tsRtm
