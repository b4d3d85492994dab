// clsTSDB: the objects that applications hold of it.
#include <map>

#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/memos/PropertyText.hpp"
#include "tsRtm/tables/DatenTab.hpp"

namespace tsRtm {

void clsTSDB::enter(clsTSRecord& record) {
    auto& records = engine_->live.records;
    record.livePlace_ = records.size();
    records.push_back(&record);
}

void clsTSDB::leave(clsTSRecord& record) noexcept {
    auto& live = engine_->live;
    live.records[record.livePlace_] = live.records.back();
    live.records[record.livePlace_]->livePlace_ = record.livePlace_;
    live.records.pop_back();
    const auto known = live.known.find(record.number_);
    if (known != live.known.end() && known->second == &record) live.known.erase(known);
}

// From here on it is found by its number, unless another one is.
void clsTSDB::standsFor(clsTSRecord& record) { engine_->live.known.try_emplace(record.number_, &record); }

std::shared_ptr<clsTSRecord> clsTSDB::liveRecord(int32 number) const {
    const auto known = engine_->live.known.find(number);
    return known == engine_->live.known.end()
               ? nullptr
               : std::static_pointer_cast<clsTSRecord>(known->second->weak_from_this().lock());
}

void clsTSDB::takeLock(clsTSRecord& record) { engine_->live.holders[record.number_] = &record; }

bool clsTSDB::giveUpLock(clsTSRecord& record) noexcept {
    auto& holders = engine_->live.holders;
    const auto held = holders.find(record.number_);
    if (held == holders.end() || held->second != &record) return false;
    holders.erase(held);
    return true;
}

void clsTSDB::enter(const std::shared_ptr<clsTSRecordSet>& set) {
    std::erase_if(engine_->live.sets, [](const auto& weak) { return weak.expired(); });
    engine_->live.sets.push_back(set);
}

template <class Tell>
void clsTSDB::eachSet(Tell tell) {
    if (engine_->live.sets.empty()) return;
    const auto sets = engine_->live.sets;
    for (const auto& weak : sets)
        if (const auto set = weak.lock()) tell(*set);
}

void clsTSDB::indexChanged(int32 field) {
    IndexChange(field);
    eachSet([&](clsTSRecordSet& set) { set.indexChanged(field); });
}

void clsTSDB::indexRebuilt(int32 field) {
    indexChanged(field);
    eachSet([&](clsTSRecordSet& set) { set.indexRebuilt(field); });
}

void clsTSDB::newNumber(int32 before, int32 number) {
    eachSet([&](clsTSRecordSet& set) { set.newNumber(before, number); });
}

void clsTSDB::contentReplaced() {
    eachSet([](clsTSRecordSet& set) { set.contentReplaced(); });
}

void clsTSDB::indexDropped(int32 field) {
    eachSet([&](clsTSRecordSet& set) { set.indexDropped(field); });
}

std::shared_ptr<clsTSRecordSet> clsTSDB::Records() {
    const Working working(*this);
    std::shared_ptr<clsTSRecordSet> set;
    if (HalloRecordSet.connected()) HalloRecordSet(set);
    if (!set) set = engine_->live.all.lock();
    if (set && set->DB()) return set;
    if (!engine_->opened) return nullptr;
    set = clsTSRecordSet::all(shared_from_this());
    engine_->live.all = set;
    return set;
}

std::shared_ptr<clsTSRecord> clsTSDB::Record(int32 Satznummer, bool Locked) {
    const Working working(*this);
    auto& e = *engine_;
    const int32 number = Satznummer > 0 ? Satznummer : e.c.aktSatz;
    if (!e.d.store || !e.d.store.reaches(number)) {
        e.fail(DatabaseError::badRecord);
        return nullptr;
    }
    std::shared_ptr<clsTSRecord> record;
    if (HalloSatz.connected()) HalloSatz(number, record);
    if (!record && (record = liveRecord(number))) {
        // What other programs have stored since it was loaded shows, too.
        if (!record->Changed()) record->Reset();
    }
    if (!record) {
        record = std::make_shared<clsTSRecord>(shared_from_this(), number);
        standsFor(*record);
    }
    if (Locked && !record->Sperren()) return nullptr;
    return record;
}

// Whoever holds an object of this record shows the new fields at its next read.
void clsTSDB::recordChanged(int32 Satznummer) {
    if (engine_->keineEreignisse) return;
    std::shared_ptr<clsTSRecord> record;
    if (HalloSatz.connected()) HalloSatz(Satznummer, record);
    if (!record && !engine_->live.known.empty()) record = liveRecord(Satznummer);
    if (record && !record->Changed()) record->Reset();
    RecordChange(Satznummer);
    eachSet([&](clsTSRecordSet& set) { set.recordChanged(Satznummer); });
}

void clsTSDB::KillAllObjects() {
    // A listener may let go of other records, or ask for new ones, which are none of these.
    std::vector<std::weak_ptr<clsTSRecord>> records;
    for (auto* const record : engine_->live.records)
        records.push_back(std::static_pointer_cast<clsTSRecord>(record->weak_from_this().lock()));
    ++engine_->live.generation;
    for (const auto& weak : records) {
        const auto record = weak.lock();
        const auto& live = engine_->live.records;
        if (!record || record->livePlace_ >= live.size() || live[record->livePlace_] != record.get())
            continue;
        leave(*record);
        record->invalidate();
    }
    const auto sets = std::exchange(engine_->live.sets, {});
    for (const auto& weak : sets)
        if (const auto set = weak.lock()) set->invalidate();
}

int32 clsTSDB::FindPropertyNames() {
    const Working working(*this);
    auto& e = *engine_;
    propertyNames_ = std::make_shared<DatenTab>();
    propertyNames_->Init({}, 2, u"TL");
    const int32 field = e.d.control ? e.d.control->PropFeld() : 0;
    if (field == 0 || !e.d.store) return 0;
    e.d.refreshCount();
    struct Count {
        Text name;  // as it was met first
        int32 records = 0;
        int32 last = 0;
    };
    std::map<Text, Count> names;
    for (int32 n = 1; n <= e.d.records(); ++n) {
        const auto text = memoText(n, field);
        if (!text) break;
        for (const auto& property : propertyText::all(*text)) {
            Count& count = names[upper(property.key)];
            if (count.records == 0) count.name = property.key;
            if (std::exchange(count.last, n) != n) ++count.records;
        }
    }
    for (const auto& [key, count] : names) propertyNames_->Add({count.name, toText(count.records)});
    return propertyNames_->Count();
}

std::shared_ptr<DatenTab> clsTSDB::PropertyNames() {
    if (!propertyNames_) FindPropertyNames();
    return propertyNames_;
}

}  // namespace tsRtm
