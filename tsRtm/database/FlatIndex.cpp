#include "tsRtm/database/FlatIndex.hpp"

#include <algorithm>
#include <bit>

#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

static_assert(std::endian::native == std::endian::little, "the array is read and written as it lies");

void FlatIndex::load() {
    array_.assign(static_cast<std::size_t>(store_.count()), 0);
    if (array_.empty()) return;
    bytes_.refreshSize();
    bytes_.read(0, {reinterpret_cast<char*>(array_.data()), array_.size() * flatFormat::kEntryBytes});
}

void FlatIndex::save(std::size_t first, std::size_t last) {
    if (first >= last) return;
    bytes_.store(first * flatFormat::kEntryBytes, {reinterpret_cast<const char*>(array_.data() + first),
                                                   (last - first) * flatFormat::kEntryBytes});
}

int32 FlatIndex::recordAt(int32 position) {
    if (!store_.has(position)) return 0;
    int16 record = 0;
    const std::span<char> into(reinterpret_cast<char*>(&record), sizeof record);
    // A growing file shows by its count of records before it shows here.
    if (bytes_.knownSize() < flatFormat::offsetOf(position) + sizeof record) bytes_.refreshSize();
    if (bytes_.read(flatFormat::offsetOf(position), into) != sizeof record) return 0;
    return store_.has(record) ? record : 0;
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

Found FlatIndex::search(const SearchKey& key) {
    // Whatever others add moves the entries behind it, so the end must be known.
    if (shared_) store_.refresh();
    probes_.clear();
    Found found;
    int32 low = 1;
    int32 high = store_.count();
    while (low <= high) {
        const int32 middle = low + (high - low) / 2;
        const int32 record = recordAt(middle);
        probes_.push_back({middle, record});
        if (record == 0 || keys_.compare(key, store_.view(record, room_)) > 0)
            low = middle + 1;
        else
            high = middle - 1;
    }
    found.position = low;
    found.record = recordAt(low);
    found.exact = found.record != 0 && keys_.same(key, store_.view(found.record, room_));
    return found;
}

bool FlatIndex::probesUnchanged() {
    return std::all_of(probes_.begin(), probes_.end(),
                       [this](const Probe& probe) { return recordAt(probe.position) == probe.record; });
}

Found FlatIndex::locate(const SearchKey& key) {
    return steady(
        watch_, [&] { return search(key); }, [&] { return probesUnchanged(); });
}

int32 FlatIndex::positionOf(int32 record) {
    load();
    const auto at = std::find(array_.begin(), array_.end(), static_cast<int16>(record));
    return at == array_.end() ? 0 : static_cast<int32>(at - array_.begin()) + 1;
}

int32 FlatIndex::move(int32 record, const SearchKey*, const SearchKey& to) {
    load();
    const auto at = std::find(array_.begin(), array_.end(), static_cast<int16>(record));
    if (at == array_.end()) raise(28, u"DB Update", Text(u"Kein Indexeintrag für Satz ") + toText(record));
    const auto from = static_cast<std::size_t>(at - array_.begin());
    array_.erase(at);
    const std::size_t place = placeOf(to, record);
    array_.insert(array_.begin() + static_cast<std::ptrdiff_t>(place), static_cast<int16>(record));
    // Only what moved is written: the file comes out as if it had been written whole.
    if (place != from) save(std::min(place, from), std::max(place, from) + 1);
    return static_cast<int32>(place) + 1;
}

bool FlatIndex::erase(int32 record, const SearchKey&) {
    load();
    const auto at = std::find(array_.begin(), array_.end(), static_cast<int16>(record));
    if (at == array_.end()) return false;
    const auto from = static_cast<std::size_t>(at - array_.begin());
    std::rotate(at, at + 1, array_.end());
    save(from, array_.size());
    return true;
}

void FlatIndex::append(int32 record) {
    const auto entry = static_cast<int16>(record);
    bytes_.write(flatFormat::offsetOf(record), {reinterpret_cast<const char*>(&entry), sizeof entry});
}

IndexFindings FlatIndex::inspect(int32) {
    IndexFindings out;
    load();
    SearchKey before;
    int32 previous = 0;
    for (std::size_t i = 0; i < array_.size(); ++i) {
        const int32 record = array_[i];
        const Text place = toText(static_cast<int64>(i) + 1);
        if (!store_.has(record)) {
            out.lines.push_back(u"Indexfehler: " + toText(keys_.primary()) + u"> Position " + place +
                                u":RecNo=" + toText(record));
            continue;
        }
        out.records.push_back(record);
        const BytesView bytes = store_.view(record, room_);
        if (previous != 0 && keys_.compare(before, previous, bytes, record) > 0)
            out.lines.push_back(u"Indexfehler: " + toText(keys_.primary()) + u"> Position " + place +
                                u":RecNo=" + toText(record));
        before = keys_.searchFor(bytes);
        previous = record;
    }
    return out;
}

}  // namespace tsRtm
