// clsTSDB: writing, new records and locks.
#include "tsRtm/database/DatabaseParts.hpp"
#include "tsRtm/database/FlatIndex.hpp"
#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/UpdatePath.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/frame/rtmMain.hpp"

namespace tsRtm {

bool clsTSDB::LockDB(bool Modus) {
    auto& d = *parts_;
    if (!d.shared) {
        d.locks.databaseLocked = Modus;
        return true;
    }
    if (d.readOnly) return d.fail(5);
    if (!Modus) {
        d.locks.unlockDatabase();
        d.locks.explicitly = false;
        return true;
    }
    if (d.locks.explicitly) return true;
    if (!d.locks.databaseLocked) {
        if (const int32 error = d.locks.lockDatabase(); error != 0) return d.fail(error);
    }
    d.locks.explicitly = true;
    return true;
}

// The lock that an operation needs for itself.
bool clsTSDB::lockIntern(bool Modus) {
    auto& d = *parts_;
    d.fehler = 0;
    // In single use nothing is locked and the flag stays as it was: who appends there has called LockDB
    // before.
    if (!d.shared) return true;
    if (d.readOnly) return d.fail(5);
    if (d.locks.explicitly) return Modus;
    if (!Modus) {
        d.locks.unlockDatabase();
        return true;
    }
    if (d.locks.databaseLocked) return true;
    if (const int32 error = d.locks.lockDatabase(); error != 0) return d.fail(error);
    return true;
}

bool clsTSDB::Sperren(int32 Satznummer, int32 Warten) {
    auto& d = *parts_;
    if (!d.hasRecord(Satznummer) || !d.count) return d.fail(63);
    if (d.locks.owns(Satznummer)) return false;
    if (const int32 error = d.locks.lockRecord(Satznummer, Warten); error != 0) return d.fail(error);
    if (!d.keineEreignisse) RecordChange(Satznummer);
    return true;
}

bool clsTSDB::Entsperren(int32 Satznummer) {
    auto& d = *parts_;
    if (!d.hasRecord(Satznummer)) return d.fail(63);
    d.locks.unlockRecord(Satznummer);
    if (!d.keineEreignisse) RecordChange(Satznummer);
    return true;
}

bool clsTSDB::Gesperrt(int32 Satznummer) {
    auto& d = *parts_;
    if (Satznummer != 0 && !d.hasRecord(Satznummer)) return d.fail(63);
    if (!d.count) return false;
    return d.locks.owns(Satznummer) || d.locks.heldByOther(Satznummer);
}

void clsTSDB::Update() {
    auto& d = *parts_;
    d.fehler = 0;
    if (d.readOnly) {
        d.fail(5);
        return;
    }
    if (d.layout.mixed()) raise(445, u"clsTSDB.PutSatz", kUnicodeFieldsRefused);
    if (!d.istNeu && !d.hasRecord(d.aktSatz)) {
        d.fail(63);
        return;
    }
    // On every way out the lock that Update took is given back; SatzSpeichern gives its own back after the
    // record.
    struct Release {
        clsTSDB& db;
        ~Release() {
            auto& parts = *db.parts_;
            if (parts.imUpdate || !parts.locks.databaseLocked) return;
            const int32 error = parts.fehler;
            db.lockIntern(false);
            parts.fehler = error;
        }
    } release{*this};
    try {
        updateIndexesAndRecord();
    } catch (const Failure& failure) {
        recordFailure(d, failure);
        // A deletion that finds no end is the one failure that leaves Update.
        if (failure.Number() == kUpdateOverrun) throw;
    }
    d.viewPos = d.logPos;
}

void clsTSDB::updateIndexesAndRecord() {
    auto& d = *parts_;
    if (!d.imUpdate) d.felder.set(0, u" ");
    if (!update_) update_ = std::make_unique<UpdatePath>(d);
    UpdatePath& path = *update_;
    path.begin(d.aktSatz, d.istNeu);
    try {
        if (path.changesIndexes()) {
            if (!lockIntern(true)) return;
            if (!d.istNeu) d.refreshCount();  // who took the lock for a new record has just looked
            path.watchPosition(d.aktIndex);
            path.moveEntries();
            if (const int32 position = path.positionIn(d.aktIndex); position != 0) d.logPos = position;
        }
        if (d.imUpdate) return;
        writeUpdated();
    } catch (const Failure&) {
        path.giveUp();
        throw;
    }
}

// The record behind its indexes; with it the update is whole.
void clsTSDB::writeUpdated() {
    auto& d = *parts_;
    const int32 count = d.records();
    const bool active = update_ && update_->active();
    if (d.fehler == 0) PutSatz(d.aktSatz);
    if (d.fehler == 0) {
        if (active) update_->finish();
    } else {
        const int32 error = d.fehler;
        if (d.istNeu && d.big) {
            // Half a record at the end must not count.
            try {
                d.store.cutTo(count);
            } catch (const Failure&) {  // the next record is written over it
            }
            if (active) update_->giveUp();
        }
        d.fehler = error;
    }
    if (active) update_->end();
}

// The database lock for a new record, unless it is held already; `true` where it is to be given back.
bool clsTSDB::lockForNew() {
    auto& d = *parts_;
    const bool held = d.locks.databaseLocked;
    if (!held && !lockIntern(true)) return false;
    if (!d.locks.databaseLocked) return d.fail(70);
    d.refreshCount();
    return !held;
}

void clsTSDB::endOfNew(bool locked) {
    auto& d = *parts_;
    if (!locked || !d.locks.databaseLocked) return;
    const int32 error = d.fehler;
    lockIntern(false);
    d.fehler = error;
}

// Room for a new record of a normal database: an unfilled record, entered at the end of all indexes, locked.
bool clsTSDB::allocate() {
    auto& d = *parts_;
    const int32 record = d.records() + 1;
    if (record > MaxData()) return d.fail(61);
    if (!d.indexes.empty()) beginIndexChange(d);
    d.store.write(record, d.layout.unfilled());
    d.count.write(d.records());
    for (int32 number = 1; d.hasIndex(number); ++number) openIndex(d, number).append(record);
    d.aktSatz = record;
    d.logPos = record;
    return Sperren(record);
}

std::shared_ptr<clsTSRecord> clsTSDB::Append() {
    auto& d = *parts_;
    d.fehler = 0;
    if (d.readOnly) {
        d.fail(5);
        return nullptr;
    }
    const bool toRelease = lockForNew();
    if (d.fehler != 0) return nullptr;
    std::shared_ptr<clsTSRecord> record;
    const int32 before = d.aktSatz;
    try {
        if (d.records() >= MaxData()) {
            d.fail(7);
        } else {
            d.istNeu = true;
            if (d.big)
                d.aktSatz = d.records() + 1;
            else
                allocate();
            const int32 number = d.aktSatz;
            if (d.fehler == 0) Update();
            const int32 error = d.fehler;
            if (!d.big) Entsperren(number);
            d.fehler = error;
            d.istNeu = false;
            if (error == 0) record = Record(d.records());
        }
    } catch (const Failure& failure) {
        recordFailure(d, failure);
    }
    d.istNeu = false;
    if (!record) d.aktSatz = before;
    endIndexChange(d, false);
    endOfNew(toRelease);
    return record;
}

std::shared_ptr<clsTSRecord> clsTSDB::Add() {
    auto& d = *parts_;
    d.fehler = 0;
    if (d.readOnly) {
        d.fail(5);
        return nullptr;
    }
    d.refreshWhenDue();
    if (d.records() >= MaxData()) {
        d.fail(7);
        return nullptr;
    }
    auto record = std::make_shared<clsTSRecord>(shared_from_this(), 0);
    record->lockFlag(true);
    if (d.serial) {
        try {
            record->serialNumber(d.serial.next());
        } catch (const Failure& failure) {
            recordFailure(d, failure);
            return nullptr;
        }
    }
    return record;
}

int32 clsTSDB::SatzSpeichern(clsTSRecord& Record) {
    auto& d = *parts_;
    d.fehler = 0;
    const bool isNew = Record.Satznummer() < 1;
    int32 number = Record.Satznummer();
    if (d.readOnly) {
        d.fail(5);
        return number;
    }
    const int32 keptSatz = d.aktSatz;
    const int32 keptIndex = d.aktIndex;
    const int32 keptPos = d.logPos;
    bool toRelease = false;
    std::swap(d.felder, Record.felder_);
    try {
        d.aktSatz = number;
        d.imUpdate = true;
        d.istNeu = isNew;
        if (isNew) {
            toRelease = lockForNew();
            if (d.fehler == 0 && makeRoom()) number = d.aktSatz;
        }
        if (d.fehler == 0) storeRecord(Record, isNew, number);
    } catch (const Failure& failure) {
        recordFailure(d, failure);
    }
    std::swap(d.felder, Record.felder_);
    if (isNew && d.fehler != 0 && number > 0) d.locks.unlockRecord(number);
    d.istNeu = false;
    d.imUpdate = false;
    if (update_) update_->end();
    endIndexChange(d, false);
    // Update keeps the database lock inside such a flow; with the record written it goes.
    endOfNew(toRelease || (!isNew && d.shared && !d.locks.explicitly));
    d.aktSatz = keptSatz;
    d.aktIndex = keptIndex;
    d.logPos = keptPos;
    return d.fehler == 0 ? number : Record.Satznummer();
}

// Number and lock of a new record under the database lock.
bool clsTSDB::makeRoom() {
    auto& d = *parts_;
    if (d.records() >= MaxData()) return d.fail(7);
    if (!d.big) return allocate();
    d.aktSatz = d.records() + 1;
    if (const int32 error = d.locks.lockRecord(d.aktSatz, 0); error != 0) return d.fail(error);
    return true;
}

void clsTSDB::storeRecord(clsTSRecord& record, bool isNew, int32 number) {
    auto& d = *parts_;
    Update();
    if (d.fehler == 0) {
        // Unlocked before it is written; who holds the record locked keeps it so.
        if (!record.Locked()) unlockQuietly(number);
        d.aktSatz = number;
        d.istNeu = isNew;
        writeUpdated();
    }
}

// Entsperren for a record that may not be in the file yet.
void clsTSDB::unlockQuietly(int32 number) {
    parts_->locks.unlockRecord(number);
    if (!parts_->keineEreignisse) RecordChange(number);
}

}  // namespace tsRtm
