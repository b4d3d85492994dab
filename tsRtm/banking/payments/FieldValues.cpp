#include "tsRtm/banking/payments/FieldValues.hpp"

namespace tsRtm::payments {

FieldValues::FieldValues(std::span<const FieldRow> rows) : rows_(rows) {
    for (std::size_t field = 0; field < rows.size(); ++field) {
        text_ += rows[field].start;
        ends_[field] = static_cast<uint32>(text_.size());
    }
}

void FieldValues::put(std::size_t field, BytesView value) {
    const BytesView before = (*this)[field];
    const auto begin = static_cast<std::size_t>(before.data() - text_.data());
    const auto grown = static_cast<uint32>(value.size() - before.size());  // wraps where it shrinks
    text_.replace(begin, before.size(), value);
    for (std::size_t i = field; i < rows_.size(); ++i) ends_[i] += grown;
}

Bytes FieldValues::fileForm(std::size_t field) const {
    Bytes out;
    appendField((*this)[field], rows_[field].form, out);
    return out;
}

void FieldValues::append(Bytes& file) const {
    for (std::size_t field = 0; field < rows_.size(); ++field)
        appendField((*this)[field], rows_[field].form, file);
}

}  // namespace tsRtm::payments
