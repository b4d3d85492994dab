// clsTSDB: writing, new records and locks.
#include <algorithm>
#include <limits>

#include "tsRtm/database/chains/ChainMerge.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/memos/PropertyText.hpp"

namespace tsRtm {
namespace {

constexpr int32 kNotSupported = 445;

// The greatest number that so many columns hold.
int32 greatestOf(int32 columns) noexcept {
    int64 greatest = 1;
    for (int32 i = 0; i < columns && greatest <= std::numeric_limits<int32>::max(); ++i) greatest *= 10;
    return static_cast<int32>(std::min<int64>(greatest - 1, std::numeric_limits<int32>::max()));
}

}  // namespace

bool clsTSDB::LockDB(bool Modus) {
    const Working working(*this);
    auto& e = *engine_;
    if (!Modus) {
        const DatabaseHold hold(e.d.locks, DatabaseLocks::Wait::never);
        e.d.locks.unlockExplicitly();
        e.d.memos.releaseWaiting(MemoStores::When::due);
        return true;
    }
    if (e.d.folder.shared && e.d.folder.readOnly) return e.fail(DatabaseError::readOnly);
    if (const auto error = e.d.locks.lockExplicitly(); failed(error)) return e.fail(error);
    // Who holds the lock reads without looking whether others write: what one of them left is mended first.
    if (e.d.folder.shared && e.d.store) {
        e.recordingFileFailures([&] {
            e.d.refreshCount();
            static_cast<void>(e.d.sign.enter());
        });
        if (e.d.marks.leftBehind()) e.d.indexes.healLeftBehind();
    }
    return true;
}

bool clsTSDB::Sperren(int32 Satznummer, int32 Warten) {
    const Working working(*this);
    auto& e = *engine_;
    if (!e.d.store || !e.d.store.reaches(Satznummer)) return e.fail(DatabaseError::badRecord);
    if (e.d.folder.readOnly && e.d.remote()) return e.fail(DatabaseError::locked);
    if (e.d.locks.owns(Satznummer)) return false;
    if (const auto error = e.d.locks.lockRecord(Satznummer, Warten); failed(error)) return e.fail(error);
    if (!e.keineEreignisse) RecordChange(Satznummer);
    return true;
}

bool clsTSDB::Entsperren(int32 Satznummer) {
    auto& e = *engine_;
    if (!e.d.store || !e.d.store.reaches(Satznummer)) return e.fail(DatabaseError::badRecord);
    e.d.locks.unlockRecord(Satznummer);
    if (const auto held = e.live.holders.find(Satznummer); held != e.live.holders.end()) {
        held->second->lockFlag(false);
        e.live.holders.erase(held);
    }
    if (!e.keineEreignisse) RecordChange(Satznummer);
    return true;
}

bool clsTSDB::Gesperrt(int32 Satznummer) {
    auto& e = *engine_;
    if (Satznummer != 0 && (!e.d.store || !e.d.store.reaches(Satznummer)))
        return e.fail(DatabaseError::badRecord);
    if (!e.d.count) return false;
    return e.d.locks.owns(Satznummer) || e.d.locks.recordHeldByOther(Satznummer);
}

void clsTSDB::Update() {
    const Working working(*this);
    auto& e = *engine_;
    auto& c = e.c;
    e.fehler = 0;
    if (e.d.folder.readOnly) {
        e.fail(DatabaseError::readOnly);
        return;
    }
    if (e.d.layout.mixed()) raise(445, u"clsTSDB.PutSatz", kUnicodeFieldsRefused);
    c.felder.set(0, u" ");
    const int32 record = c.aktSatz;
    const auto out = e.writer.change(record, {.content = c.felder, .watched = c.aktIndex});
    if (!out) {
        e.fail(out.error);
        return;
    }
    // A handler may stand elsewhere by now.
    if (out.position != 0 && c.aktSatz == record) c.logPos = out.position;
    c.viewPos = c.logPos;
    recordChanged(record);
}

// In single use nothing is locked: who adds records there says so by LockDB.
bool clsTSDB::lockForNew() {
    auto& e = *engine_;
    if (e.d.folder.readOnly) return e.fail(DatabaseError::readOnly);
    if (e.d.layout.mixed()) return e.fail(kNotSupported);
    return e.d.folder.shared || e.d.locks.databaseLocked() || e.fail(DatabaseError::locked);
}

std::shared_ptr<clsTSRecord> clsTSDB::Append() {
    const Working working(*this);
    auto& e = *engine_;
    auto& c = e.c;
    e.fehler = 0;
    if (!lockForNew()) return nullptr;
    c.felder.set(0, u" ");
    // A flat index gives the record room, and with it a lock for the time of the work.
    const bool flat = !e.d.indexes.big();
    const auto out = e.writer.add({.content = c.felder, .lockNew = flat, .watched = c.aktIndex});
    if (!out) {
        e.fail(out.error);
        return nullptr;
    }
    c.aktSatz = out.record;
    if (flat) c.logPos = out.record;
    if (out.position != 0) c.logPos = out.position;
    c.viewPos = c.logPos;
    // Told when all is done, so that handlers may write: locked, written, unlocked.
    if (flat) {
        e.d.locks.unlockRecord(out.record);
        if (!e.keineEreignisse) RecordChange(out.record);
    }
    recordChanged(out.record);
    if (flat && !e.keineEreignisse) RecordChange(out.record);
    return Record(out.record);
}

std::shared_ptr<clsTSRecord> clsTSDB::Add() {
    const Working working(*this);
    auto& e = *engine_;
    e.fehler = 0;
    if (e.d.folder.readOnly) {
        e.fail(DatabaseError::readOnly);
        return nullptr;
    }
    e.d.refreshWhenDue();
    if (e.d.records() >= MaxData()) {
        e.fail(DatabaseError::full);
        return nullptr;
    }
    auto record = std::make_shared<clsTSRecord>(shared_from_this(), --e.live.lastNew);
    record->lockFlag(true);
    const int32 field = e.d.control->AutowertFeld();
    if (field == 0) return record;
    try {
        const int32 number = e.d.serial ? e.d.serial.next(greatestOf(e.d.layout.field(field).length)) : 0;
        if (number != 0) {
            record->serialNumber(number);
            return record;
        }
        e.fail(e.d.serial ? DatabaseError::full : DatabaseError::locked);
    } catch (const Failure& failure) {
        e.fail(failure);
    }
    return nullptr;
}

// Stores a record object with the memos that were assigned to it.
template <class Store>
WriteOutcome clsTSDB::stored(clsTSRecord& record, Store store) {
    try {
        std::vector<std::unique_ptr<SideWrite>> writes;
        std::vector<SideWrite*> sides;
        for (const auto& [field, memo] : record.memos_)
            if (memo.assigned)
                writes.push_back(std::make_unique<MemoWrite>(engine_->d.memos, field, TextView(memo.text)));
        if (!record.properties_.empty())
            writes.push_back(std::make_unique<PropertyWrite>(engine_->d.memos, engine_->d.control->PropFeld(),
                                                             record.properties_));
        std::vector<std::unique_ptr<MergeChain>> chains;
        for (const auto& [field, rows] : record.chains_)
            if (rows.waiting && rows.waiting->changed())
                chains.push_back(std::make_unique<MergeChain>(*engine_->d.chains.find(field), *rows.waiting));
        sides.reserve(sides.size() + writes.size() + chains.size());
        for (const auto& write : writes) sides.push_back(write.get());
        for (const auto& write : chains) sides.push_back(write.get());
        const WriteOutcome out = store(sides);
        for (const auto& write : chains)
            if (out) write->settle();
        return out;
    } catch (const Failure& failure) {
        recordFailure(failure);
        return {static_cast<DatabaseError>(failure.Number()), 0, 0};
    }
}

int32 clsTSDB::SatzSpeichern(clsTSRecord& Record) {
    const Working working(*this);
    auto& e = *engine_;
    e.fehler = 0;
    const int32 number = Record.Satznummer();
    if (number < 1) return storeNew(Record);
    if (e.d.layout.mixed()) {
        e.fail(kNotSupported);
        return number;
    }
    const auto out = stored(Record, [&](std::span<SideWrite* const> sides) {
        return e.writer.change(number, {.content = *Record.felder_,
                                        .extent = RecordBuffer::Extent::assigned,
                                        .locked = e.d.folder.shared,
                                        .sides = sides});
    });
    if (!out) {
        e.fail(out.error);
        return number;
    }
    recordChanged(number);
    // A lock that the application took stays; the notice comes as if it had been given back.
    if (!Record.Locked() && !e.keineEreignisse) RecordChange(number);
    return number;
}

int32 clsTSDB::storeNew(clsTSRecord& record) {
    auto& e = *engine_;
    if (!lockForNew()) return record.Satznummer();
    record.storeTried_ = true;
    const auto out = stored(record, [&](std::span<SideWrite* const> sides) {
        return e.writer.add({.content = *record.felder_, .lockNew = true, .sides = sides});
    });
    if (!out) {
        e.fail(out.error);
        return record.Satznummer();
    }
    if (e.d.serial && record.serial_ != 0) e.d.serial.settled(record.serial_);
    const bool keepsLock = record.Locked() && record.DB();
    const int32 before = record.Satznummer();
    record.stored(*this, out.record);
    if (!e.keineEreignisse) newNumber(before, out.record);
    if (!e.keineEreignisse) RecordChange(out.record);
    recordChanged(out.record);
    if (!keepsLock) {
        e.d.locks.unlockRecord(out.record);
        if (!e.keineEreignisse) RecordChange(out.record);
    }
    return out.record;
}

}  // namespace tsRtm
