#include "tsRtm/database/clsTSRecord.hpp"

#include <algorithm>

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/records/FieldValue.hpp"

namespace tsRtm {
namespace {

constexpr int32 kAutowert = 253;

Text padded(int32 number, int32 length) {
    const Text digits = toText(number);
    const auto width = static_cast<std::size_t>(std::max(length, 0));
    return Text(width - std::min(width, digits.size()), u'0') + digits;
}

}  // namespace

clsTSRecord::clsTSRecord(const std::shared_ptr<clsTSDB>& Database, int32 Satznummer)
    : database_(Database),
      control_(Database->Control()),
      layout_(&Database->engine_->d.layout),
      number_(Satznummer),
      felder_(Database->engine_->takeBuffer()),
      loaded_(Satznummer < 1) {
    Database->enter(*this);
}

clsTSRecord::~clsTSRecord() {
    const auto database = database_.lock();
    if (!database) return;
    database->leave(*this);
    if (number_ > 0 && lockIsOurs_) database->engine_->d.locks.unlockRecord(number_);
    if (number_ < 1 && serial_ != 0) database->giveUpSerial(serial_, storeTried_);
    database->engine_->giveBack(std::move(felder_));
}

void clsTSRecord::invalidate() {
    if (const auto database = DB(); database && number_ > 0 && lockIsOurs_)
        database->engine_->d.locks.unlockRecord(number_);
    locked_ = locked_ && number_ < 1;
    lockIsOurs_ = false;
    database_.reset();
    layout_ = nullptr;
    Invalidated();
}

// The database has another character form: what was loaded and written is dropped.
void clsTSRecord::structureChanged() {
    const auto database = DB();
    if (!database) return;
    control_ = database->Control();
    felder_ = database->engine_->takeBuffer();
    memos_.clear();
    changed_ = false;
    loaded_ = number_ < 1;
}

bool clsTSRecord::load() {
    if (loaded_) return true;
    const auto database = DB();
    if (!database) return false;
    database->engine_->d.guard.lookAnew();
    auto& store = database->engine_->d.store;
    if (!store || !store.reaches(number_)) return false;
    database->engine_->d.read(number_, felder_->room());
    felder_->loaded();
    loaded_ = true;
    return true;
}

const Text& clsTSRecord::Fields(int32 Index) {
    shown_.clear();
    if (Index < 0 || Index > control_->Felder() || !layout_ || !load()) return shown_;
    const Text& stored = (*felder_)[Index];
    if (Index == 0) return stored;
    const auto& field = layout_->field(Index);
    if (field.pointer) return memo(Index);
    if (field.typ == kAutowert && stored.empty() && number_ > 0) {
        shown_ = padded(number_, field.length);
        if (const auto database = DB(); database && database->storeSerial(number_, shown_))
            felder_->set(Index, shown_);
        return shown_;
    }
    if ((field.typ & 7) != 5 || field.nachKomma < 1 || stored.empty()) return stored;
    showNumber(field, stored, shown_);
    return shown_;
}

void clsTSRecord::Fields(int32 Index, TextView Inhalt) {
    if (readOnly_ || Index < 0 || Index > control_->Felder() || !layout_ || !load()) return;
    if (Index > 0 && layout_->field(Index).pointer)
        memos_[Index] = {Text(Inhalt), true};
    else if (Index > 0 && (layout_->field(Index).typ & 7) == 5)
        felder_->set(Index, storedNumber(layout_->field(Index), Inhalt));
    else
        felder_->set(Index, Inhalt);
    changed_ = true;
}

// Read at the first look, by the place that the file has then.
const Text& clsTSRecord::memo(int32 field) {
    const auto known = memos_.find(field);
    if (known != memos_.end()) return known->second.text;
    const auto database = number_ > 0 ? DB() : nullptr;
    return memos_[field].text = database ? database->memoText(number_, field) : Text();
}

const Text& clsTSRecord::NamedField(TextView Feldname) { return Fields(control_->FeldNummer(Feldname)); }
void clsTSRecord::NamedField(TextView Feldname, TextView Inhalt) {
    Fields(control_->FeldNummer(Feldname), Inhalt);
}
bool clsTSRecord::IsEmpty(int32 Index) { return trim(Fields(Index)).empty(); }
const Text& clsTSRecord::Value(TextView ValueName, int32 Index) {
    return Fields(control_->ValueFeld(ValueName, Index));
}

bool clsTSRecord::Update() {
    const auto database = DB();
    if (!database || !load()) return false;
    const int32 number = database->SatzSpeichern(*this);
    error_ = database->Error();
    if (error_ != 0 || number < 1) return false;
    const bool isNew = number_ < 1;
    number_ = number;
    serial_ = 0;
    changed_ = false;
    loaded_ = false;  // the next read shows it as it stands in the file
    memos_.clear();
    if (isNew) locked_ = lockIsOurs_ = database->engine_->d.locks.owns(number);
    return true;
}

void clsTSRecord::Reset() {
    changed_ = false;
    memos_.clear();
    if (number_ > 0)
        loaded_ = false;
    else if (layout_)
        felder_->clear();
}

std::shared_ptr<clsTSRecord> clsTSRecord::WorkCopy() const {
    const auto database = DB();
    if (!database || number_ < 1) return nullptr;
    return std::make_shared<clsTSRecord>(database, number_);
}

bool clsTSRecord::Sperren(int32 Warten) {
    if (locked_) return true;
    const auto database = DB();
    if (!database) return false;
    locked_ = true;
    if (number_ < 1) return false;
    locked_ = lockIsOurs_ = database->Sperren(number_, Warten);
    if (locked_) Reset();
    return locked_;
}

bool clsTSRecord::Entsperren() {
    const auto database = DB();
    locked_ = false;
    lockIsOurs_ = false;
    return database && number_ > 0 && database->Entsperren(number_);
}

bool clsTSRecord::Deleted() { return Fields(0) == u"*"; }

void clsTSRecord::Deleted(bool value) {
    const auto database = DB();
    if (!database || readOnly_ || number_ < 1) return;
    if (value)
        database->Delete(number_);
    else
        database->Reaktivieren(number_);
    if (loaded_ && !database->IsReadOnly()) felder_->set(0, value ? u"*" : u" ");
}

void clsTSRecord::serialNumber(int32 value) {
    serial_ = value;
    const int32 field = control_->AutowertFeld();
    felder_->set(field, padded(value, layout_->field(field).length));
}

// --- The database's list of live record objects ---

void clsTSDB::enter(clsTSRecord& record) { live_.push_back(&record); }

void clsTSDB::leave(clsTSRecord& record) noexcept {
    const auto at = std::find(live_.rbegin(), live_.rend(), &record);
    if (at == live_.rend()) return;
    *at = live_.back();
    live_.pop_back();
}

void clsTSDB::giveUpSerial(int32 value, bool storeTried) noexcept {
    if (!engine_->d.serial) return;
    try {
        if (storeTried)
            engine_->d.serial.settled(value);
        else
            engine_->d.serial.giveUp(value);
    } catch (const Failure&) {  // the number stays used
    }
}

// The number of a record that has no serial number yet becomes it, where nobody is disturbed by that.
bool clsTSDB::storeSerial(int32 record, TextView number) {
    const Working working(*this);
    auto& e = *engine_;
    auto& d = e.d;
    const int32 field = d.control->AutowertFeld();
    const int32 index = d.control->IndexNr(Variant(field));
    if (d.folder.readOnly || e.writer.busy() || !d.indexes.has(index) || !d.serial) return false;
    const DatabaseHold hold(d.locks, DatabaseLocks::Wait::never);
    if (!hold) return false;
    try {
        d.refreshCount();
        if (!trim(GetField(record, field)).empty() || d.serial.pending(record)) return false;
        const SearchKey key = d.indexes.keys(index).search(number);
        if (d.indexes.open(index).locate(key).exact) return false;
        RecordBuffer content(d.layout);
        d.store.read(record, content.room());
        content.loaded();
        content.set(field, number);
        if (!e.writer.change(record,
                             {.content = content, .extent = RecordBuffer::Extent::assigned, .locked = true}))
            return false;
        d.serial.atLeast(record);
        return true;
    } catch (const Failure& failure) {
        recordFailure(failure);
        return false;
    }
}

std::shared_ptr<clsTSRecord> clsTSDB::Record(int32 Satznummer, bool Locked) {
    auto& e = *engine_;
    const int32 number = Satznummer > 0 ? Satznummer : e.c.aktSatz;
    if (!e.d.store || !e.d.store.reaches(number)) {
        e.fail(DatabaseError::badRecord);
        return nullptr;
    }
    std::shared_ptr<clsTSRecord> record;
    if (HalloSatz.connected()) HalloSatz(number, record);
    if (!record) record = std::make_shared<clsTSRecord>(shared_from_this(), number);
    if (Locked && !record->Sperren()) return nullptr;
    return record;
}

}  // namespace tsRtm
