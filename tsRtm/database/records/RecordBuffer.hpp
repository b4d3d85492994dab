#pragma once
// The current record in memory: its bytes as they stand in the file, and its fields as text, each decoded
// when asked for. Element 0 is the deleted mark.
#include <utility>

#include "tsRtm/database/records/RecordText.hpp"

namespace tsRtm {

// A value; keeps its room from record to record.
class RecordBuffer {
 public:
    RecordBuffer();  // of no database: the mark alone
    explicit RecordBuffer(const RecordLayout& layout);

    // Where the bytes of a record are to be read to, and what has them taken over; `plain` reads memo, blob
    // and chain fields as plain text.
    Bytes& room() noexcept { return bytes_; }
    void loaded(bool plain = false);
    // Shows other bytes of one field than were loaded; nothing that was assigned.
    void show(int32 number, BytesView columns);
    // Empties every element.
    void clear();
    // 0..fields; the reference holds until the element changes.
    const Text& operator[](int32 number) const;
    // The same without a Text of its own where the bytes are plain; holds until the record changes.
    TextView view(int32 number) const;
    void set(int32 number, TextView text);
    bool deleted() const noexcept { return deleted_; }
    // The record as it stands in memory: untouched fields keep their bytes.
    const Bytes& image();
    // The record as it is to stand in the file over what stands there (`stored` empty: a new one). Columns
    // that name places in side files come from there, or are blank.
    enum class Extent {
        whole,    // all fields and the mark as they are in memory
        assigned  // only what was set here since it was loaded
    };
    void compose(BytesView stored, Extent extent, Bytes& into);
    // The block number that a memo or blob field points to, 0 for none.
    int32 pointer(int32 number) const;

 private:
    enum class State : uint8 { stored, decoded, changed };

    void encodeChanged(std::span<char> record) const;

    const RecordLayout* layout_;
    Bytes bytes_;
    bool deleted_ = false;
    bool plain_ = false;
    bool anyChanged_ = false;
    mutable RecordText text_;  // for view(), once that was asked
    mutable bool textKnown_ = false;
    mutable std::vector<State> states_;
    mutable std::vector<Text> texts_;
};

inline TextView RecordBuffer::view(int32 number) const {
    const auto& field = layout_->field(number);
    if (number == 0 || !field.inPlace || states_[static_cast<std::size_t>(number)] != State::stored)
        return (*this)[number];
    if (!std::exchange(textKnown_, true)) text_.look(bytes_);
    const TextView text = text_.field(field);
    return field.date && text.starts_with(u'J') ? TextView((*this)[number]) : text;
}

}  // namespace tsRtm
