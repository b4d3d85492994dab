#include "tsRtm/database/sets/RangeWalk.hpp"

#include <algorithm>

namespace tsRtm {
namespace {

// `take(record)` says whether it is kept.
template <class Take>
RangeWalk walked(DatabaseEngine& engine, int32 index, const KeyRange& range, Take take) {
    RangeWalk out;
    if (!engine.d.store) return out;
    engine.inIndex(index, [&](IndexForm& form) {
        out.records.clear();
        const auto places = range.placesIn(form);
        out.first = places.first;
        for (int32 position = places.first; position <= places.last; ++position) {
            const int32 record = form.recordAt(position);
            if (record == 0)
                raise(numberOf(DatabaseError::walkFailed), kFileFailureSource,
                      u"Fehler in der Indexdatei bei LogSatz " + toText(position));
            if (take(record)) out.records.push_back(record);
        }
        return true;
    });
    return out;
}

}  // namespace

RangeWalk walkRange(DatabaseEngine& engine, int32 index, const KeyRange& range) {
    auto& d = engine.d;
    const uint64 before = d.changes ? d.changes.value() : 0;
    RangeWalk out = walked(engine, index, range, [](int32) { return true; });
    if (range.hasGaps()) return out;
    Bytes room;
    while (!out.records.empty() && !range.holds(d.store.view(out.records.back(), room)))
        out.records.pop_back();
    if (d.changes && !d.remote() && d.changes.value() == before) out.changes = before;
    return out;
}

std::vector<int32> numbersIn(DatabaseEngine& engine, int32 index, const KeyRange& range) {
    Bytes room;
    return walked(engine, index, range,
                  [&](int32 record) { return range.holds(engine.d.store.view(record, room)); })
        .records;
}

}  // namespace tsRtm
