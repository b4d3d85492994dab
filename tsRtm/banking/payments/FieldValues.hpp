#pragma once
// The values of one record. A file has them by the hundred thousand, so they lie together.
#include <array>

#include "tsRtm/banking/payments/RecordLayout.hpp"

namespace tsRtm::payments {

// Fields by their number in the layout. A value is as long as it was given; the record cuts it.
class FieldValues {
 public:
    // With the values of a new record. The rows outlive the values.
    explicit FieldValues(std::span<const FieldRow> rows);

    BytesView operator[](std::size_t field) const noexcept {
        const std::size_t begin = field == 0 ? 0 : ends_[field - 1];
        return BytesView(text_).substr(begin, ends_[field] - begin);
    }
    Text text(std::size_t field) const { return textOf((*this)[field]); }
    void set(std::size_t field, TextView value) { put(field, normalised(value)); }
    // A value that is in the file's characters already.
    void put(std::size_t field, BytesView value);
    void clear(std::size_t field) { put(field, {}); }
    // As it stands in the file.
    Bytes fileForm(std::size_t field) const;
    // The record, put behind what there is.
    void append(Bytes& file) const;

 private:
    std::span<const FieldRow> rows_;
    Bytes text_;
    std::array<uint32, kMostFields> ends_{};
};

}  // namespace tsRtm::payments
