#include "tsRtm/database/records/RecordBuffer.hpp"

#include <algorithm>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/NumberCode.hpp"

namespace tsRtm {

namespace {

const RecordLayout& noFields() {
    static const RecordLayout none;
    return none;
}

}  // namespace

RecordBuffer::RecordBuffer() : RecordBuffer(noFields()) {}

RecordBuffer::RecordBuffer(const RecordLayout& layout)
    : layout_(&layout),
      bytes_(layout.blank()),
      states_(static_cast<std::size_t>(layout.fields()) + 1, State::decoded),
      texts_(states_.size()) {}

void RecordBuffer::loaded(bool plain) {
    deleted_ = RecordLayout::isDeleted(bytes_);
    plain_ = plain;
    anyChanged_ = false;
    textKnown_ = false;
    std::fill(states_.begin(), states_.end(), State::stored);
}

void RecordBuffer::show(int32 number, BytesView columns) {
    const auto& field = layout_->field(number);
    bytes_.resize(layout_->bytes(), ' ');
    bytes_.replace(field.offset, field.bytes, columns);
    states_[static_cast<std::size_t>(number)] = State::stored;
    textKnown_ = false;
}

void RecordBuffer::clear() {
    bytes_ = layout_->blank();
    deleted_ = false;
    plain_ = false;
    anyChanged_ = false;
    textKnown_ = false;
    for (auto& text : texts_) text.clear();
    std::fill(states_.begin(), states_.end(), State::decoded);
}

const Text& RecordBuffer::operator[](int32 number) const {
    const auto i = static_cast<std::size_t>(number);
    if (states_[i] == State::stored) {
        if (number == 0) {
            texts_[0].assign(1, deleted_ ? u'*' : u' ');
        } else {
            const auto& field = layout_->field(number);
            layout_->decode(field, layout_->bytesOf(field, bytes_),
                            plain_ ? RecordLayout::Decode::value : RecordLayout::Decode::whole, texts_[i]);
        }
        states_[i] = State::decoded;
    }
    return texts_[i];
}

void RecordBuffer::set(int32 number, TextView text) {
    const auto i = static_cast<std::size_t>(number);
    texts_[i].assign(text);
    if (number == 0) {
        deleted_ = text.starts_with(u'*');
        layout_->setDeleted(bytes_, deleted_);
    }
    states_[i] = State::changed;
    anyChanged_ = true;
}

void RecordBuffer::encodeChanged(std::span<char> record) const {
    if (!anyChanged_) return;
    for (std::size_t i = 1; i < states_.size(); ++i) {
        if (states_[i] != State::changed) continue;
        const auto& field = layout_->field(static_cast<int32>(i));
        layout_->encode(field, texts_[i], record.subspan(field.offset, field.bytes));
    }
}

const Bytes& RecordBuffer::image() {
    bytes_.resize(layout_->bytes(), ' ');
    encodeChanged(bytes_);
    return bytes_;
}

void RecordBuffer::compose(BytesView stored, Extent extent, Bytes& into) {
    if (extent == Extent::whole || stored.empty()) {
        into = image();
    } else {
        into.assign(stored);
        encodeChanged(into);
        if (states_[0] == State::changed) layout_->setDeleted(into, deleted_);
    }
    layout_->keepPlaces(stored, into);
}

int32 RecordBuffer::pointer(int32 number) const { return rtmMain::DecodeNumber((*this)[number]); }

}  // namespace tsRtm
