#include "tsRtm/database/sets/TypedKey.hpp"

#include <algorithm>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr char16_t kGreatestDos = u'\u00A0';  // byte 255
constexpr char16_t kGreatestWide = u'\uFFFF';

}  // namespace

std::optional<int32> positionIn(TextView typed) {
    if (!typed.starts_with(u'#')) return std::nullopt;
    const TextView number = trimLeft(typed.substr(1));
    const auto digit = number.find_first_not_of(u"+-.");
    if (digit == TextView::npos || number[digit] < u'0' || number[digit] > u'9') return std::nullopt;
    return roundToInt32(Val(number));
}

Text typedPart(const RecordLayout& layout, int32 field, TextView typed) {
    if (!layout.has(field) || !layout.field(field).date || layout.field(field).nachKomma != 0)
        return Text(typed);
    const auto blank = std::min(typed.find(u' '), typed.size());
    return DateSort(typed.substr(0, blank)).append(typed.substr(blank));
}

Text typedKey(const IndexKeys& keys, const RecordLayout& layout, std::span<const TextView> parts) {
    std::size_t given = parts.size();
    while (given > 1 && parts[given - 1].empty()) --given;
    Text out;
    for (std::size_t i = 0; i < given; ++i) {
        if (i > 0) out += u' ';
        const int32 field = static_cast<int32>(i) < keys.count() ? keys.field(static_cast<int32>(i)) : 0;
        const Text part = typedPart(layout, field, parts[i]);
        out += part.empty() && i + 1 < given ? Text(1, u' ') : part;
    }
    return out;
}

ExactParts::ExactParts(const RecordLayout& layout, std::span<const int32> fields,
                       std::span<const TextView> parts)
    : layout_(layout) {
    for (std::size_t i = 0; i < std::min(fields.size(), parts.size()); ++i)
        if (layout.has(fields[i]) && (i == 0 || !parts[i].empty()))
            parts_.push_back({layout.field(fields[i]), typedPart(layout, fields[i], parts[i])});
}

bool ExactParts::in(BytesView record) const {
    Text text;
    return std::all_of(parts_.begin(), parts_.end(), [&](const Part& part) {
        layout_.decode(part.field, layout_.bytesOf(part.field, record), RecordLayout::Decode::value, text);
        if (part.field.date && part.field.nachKomma == 0) text = DateSort(text);
        return text == part.text;
    });
}

Text greatestText(const IndexKeys& keys, const RecordLayout& layout, int32 count) {
    const char16_t last = keys.isWide()  ? kGreatestWide
                          : layout.dos() ? kGreatestDos
                                         : rtmMain::state().locale.lastChar;
    return Text(static_cast<std::size_t>(count), last);
}

}  // namespace tsRtm
