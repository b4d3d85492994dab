#include "tsRtm/database/clsTSRecord.hpp"

#include <algorithm>
#include <utility>

#include "tsRtm/database/chains/ChainMerge.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/memos/PropertyText.hpp"
#include "tsRtm/database/records/FieldValue.hpp"
#include "tsRtm/tables/DatenTab.hpp"

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

clsTSRecord::clsTSRecord(std::shared_ptr<clsTSRecordSet> Parent, std::shared_ptr<ChainRow> Row)
    : database_(Parent->DB()),
      control_(Parent->Control()),
      layout_(&Parent->rows_->rows().layout()),
      number_(0),
      felder_(std::make_unique<RecordBuffer>(*layout_)),
      parent_(std::move(Parent)),
      row_(std::move(Row)) {}

clsTSRecord::~clsTSRecord() {
    const auto database = database_.lock();
    if (!database || row_) return;
    if (database->giveUpLock(*this)) database->engine_->d.locks.unlockRecord(number_);
    database->leave(*this);
    if (number_ < 1 && serial_ != 0) database->giveUpSerial(serial_, storeTried_);
    database->engine_->giveBack(std::move(felder_));
}

void clsTSRecord::invalidate() {
    if (const auto database = DB(); database && database->giveUpLock(*this))
        database->engine_->d.locks.unlockRecord(number_);
    locked_ = locked_ && number_ < 1;
    database_.reset();
    layout_ = nullptr;
    Invalidated();
}

int32 clsTSRecord::Satznummer() const { return row_ ? parent_->placeOfRow(*row_) : number_; }

// The database has another character form: what was loaded and written is dropped.
void clsTSRecord::structureChanged() {
    const auto database = DB();
    if (!database) return;
    control_ = database->Control();
    felder_ = database->engine_->takeBuffer();
    forgetChanges();
    chains_.clear();
    loaded_ = number_ < 1;
}

bool clsTSRecord::load() {
    if (loaded_) return true;
    const auto database = DB();
    if (!database) return false;
    if (row_) {
        felder_->room() = row_->bytes;
        felder_->loaded();
        return loaded_ = true;
    }
    auto& e = *database->engine_;
    e.recordingFileFailures([&] {
        e.d.guard.lookAnew();
        if (!e.d.store || !e.d.store.reaches(number_)) return;
        e.d.read(number_, felder_->room());
        loaded_ = true;
    });
    if (loaded_) felder_->loaded();
    return loaded_;
}

// What is assigned where the record cannot be read would be missed by nobody.
bool clsTSRecord::takesAssignment() {
    unread_ = unread_ || !load();
    return !unread_;
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
    if (readOnly_ || Index < 0 || Index > control_->Felder() || !layout_ || !takesAssignment()) return;
    if (Index > 0 && layout_->field(Index).pointer) {
        if (row_ && !parent_->hasText(Index)) return;
        memos_[Index] = {Text(Inhalt), true};
        if (Index == control_->PropFeld()) properties_.clear();
    } else if (Index > 0 && (layout_->field(Index).typ & 7) == 5) {
        felder_->set(Index, storedNumber(layout_->field(Index), Inhalt));
    } else {
        felder_->set(Index, Inhalt);
    }
    changed_ = true;
}

// Read at the first look, by the place that the file has then.
const Text& clsTSRecord::memo(int32 field) {
    const auto known = memos_.find(field);
    if (known != memos_.end()) return known->second.text;
    const auto database = number_ > 0 ? DB() : nullptr;
    auto read = database && !row_ ? database->memoText(number_, field) : Text();
    // What could not be read is asked for again.
    if (!read) {
        shown_.clear();
        return shown_;
    }
    Text& text = memos_[field].text = std::move(*read);
    if (row_) return text = parent_->rowText(*row_, field);
    if (field == control_->PropFeld()) propertyText::set(text, properties_);
    return text;
}

const Text& clsTSRecord::NamedField(TextView Feldname) { return Fields(control_->FeldNummer(Feldname)); }
void clsTSRecord::NamedField(TextView Feldname, TextView Inhalt) {
    Fields(control_->FeldNummer(Feldname), Inhalt);
}
bool clsTSRecord::IsEmpty(int32 Index) { return trim(Fields(Index)).empty(); }
const Text& clsTSRecord::Value(TextView ValueName, int32 Index) {
    return Fields(control_->ValueFeld(ValueName, Index));
}

bool clsTSRecord::GetObject(TextView ObjectName, iPropertyTarget& This, int32 Index) {
    std::vector<int32> fields;
    std::vector<Text> names;
    control_->ObjectFelder(ObjectName, Index, fields, names);
    bool any = false;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        // The object may ask this record for more.
        const Text text = Fields(fields[i]);
        if (This.Set(names[i], text)) any = true;
    }
    return any;
}

Text clsTSRecord::Property(TextView Key) { return propertyText::valueOf(Fields(control_->PropFeld()), Key); }

void clsTSRecord::Property(TextView Key, TextView Wert) {
    const RecordProperty property{Text(Key), Text(Wert)};
    propertyText::check(property);
    const int32 field = control_->PropFeld();
    if (readOnly_ || !layout_ || !layout_->has(field) || !takesAssignment()) return;
    const auto known = memos_.find(field);
    if (known != memos_.end()) propertyText::set(known->second.text, property);
    // A text that was assigned as a whole is stored as it is, and has them already.
    if (known == memos_.end() || !known->second.assigned) {
        const auto same = std::find_if(properties_.begin(), properties_.end(),
                                       [&](const auto& other) { return equalIgnoringCase(other.key, Key); });
        if (same == properties_.end())
            properties_.push_back(property);
        else
            same->value = property.value;
    }
    changed_ = true;
}

std::shared_ptr<DatenTab> clsTSRecord::Properties() {
    auto table = std::make_shared<DatenTab>();
    table->Init({}, 2, u"TT");
    for (const auto& [key, value] : propertyText::all(Fields(control_->PropFeld()))) table->Add({key, value});
    return table;
}

bool clsTSRecord::Update() {
    const auto database = DB();
    if (!database || readOnly_) return false;
    if (unread_ || !load()) {
        error_ = unread_ ? numberOf(DatabaseError::locked) : database->Error();
        return false;
    }
    if (row_) return storeRow(*database);
    const int32 number = database->SatzSpeichern(*this);
    error_ = database->Error();
    if (error_ != 0 || number < 1) return false;
    forgetChanges();
    loaded_ = false;  // the next read shows it as it stands in the file
    return true;
}

void clsTSRecord::forgetChanges() {
    changed_ = unread_ = false;
    memos_.clear();
    properties_.clear();
}

bool clsTSRecord::storeRow(clsTSDB& database) {
    database.Error();
    // Somebody else has put another row in its place, or it was removed here.
    if (Satznummer() < 1) {
        error_ = numberOf(DatabaseError::locked);
        return false;
    }
    Bytes bytes;
    felder_->compose(row_->bytes, RecordBuffer::Extent::assigned, bytes);
    row_->bytes = bytes;
    for (const auto& [field, memo] : memos_)
        if (memo.assigned) row_->texts[field] = memo.text;
    const bool stored = parent_->storeRows(row_.get());
    error_ = database.Error();
    if (!stored) return false;
    forgetChanges();
    loaded_ = false;
    return true;
}

std::shared_ptr<clsTSRecordSet> clsTSRecord::Kette(int32 FeldNr) {
    const auto database = DB();
    if (!database || row_) return nullptr;
    if (!database->useChain(FeldNr)) return nullptr;
    const auto self = std::static_pointer_cast<clsTSRecord>(shared_from_this());
    std::shared_ptr<clsTSRecordSet> set;
    if (database->HalloRS.connected()) database->HalloRS(self, FeldNr, set);
    auto& known = chains_[FeldNr];
    if (!set) set = known.set.lock();
    if (set) return set;
    set = clsTSRecordSet::chain(self, FeldNr, known.waiting);
    known.set = set;
    if (number_ < 1) known.waiting = set->rows_;
    return set;
}

// A new record is in the file, locked or not: told before anybody hears of it.
void clsTSRecord::stored(clsTSDB& database, int32 number) {
    number_ = number;
    serial_ = 0;
    for (auto& [field, rows] : chains_) rows.waiting.reset();
    // A handler within the write may have ended all objects: this one does not come back.
    const bool lives = DB() != nullptr;
    locked_ = locked_ && lives && database.engine_->d.locks.owns(number);
    if (locked_) database.takeLock(*this);
    if (lives) database.standsFor(*this);
}

void clsTSRecord::Reset() {
    forgetChanges();
    for (auto& [field, rows] : chains_)
        if (rows.waiting) rows.waiting->clear();
    if (number_ > 0 || row_)
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
    if (!database || row_) return false;
    locked_ = true;
    if (number_ < 1) return false;
    locked_ = database->Sperren(number_, Warten);
    if (locked_ && !DB()) {
        // Ended by a handler meanwhile.
        database->Entsperren(number_);
        locked_ = false;
    }
    if (!locked_) return false;
    database->takeLock(*this);
    Reset();
    return true;
}

bool clsTSRecord::Entsperren() {
    const auto database = DB();
    const bool ours = database && database->giveUpLock(*this);
    locked_ = false;
    if (!database || number_ < 1) return false;
    return !ours || database->Entsperren(number_);
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

}  // namespace tsRtm
