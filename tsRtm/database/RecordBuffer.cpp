#include "tsRtm/database/RecordBuffer.hpp"

#include <algorithm>

#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {

RecordBuffer::RecordBuffer(const RecordLayout& layout)
    : layout_(&layout),
      bytes_(layout.blank()),
      states_(static_cast<std::size_t>(layout.fields()) + 1, State::decoded),
      texts_(states_.size()) {}

void RecordBuffer::load(BytesView record, bool plain) {
    bytes_.assign(record);
    deleted_ = RecordLayout::isDeleted(record);
    plain_ = plain;
    anyChanged_ = false;
    isWidened_ = false;
    std::fill(states_.begin(), states_.end(), State::stored);
}

void RecordBuffer::clear() {
    bytes_ = layout_->blank();
    deleted_ = false;
    plain_ = false;
    anyChanged_ = false;
    isWidened_ = false;
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

TextView RecordBuffer::view(int32 number) const {
    if (number == 0 || states_[static_cast<std::size_t>(number)] != State::stored) return (*this)[number];
    const auto& field = layout_->field(number);
    if (!field.inPlace) return (*this)[number];
    if (!isWidened_) {
        fromAnsi(bytes_, widened_);
        isWidened_ = true;
    }
    const BytesView all = bytes_;
    const BytesView text = field.trimmed(layout_->bytesOf(field, all));
    return TextView(widened_).substr(static_cast<std::size_t>(text.data() - all.data()), text.size());
}

void RecordBuffer::set(int32 number, TextView text) {
    const auto i = static_cast<std::size_t>(number);
    texts_[i].assign(text);
    if (number == 0) {
        deleted_ = text.starts_with(u'*');
        states_[0] = State::decoded;
        layout_->setDeleted(bytes_, deleted_);
        return;
    }
    states_[i] = State::changed;
    anyChanged_ = true;
}

const Bytes& RecordBuffer::image() {
    bytes_.resize(layout_->bytes(), ' ');
    if (!anyChanged_) return bytes_;
    for (std::size_t i = 1; i < states_.size(); ++i) {
        if (states_[i] != State::changed) continue;
        const auto& field = layout_->field(static_cast<int32>(i));
        layout_->encode(field, texts_[i], std::span(bytes_).subspan(field.offset, field.bytes));
    }
    return bytes_;
}

int32 RecordBuffer::pointer(int32 number) const { return rtmMain::DecodeNumber((*this)[number]); }

}  // namespace tsRtm
