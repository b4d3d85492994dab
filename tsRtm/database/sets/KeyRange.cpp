#include "tsRtm/database/sets/KeyRange.hpp"

#include <limits>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/database/sets/TypedKey.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr std::size_t kShortestDate = 6;

}  // namespace

bool KeyRange::takesDates() const {
    const int32 primary = keys_->primary();
    return layout_->has(primary) && layout_->field(primary).date && layout_->field(primary).nachKomma == 0;
}

// Beginnings of sortable dates, as a year, stay.
Text KeyRange::typed(TextView bound) const {
    return bound.size() < kShortestDate ? Text(bound) : typedPart(*layout_, keys_->primary(), bound);
}

KeyRange KeyRange::between(const IndexKeys& keys, const RecordLayout& layout, TextView from, TextView to) {
    KeyRange out(keys, layout);
    const char16_t last = rtmMain::state().locale.lastChar;
    // More of them than any field has characters: no key lies between.
    const Text behind =
        greatestText(keys, layout, layout.has(keys.primary()) ? layout.field(keys.primary()).length + 1 : 1);
    if (!from.empty()) out.from_ = keys.search(out.typed(from));
    if (to.empty() || (to.size() == 1 && to.front() == last)) return out;
    if (to.back() == last) {
        to.remove_suffix(1);
        out.to_ = keys.search(out.typed(to) + behind);
        out.end_ = out.to_;
        return out;
    }
    const Text bound = out.typed(to);
    out.to_ = keys.search(bound);
    out.end_ = keys.search(bound + u" " + behind);
    out.first_.emplace(layout, std::array<int32, 3>{keys.primary(), 0, 0});
    out.first_->search(bound, out.whole_);
    return out;
}

KeyRange KeyRange::beginning(const IndexKeys& keys, const RecordLayout& layout, TextView from, TextView to) {
    KeyRange out(keys, layout);
    if (out.takesDates()) {
        out.days(from, to);
        return out;
    }
    if (!from.empty()) out.from_ = keys.search(from);
    // Twice where there is nothing else: keys that begin with it once are reached.
    const Text bound = Text(to) + greatestText(keys, layout, to.empty() ? 2 : 1);
    out.to_ = keys.search(bound);
    out.end_ = keys.search(bound + u" " + greatestText(keys, layout, 1));
    return out;
}

void KeyRange::days(TextView from, TextView to) {
    days_ = Days{from.empty() ? 0 : JulianDay(from),
                 to.empty() ? std::numeric_limits<int32>::max() : JulianDay(to)};
    if (!from.empty()) from_ = keys_->search(DateSort(from));
    if (!to.empty()) end_ = keys_->search(DateSort(to) + u" " + greatestText(*keys_, *layout_, 1));
}

bool KeyRange::holds(BytesView record) const {
    if (days_) {
        const auto& field = layout_->field(keys_->primary());
        Text text;
        layout_->decode(field, layout_->bytesOf(field, record), RecordLayout::Decode::value, text);
        const int32 day = JulianDay(text);
        return day >= days_->from && day <= days_->to;
    }
    if (from_ && keys_->compare(*from_, record) > 0) return false;
    if (!to_ || keys_->compare(*to_, record) >= 0) return true;
    return first_ && first_->compare(whole_, record) == 0;
}

}  // namespace tsRtm
