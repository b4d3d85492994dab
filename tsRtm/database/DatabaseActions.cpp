// clsTSDB: the loop over a range of an index.
#include <algorithm>

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/sets/LoopProgress.hpp"
#include "tsRtm/database/sets/RangeWalk.hpp"
#include "tsRtm/database/sets/TypedKey.hpp"

namespace tsRtm {
namespace {

constexpr int32 kNoIndex = 1;

}  // namespace

// The numbers first: whatever handlers and others change meanwhile, each record is visited once.
void clsTSDB::ActionLoop(int32 Feld, TextView Von, TextView Bis, bool Alle, Variant& Zusatz, bool DoUpdate) {
    const auto self = shared_from_this();
    const Working working(*this);
    auto& e = *engine_;
    auto& d = e.d;
    if (DoUpdate && d.folder.readOnly) {
        e.fail(DatabaseError::readOnly);
        return;
    }
    cancelAction_ = false;
    SetIndex(IndexNr(Variant(Feld)));
    if (Feld > 0 && e.c.aktIndex == 0) {
        e.fail(kNoIndex);
        return;
    }
    if (!d.store) return;
    RangeWalk walk;
    // Of its own: a handler may add or drop an index.
    std::optional<IndexKeys> keys;
    std::optional<KeyRange> range;
    e.recordingFileFailures([&] {
        d.refreshCount();
        if (Feld > 0) {
            keys = d.indexes.keys(e.c.aktIndex);
            range = KeyRange::beginning(*keys, d.layout, Von, Bis);
            walk = walkRange(e, e.c.aktIndex, *range);
        } else {
            walk.first = std::max(roundToInt32(Val(Von)), 1);
            const int32 last = Bis.empty() ? d.records() : std::min(roundToInt32(Val(Bis)), d.records());
            for (int32 record = walk.first; record <= last; ++record) walk.records.push_back(record);
        }
    });
    e.recordingFileFailures([&] { visit(walk, range ? &*range : nullptr, Alle, Zusatz, DoUpdate); });
    if (!closing_) ActionEnd(Zusatz);
}

void clsTSDB::visit(const RangeWalk& walk, const KeyRange* range, bool all, Variant& Zusatz, bool update) {
    auto& e = *engine_;
    auto& c = e.c;
    auto& d = e.d;
    const int32 index = c.aktIndex;
    const int32 field = ActiveIndex();
    const auto sum = static_cast<int32>(walk.records.size());
    LoopProgress progress(sum, [this](int32 done, int32 of) { UpdateProgress(1, done, of); });
    bool begun = false;
    const bool records = Action.connected();
    // When records get other numbers the loop is over.
    const auto goesOn = [&, generation = e.live.generation] {
        return !cancelAction_ && !closing_ && d.store && e.live.generation == generation;
    };
    for (int32 i = 0; i < sum && goesOn(); ++i, progress.step()) {
        const int32 record = walk.records[static_cast<std::size_t>(i)];
        e.fehler = 0;
        // A handler may have taken records out.
        if (!d.store.has(record)) continue;
        d.read(record, c.felder.room());
        c.felder.loaded();
        c.aktSatz = record;
        if (c.aktIndex != index) c.aktIndex = d.control->IndexNr(Variant(field));
        c.logPos = c.viewPos = walk.first + i;
        c.seen = std::max(c.seen, c.logPos);
        if (!all && c.felder.deleted()) continue;
        const bool asWalked = walk.changes && d.changes && d.changes.value() == *walk.changes;
        if (range && !asWalked && !range->holds(c.felder.image())) continue;
        if (!std::exchange(begun, true)) ActionStart(Zusatz);
        if (!goesOn() || c.aktSatz != record) continue;
        bool store = update;
        if (records) Action(record, store, Zusatz);
        // What a handler has left in memory elsewhere is not this record.
        if (store && goesOn() && c.aktSatz == record) Update();
    }
}

}  // namespace tsRtm
