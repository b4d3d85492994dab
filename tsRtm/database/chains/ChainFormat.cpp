#include "tsRtm/database/chains/ChainFormat.hpp"

#include <algorithm>
#include <limits>

#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/NumberCode.hpp"

namespace tsRtm {
namespace {

constexpr int32 kEncodedWidth = 5;
constexpr int32 kGreatest = std::numeric_limits<int32>::max();

// Blanks, then digits, and nothing else but blanks behind; 0 for all else.
int32 decimal(TextView text) noexcept {
    text = trim(text);
    int64 value = 0;
    for (const char16_t c : text) {
        if (c < u'0' || c > u'9') return 0;
        value = value * 10 + (c - u'0');
        if (value > kGreatest) return 0;
    }
    return static_cast<int32>(value);
}

Bytes blanks(std::size_t count, uint32 unit) {
    return unit == 2 ? toUtf16Le(Text(count / 2, u' ')) : Bytes(count, ' ');
}

}  // namespace

ChainFormat::ChainFormat(const FieldLayout& field, const RecordLayout& rows)
    : length_(field.length),
      width_(field.length < kPairedFrom ? field.length : field.length / 2),
      unit_(rows.unit()),
      fieldUnit_(field.wide ? 2 : 1),
      rowBytes_(rows.bytes()) {}

int32 ChainFormat::greatest() const noexcept {
    // One row more would have a number of its own, but the next one to give out could not be written down.
    if (width_ == kEncodedWidth || width_ >= std::numeric_limits<int32>::digits10 + 1) return kGreatest - 1;
    int32 power = 1;
    for (int32 i = 0; i < width_; ++i) power *= 10;
    return power - 2;
}

Bytes ChainFormat::blankRow() const { return blanks(rowBytes_, unit_); }

int32 ChainFormat::decode(BytesView bytes, uint32 unit) const {
    const Text text = unit == 2 ? fromUtf16Le(bytes) : fromAnsi(bytes);
    return width_ == kEncodedWidth ? rtmMain::DecodeNumber(text) : decimal(text);
}

Bytes ChainFormat::encode(int32 row, uint32 unit) const {
    Text text = width_ == kEncodedWidth ? rtmMain::EncodeNumber(row) : toText(row);
    const auto width = static_cast<std::size_t>(width_);
    text.insert(0, width - std::min(width, text.size()), u' ');
    return unit == 2 ? toUtf16Le(text) : toAnsi(text);
}

void ChainFormat::pointers(int32 previous, int32 next, std::span<char> row) const {
    const auto lay = [&](uint32 offset, int32 number) {
        const Bytes bytes = pointer(number);
        std::copy(bytes.begin(), bytes.end(), row.begin() + offset);
    };
    if (paired()) lay(kPreviousOffset, previous);
    lay(nextOffset(), next);
}

ChainEnds ChainFormat::ends(BytesView columns) const {
    const std::size_t bytes = static_cast<std::size_t>(width_) * fieldUnit_;
    if (columns.size() < bytes) return {};
    return {decode(columns.substr(0, bytes), fieldUnit_),
            paired() ? decode(columns.substr(columns.size() - bytes), fieldUnit_) : 0};
}

void ChainFormat::ends(ChainEnds ends, std::span<char> columns) const {
    const Bytes blank = blanks(columns.size(), fieldUnit_);
    std::copy(blank.begin(), blank.end(), columns.begin());
    if (ends.first == 0) return;
    const Bytes first = encode(ends.first, fieldUnit_);
    std::copy(first.begin(), first.end(), columns.begin());
    if (!paired()) return;
    const Bytes last = encode(ends.last, fieldUnit_);
    std::copy(last.begin(), last.end(), columns.end() - static_cast<std::ptrdiff_t>(last.size()));
}

}  // namespace tsRtm
