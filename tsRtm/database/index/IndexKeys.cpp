#include "tsRtm/database/index/IndexKeys.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kDateDigits = 8;

bool allDigits(BytesView bytes) noexcept {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void copyStart(const Bytes& sortKey, KeyStart& into) noexcept {
    const std::size_t count = std::min(sortKey.size(), into.bytes.size());
    std::memcpy(into.bytes.data(), sortKey.data(), count);
    std::memset(into.bytes.data() + count, 0, into.bytes.size() - count);
}

}  // namespace

IndexKeys::IndexKeys(const RecordLayout& layout, std::array<int32, 3> fields)
    : layout_(&layout), fields_(fields) {
    bool utf16 = layout.wide();
    for (const int32 number : fields_) {
        if (!layout.has(number)) break;
        ++count_;
        utf16 = utf16 || layout.field(number).wide || layout.field(number).utf8;
    }
    for (int32 c = 0; c < count_; ++c) {
        const auto& part = layout.field(field(c));
        if (part.bytes == 0) continue;
        // The blanks behind a text are looked at first. Fields side by side need no look between them.
        const bool joins = !touched_.empty() && touched_.back() + 1 == part.offset;
        if (joins) touched_.pop_back();
        if (!joins) touched_.push_back(part.offset);
        touched_.push_back(part.offset + part.bytes - 1);
    }
    order_ = utf16 ? Order::text : layout.dos() ? Order::dos : Order::ansi;
}

Text IndexKeys::fieldText(const FieldLayout& field, BytesView record) const {
    layout_->decode(field, layout_->bytesOf(field, record), RecordLayout::Decode::value, decoded_);
    if (field.sortsAsDate()) decoded_ = DateSort(decoded_);
    return decoded_.empty() ? Text(1, u' ') : decoded_;
}

Text IndexKeys::joined(BytesView record) const {
    Text out;
    for (int32 c = 0; c < count_; ++c) {
        if (c > 0) out.push_back(u' ');
        out.append(fieldText(layout_->field(field(c)), record));
    }
    return out;
}

// The sortable form of a date of eight digits, without a detour over Text: the order of the locale's parts
// turned to year, month, day.
BytesView IndexKeys::sortableDate(std::size_t component, BytesView digits) const {
    Bytes& room = room_[component];
    room.assign(digits);
    switch (rtmMain::state().locale.dateForm) {
        case 0:
            std::rotate(room.begin(), room.begin() + 4, room.end());
            break;
        case 1:
            std::rotate(room.begin(), room.begin() + 4, room.end());
            std::rotate(room.begin() + 4, room.begin() + 6, room.end());
            break;
        default:
            break;
    }
    return room;
}

BytesView IndexKeys::piece(std::size_t component, BytesView record) const {
    const auto& field = layout_->field(fields_[component]);
    const BytesView bytes = field.trimmed(layout_->bytesOf(field, record));
    BytesView out = bytes;
    if (!field.plain() || field.sortsAsDate() || field.tellsDayNumber(bytes)) {
        if (field.plain() && bytes.size() == kDateDigits && allDigits(bytes)) {
            out = sortableDate(component, bytes);
        } else if (!bytes.empty()) {
            room_[component] = layout_->toRecordCode(fieldText(field, record));
            out = room_[component];
        }
    }
    return out.empty() ? BytesView(" ", 1) : out;
}

IndexKeys::KeyPieces IndexKeys::pieces(BytesView record) const {
    KeyPieces out;
    out.count = static_cast<std::size_t>(count_);
    for (std::size_t c = 0; c < out.count; ++c) out.piece[c] = piece(c, record);
    return out;
}

// A text in the code of the records.
void IndexKeys::prepare(Pieces text, SearchKey& into) const {
    if (order_ == Order::ansi) {
        auto* const ansi = std::get_if<AnsiSearchKey>(&into.prepared_);
        (ansi ? *ansi : into.prepared_.emplace<AnsiSearchKey>()).assign(text);
        return;
    }
    into.bytes_.clear();
    appendJoined(into.bytes_, text);
    into.prepared_.emplace<DosSearchKey>(into.bytes_);
}

void IndexKeys::prepare(TextView text, SearchKey& into) const {
    into.bytes_ = toUtf16Le(text);
    tsRtm::appendSortKey(into.prepared_.emplace<Bytes>(), text);
}

void IndexKeys::search(TextView key, SearchKey& into) const {
    if (order_ == Order::text) return prepare(key, into);
    Bytes bytes = std::move(into.bytes_);
    bytes.clear();
    if (order_ == Order::ansi)
        appendAnsi(bytes, key);
    else
        bytes = layout_->toRecordCode(key);
    const BytesView text = bytes;
    prepare(Pieces(&text, 1), into);
    if (order_ == Order::ansi) into.bytes_ = std::move(bytes);
}

void IndexKeys::searchFor(BytesView record, SearchKey& into) const {
    if (order_ == Order::text)
        prepare(joined(record), into);
    else
        prepare(pieces(record).all(), into);
}

std::strong_ordering IndexKeys::compare(const SearchKey& key, const KeyPieces& record) {
    if (const auto* ansi = std::get_if<AnsiSearchKey>(&key.prepared_)) return ansi->compare(record.all());
    return std::get<DosSearchKey>(key.prepared_).compare(record.all());
}

std::strong_ordering IndexKeys::compare(const SearchKey& key, BytesView record) const {
    if (order_ != Order::text) return compare(key, pieces(record));
    Bytes other;
    tsRtm::appendSortKey(other, joined(record));
    return std::get<Bytes>(key.prepared_).compare(other) <=> 0;
}

bool IndexKeys::same(const SearchKey& key, const KeyPieces& record) {
    BytesView rest = key.bytes();
    for (std::size_t c = 0; c < record.count; ++c) {
        if (c > 0) {
            if (!rest.starts_with(' ')) return false;
            rest.remove_prefix(1);
        }
        if (!rest.starts_with(record.piece[c])) return false;
        rest.remove_prefix(record.piece[c].size());
    }
    return rest.empty();
}

bool IndexKeys::same(const SearchKey& key, BytesView record) const {
    return order_ == Order::text ? key.bytes() == toUtf16Le(joined(record)) : same(key, pieces(record));
}

IndexKeys::Match IndexKeys::match(const SearchKey& key, BytesView record) const {
    if (order_ == Order::text) return {compare(key, record), same(key, record)};
    const auto parts = pieces(record);
    const bool exact = same(key, parts);
    return {exact ? std::strong_ordering::equal : compare(key, parts), exact};
}

void IndexKeys::appendSortKey(Bytes& into, BytesView record) const {
    switch (order_) {
        case Order::ansi:
            appendSortKeyAnsi(into, pieces(record).all());
            break;
        case Order::dos:
            appendSortKeyDos(into, pieces(record).all());
            break;
        case Order::text:
            tsRtm::appendSortKey(into, joined(record));
            break;
    }
}

void IndexKeys::start(BytesView record, std::size_t most, KeyStart& into) const {
    if (order_ == Order::ansi) {
        sortKeyStartAnsi({into.bytes.data(), most}, pieces(record).all());
        return;
    }
    sortKey_.clear();
    appendSortKey(sortKey_, record);
    copyStart(sortKey_, into);
}

const Bytes& SearchKey::sortKey() const {
    if (const auto* ansi = std::get_if<AnsiSearchKey>(&prepared_)) return ansi->sortKey();
    if (const auto* dos = std::get_if<DosSearchKey>(&prepared_)) return dos->sortKey();
    return std::get<Bytes>(prepared_);
}

void IndexKeys::start(const SearchKey& key, KeyStart& into) const { copyStart(key.sortKey(), into); }

Text IndexKeys::text(BytesView record) const { return joined(record); }

Text IndexKeys::text(const SearchKey& key) const {
    return order_ == Order::text ? fromUtf16Le(key.bytes()) : layout_->fromRecordCode(key.bytes());
}

bool IndexKeys::differs(BytesView a, BytesView b) const {
    for (int32 c = 0; c < count_; ++c) {
        const auto& field = layout_->field(this->field(c));
        if (layout_->bytesOf(field, a) != layout_->bytesOf(field, b)) return true;
    }
    return false;
}

}  // namespace tsRtm
