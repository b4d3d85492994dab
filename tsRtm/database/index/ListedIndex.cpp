#include "tsRtm/database/index/ListedIndex.hpp"

#include <algorithm>

#include "tsRtm/database/index/IndexBuild.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {

ListedIndex::ListedIndex(RecordStore& store, const IndexKeys& keys)
    : store_(store), keys_(keys), records_(RecordSorter().inOrder(store, keys, {})) {}

Found ListedIndex::locate(const SearchKey& key) {
    const auto below = [&](int32 record) { return keys_.compare(key, store_.view(record, room_)) > 0; };
    const auto at = std::partition_point(records_.begin(), records_.end(), below);
    Found found{static_cast<int32>(at - records_.begin()) + 1, 0, total(), false};
    if (at == records_.end()) return found;
    found.record = *at;
    found.exact = keys_.same(key, store_.view(*at, room_));
    return found;
}

int32 ListedIndex::positionOf(int32 record) {
    const auto at = std::find(records_.begin(), records_.end(), record);
    return at == records_.end() ? 0 : static_cast<int32>(at - records_.begin()) + 1;
}

int32 ListedIndex::recordAt(int32 position) {
    return position < 1 || position > total() ? 0 : records_[static_cast<std::size_t>(position - 1)];
}

int32 ListedIndex::enter(int32, const SearchKey&) { raise(5, kFileFailureSource, u"Nur lesen"); }

int32 ListedIndex::move(int32, const SearchKey&, const SearchKey&) {
    raise(5, kFileFailureSource, u"Nur lesen");
}

}  // namespace tsRtm
