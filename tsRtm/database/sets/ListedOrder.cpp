#include "tsRtm/database/sets/ListedOrder.hpp"

#include <algorithm>
#include <tuple>

namespace tsRtm {

void ListedOrder::sort(SetContent& content) {
    std::vector<int32> numbers;
    for (int32 place = 1, count = content.count(); place <= count; ++place)
        numbers.push_back(content.numberAt(place));
    sort(content, numbers);
}

void ListedOrder::sort(SetContent& content, const std::vector<int32>& numbers) {
    entries_.clear();
    Bytes record;
    for (const int32 number : numbers) {
        if (!content.read(number, record)) continue;
        entries_.push_back({{}, number});
        keys_.appendSortKey(entries_.back().key, record);
    }
    std::sort(entries_.begin(), entries_.end(), [](const Entry& a, const Entry& b) {
        return std::tie(a.key, a.number) < std::tie(b.key, b.number);
    });
}

int32 ListedOrder::recordAt(int32 position) const {
    return position < 1 || position > total() ? 0 : entries_[static_cast<std::size_t>(position - 1)].number;
}

int32 ListedOrder::positionOf(int32 number) const {
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const Entry& entry) { return entry.number == number; });
    return at == entries_.end() ? 0 : static_cast<int32>(at - entries_.begin()) + 1;
}

Found ListedOrder::locate(const SearchKey& key) const {
    const Bytes& wanted = key.sortKey();
    const auto at = std::partition_point(entries_.begin(), entries_.end(),
                                         [&](const Entry& entry) { return entry.key < wanted; });
    const auto position = static_cast<int32>(at - entries_.begin()) + 1;
    return {position, recordAt(position), total(), false};
}

}  // namespace tsRtm
