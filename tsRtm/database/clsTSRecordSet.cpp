#include "tsRtm/database/clsTSRecordSet.hpp"

#include <algorithm>

#include "tsRtm/database/clsTSIndex.hpp"
#include "tsRtm/database/sets/KeyRange.hpp"
#include "tsRtm/database/sets/ListedOrder.hpp"

namespace tsRtm {
namespace {

constexpr int32 kInvalidCall = 5;

}  // namespace

clsTSRecordSet::clsTSRecordSet(std::shared_ptr<clsTSDB> database)
    : database_(std::move(database)), control_(database_->Control()) {}

clsTSRecordSet::~clsTSRecordSet() = default;

std::shared_ptr<clsTSRecordSet> clsTSRecordSet::all(const std::shared_ptr<clsTSDB>& database) {
    std::shared_ptr<clsTSRecordSet> set(new clsTSRecordSet(database));
    set->content_ = std::make_unique<AllRecords>(*database->engine_);
    database->enter(set);
    return set;
}

std::shared_ptr<clsTSRecordSet> clsTSRecordSet::selected(const std::vector<int32>& numbers) {
    std::shared_ptr<clsTSRecordSet> set(new clsTSRecordSet(database_));
    set->selection_ = true;
    set->caption_ = Caption();
    if (rows_) {
        ChainRowList rows;
        for (const int32 number : numbers)
            rows.push_back(rows_->list()[static_cast<std::size_t>(number - 1)]);
        set->content_ = std::make_unique<ChainPlaces>(rows_, std::move(rows));
        set->control_ = control_;
        set->source_ = source_ ? source_ : shared_from_this();
    } else {
        auto content = std::make_unique<SelectedRecords>(*database_->engine_);
        for (const int32 number : numbers) content->add(number);
        set->numbers_ = content.get();
        set->content_ = std::move(content);
    }
    database_->enter(set);
    return set;
}

SetContent& clsTSRecordSet::content() {
    if (rows_) loadRows();
    return *content_;
}

Text clsTSRecordSet::Caption() const {
    if (!caption_.empty() || !database_) return caption_;
    return chainField_ != 0 ? database_->Caption(chainField_) : database_->DBName();
}

int32 clsTSRecordSet::Count() { return database_ ? content().count() : 0; }

std::vector<int32> clsTSRecordSet::Satznummern() {
    std::vector<int32> numbers;
    for (int32 place = 1, count = Count(); place <= count; ++place)
        if (const int32 number = content().numberAt(place); number != 0) numbers.push_back(number);
    return numbers;
}

int32 clsTSRecordSet::FolgeNummer(const clsTSRecord& Record) {
    if (!database_ || Record.DB() != database_) return 0;
    // A row is one of its own chain; a record of the database never is a row.
    const auto home = source_ ? source_ : rows_ ? shared_from_this() : nullptr;
    if (Record.Parent() != home) return 0;
    return content().placeOf(Record.Satznummer());
}

std::shared_ptr<clsTSRecord> clsTSRecordSet::Record(int32 FolgeNummer, bool Locked) {
    if (!database_) return nullptr;
    std::shared_ptr<clsTSRecord> record;
    if (rows_ && database_->HalloRecord.connected())
        database_->HalloRecord(shared_from_this(), FolgeNummer, record);
    if (record) return record;
    const int32 number = content().numberAt(FolgeNummer);
    record = number == 0 ? nullptr : recordOf(number);
    return record && Locked && !record->Sperren() ? nullptr : record;
}

std::shared_ptr<clsTSRecord> clsTSRecordSet::recordOf(int32 number) {
    if (source_) return source_->recordOf(number);
    if (!rows_) return database_->Record(number);
    return rowRecord(rows_->list()[static_cast<std::size_t>(number - 1)]);
}

std::shared_ptr<clsTSRecord> clsTSRecordSet::AutoRecord(TextView Autowert) {
    const int32 field = database_ && !rows_ ? control_->AutowertFeld() : 0;
    const auto cursor = field == 0 ? nullptr : Index(field);
    if (!cursor) return nullptr;
    if (auto found = cursor->FindRecord(Autowert, {}, {}, false, true)) return found;
    // As it stands in the file, with its zeros.
    const auto length = static_cast<std::size_t>(std::max(control_->field(field).Laenge(), 0));
    const Text digits(trim(Autowert));
    if (digits.size() >= length) return nullptr;
    return cursor->FindRecord(Text(length - digits.size(), u'0') + digits, {}, {}, false, true);
}

bool clsTSRecordSet::Deleted(int32 SatzNr) {
    return database_ && !rows_ && content().placeOf(SatzNr) != 0 && database_->GetField(SatzNr, 0) == u"*";
}

void clsTSRecordSet::Deleted(int32 SatzNr, bool value) {
    if (!database_ || rows_ || readOnly_ || content().placeOf(SatzNr) == 0) return;
    value ? database_->Delete(SatzNr) : database_->Reaktivieren(SatzNr);
}

std::shared_ptr<clsTSRecord> clsTSRecordSet::Add(bool Vorneanhaengen) {
    if (!database_ || readOnly_ || source_) return nullptr;
    if (!rows_) {
        auto record = database_->Add();
        if (record && numbers_) awaited_.push_back(record->Satznummer());
        return record;
    }
    if (!loadRows()) return nullptr;
    auto record = rowRecord(rows_->add(Vorneanhaengen));
    rowsChanged();
    return record;
}

int32 clsTSRecordSet::Clear() {
    if (!database_ || readOnly_ || source_ || (rows_ && !loadRows())) return 0;
    const int32 count = Count();
    if (rows_)
        rows_->clear();
    else if (numbers_)
        numbers_->clear();
    else
        return 0;
    rowsChanged();
    return count;
}

bool clsTSRecordSet::Remove(int32 SatzNr) {
    if (!database_ || readOnly_ || source_) return false;
    if (rows_) {
        if (!loadRows()) return false;
        const int32 count = Count();
        if (SatzNr < 1 || SatzNr > count)
            raise(9, u"clsTSRecordSet.Remove",
                  u"Satz " + toText(SatzNr) + u" ist nicht in der Kette mit " + toText(count) +
                      u" Sätzen enthalten.");
        rows_->remove(SatzNr);
    } else if (!numbers_ || !numbers_->remove(SatzNr)) {
        return false;
    }
    rowsChanged();
    return true;
}

// The set has other members: cursors that sorted them do so anew.
void clsTSRecordSet::rowsChanged() {
    const auto self = shared_from_this();
    for (const auto& cursor : cursors()) cursor->stale();
    Change();
}

int32 clsTSRecordSet::AddRecords(const Variant& Records) {
    if (!numbers_)
        raise(kInvalidCall, u"clsTSRecordSet.AddRecords",
              u"Nur einer Selektion können Datensätze hinzugefügt werden");
    const int32 added = database_ ? addAll(Records) : 0;
    if (added > 0) rowsChanged();
    return added;
}

int32 clsTSRecordSet::addAll(const Variant& records) {
    const auto take = [&](int32 number) {
        return database_->engine_->d.store && database_->engine_->d.store.reaches(number) &&
                       numbers_->add(number)
                   ? 1
                   : 0;
    };
    if (const int32* number = records.number()) return take(*number);
    int32 added = 0;
    if (const auto* list = std::get_if<VariantList>(&records))
        for (const auto& each : *list) added += addAll(each);
    const auto* object = std::get_if<std::shared_ptr<Object>>(&records);
    if (!object) return added;
    if (const auto record = std::dynamic_pointer_cast<clsTSRecord>(*object))
        return record->DB() == database_ && !record->IsKetteRecord() ? take(record->Satznummer()) : 0;
    const auto set = std::dynamic_pointer_cast<clsTSRecordSet>(*object);
    if (!set || set->database_ != database_ || set->rows_ || set->source_) return added;
    for (int32 place = 1, count = set->Count(); place <= count; ++place)
        added += take(set->content().numberAt(place));
    return added;
}

bool clsTSRecordSet::Update() { return database_ && !source_ && (!rows_ || storeRows(nullptr)); }

std::shared_ptr<clsTSIndex> clsTSRecordSet::cursor(const std::vector<int32>& fields) {
    const bool shared = !rows_ && !numbers_ && fields.size() == 1;
    std::shared_ptr<clsTSIndex> cursor(new clsTSIndex(shared_from_this(), fields, shared));
    cursors_.push_back(cursor);
    return cursor;
}

std::shared_ptr<clsTSIndex> clsTSRecordSet::Index(int32 IndexFeld) {
    if (!database_) return nullptr;
    std::shared_ptr<clsTSIndex> found;
    if (HalloIndex.connected()) HalloIndex(IndexFeld, found);
    if (found) return found;
    if (IndexFeld == 0) return cursor({});
    const bool inMemory = rows_ || numbers_;
    if (inMemory ? !content().layout().has(IndexFeld) : control_->IndexNr(Variant(IndexFeld)) == 0) {
        database_->engine_->fail(DatabaseError::badIndex);
        return nullptr;
    }
    return cursor({IndexFeld});
}

std::shared_ptr<clsTSIndex> clsTSRecordSet::CreateIndex(int32 Feld1, int32 Feld2, int32 Feld3) {
    if (!database_) return nullptr;
    if (!content().layout().has(Feld1)) {
        database_->engine_->fail(DatabaseError::badField);
        return nullptr;
    }
    return cursor({Feld1, Feld2, Feld3});
}

std::vector<std::shared_ptr<clsTSIndex>> clsTSRecordSet::cursors() {
    std::vector<std::shared_ptr<clsTSIndex>> out;
    std::erase_if(cursors_, [](const auto& weak) { return weak.expired(); });
    for (const auto& weak : cursors_)
        if (auto cursor = weak.lock()) out.push_back(std::move(cursor));
    return out;
}

// --- What the database tells

void clsTSRecordSet::invalidate() {
    if (!database_) return;
    const auto self = shared_from_this();
    const auto all = cursors();
    // The database may end with the last one who holds it.
    const auto database = std::exchange(database_, nullptr);
    if (rows_)
        for (const auto& row : rows_->list())
            if (const auto record = std::static_pointer_cast<clsTSRecord>(row->object.lock()))
                record->invalidate();
    for (const auto& cursor : all) cursor->end();
    Invalidated();
}

void clsTSRecordSet::recordChanged(int32 number) {
    if (!database_) return;
    if (rows_) {
        // Somebody may have written the chain; rows that were changed here wait for their own store.
        if (source_ || !parent_ || parent_->Satznummer() != number || !loaded_ || rows_->changed()) return;
        loaded_ = false;
        rowsChanged();
    } else if (!numbers_ || numbers_->has(number)) {
        RecordChange(number);
    }
}

void clsTSRecordSet::indexChanged(int32 field) {
    if (!database_ || rows_) return;
    IndexChange(field);
    for (const auto& cursor : cursors())
        if (cursor->shared_ && cursor->IndexFeld() == field) cursor->Changed();
}

void clsTSRecordSet::indexRebuilt(int32 field) {
    if (!database_ || rows_ || numbers_) return;
    ChangedIndex();
    for (const auto& cursor : cursors())
        if (cursor->shared_ && cursor->IndexFeld() == field) cursor->Changed();
}

void clsTSRecordSet::indexDropped(int32 field) {
    for (const auto& cursor : cursors())
        if (cursor->shared_ && cursor->IndexFeld() == field) cursor->end();
}

void clsTSRecordSet::newNumber(int32 before, int32 number) {
    if (!database_ || rows_) return;
    if (numbers_) {
        if (std::erase(awaited_, before) == 0) return;
        numbers_->add(number);
    }
    NewRecordNumber(before, number);
    if (numbers_) rowsChanged();
}

// Rows, or the form of records, are others, and so are the keys of what was sorted.
void clsTSRecordSet::contentReplaced() {
    if (!database_) return;
    if (rows_) rows_->textsMoved();
    loaded_ = false;
    rowsChanged();
}

}  // namespace tsRtm
