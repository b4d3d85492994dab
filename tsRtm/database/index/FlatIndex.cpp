#include "tsRtm/database/index/FlatIndex.hpp"

#include <algorithm>

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

// Whatever others add moves the entries behind it, so the end must be known.
int32 FlatIndex::total() {
    if (shared_) store_.refresh();
    return store_.count();
}

void FlatIndex::load() { file_.load(total(), array_); }

int32 FlatIndex::recordAt(int32 position) {
    if (!store_.reaches(position)) return 0;
    const int32 record = file_.at(position);
    return store_.reaches(record) ? record : 0;
}

std::size_t FlatIndex::placeOf(const SearchKey& key, int32 number) const {
    const auto below = [&](int16 record) {
        // An entry that names no record sorts as if it were empty: whatever stands there, the search ends.
        if (!store_.has(record)) return true;
        return keys_.compare(key, number, store_.view(record, room_), record) > 0;
    };
    return static_cast<std::size_t>(std::partition_point(array_.begin(), array_.end(), below) -
                                    array_.begin());
}

std::size_t FlatIndex::entryOf(int32 record) const {
    return static_cast<std::size_t>(std::find(array_.begin(), array_.end(), static_cast<int16>(record)) -
                                    array_.begin());
}

Found FlatIndex::locate(const SearchKey& key) {
    Found found;
    found.total = total();
    int32 low = 1;
    int32 high = found.total;
    while (low <= high) {
        const int32 middle = low + (high - low) / 2;
        const int32 record = recordAt(middle);
        if (record == 0 || keys_.compare(key, store_.view(record, room_)) > 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    found.position = low;
    found.record = low > found.total ? 0 : recordAt(low);
    found.exact = found.record != 0 && keys_.same(key, store_.view(found.record, room_));
    return found;
}

int32 FlatIndex::positionOf(int32 record) {
    load();
    const std::size_t at = entryOf(record);
    return at == array_.size() ? 0 : static_cast<int32>(at) + 1;
}

int32 FlatIndex::moveEntry(std::size_t from, int32 record, const SearchKey& to) {
    array_.erase(array_.begin() + static_cast<std::ptrdiff_t>(from));
    const std::size_t place = placeOf(to, record);
    array_.insert(array_.begin() + static_cast<std::ptrdiff_t>(place), static_cast<int16>(record));
    // Only what moved is written: the file comes out as if it had been written whole.
    if (place != from) file_.store(array_, std::min(place, from), std::max(place, from) + 1);
    return static_cast<int32>(place) + 1;
}

int32 FlatIndex::move(int32 record, const SearchKey&, const SearchKey& to) {
    load();
    const std::size_t from = entryOf(record);
    if (from == array_.size()) raise(28, u"DB Update", Text(u"Kein Indexeintrag für Satz ") + toText(record));
    return moveEntry(from, record, to);
}

int32 FlatIndex::enter(int32 record, const SearchKey& key) {
    load();
    if (entryOf(record) != array_.size()) return move(record, key, key);
    // At the end first: what the disk cannot take fails before an entry has moved.
    const std::size_t last = array_.size() - 1;
    array_[last] = static_cast<int16>(record);
    file_.store(array_, last, last + 1);
    return moveEntry(last, record, key);
}

IndexFindings FlatIndex::inspect(int32) {
    IndexFindings out;
    load();
    SearchKey before;
    int32 previous = 0;
    for (std::size_t i = 0; i < array_.size(); ++i) {
        const int32 record = array_[i];
        const auto note = [&] {
            out.lines.push_back(u"Indexfehler: " + toText(keys_.primary()) + u"> Position " +
                                toText(static_cast<int64>(i) + 1) + u":RecNo=" + toText(record));
        };
        if (!store_.has(record)) {
            note();
            continue;
        }
        out.records.push_back(record);
        const BytesView bytes = store_.view(record, room_);
        if (previous != 0 && keys_.compare(before, previous, bytes, record) > 0) note();
        before = keys_.searchFor(bytes);
        previous = record;
    }
    return out;
}

}  // namespace tsRtm
