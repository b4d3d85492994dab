// clsTSRecordSet: the rows of a chain.
#include <algorithm>

#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/database/sets/SetContent.hpp"

namespace tsRtm {

std::shared_ptr<clsTSRecordSet> clsTSRecordSet::chain(const std::shared_ptr<clsTSRecord>& parent, int32 field,
                                                      std::shared_ptr<ChainRowSet> waiting) {
    const auto database = parent->DB();
    ChainStore& store = *database->engine_->d.chains.find(field);
    std::shared_ptr<clsTSRecordSet> set(new clsTSRecordSet(database));
    set->control_ = database->Control()->Kette(field);
    set->parent_ = parent;
    set->chainField_ = field;
    set->rows_ = waiting ? std::move(waiting) : std::make_shared<ChainRowSet>(store.rows());
    set->content_ = std::make_unique<ChainPlaces>(set->rows_);
    database->enter(set);
    return set;
}

void clsTSRecordSet::needRows(TextView operation) const {
    if (!rows_ || source_) raise(5, Text(u"clsTSRecordSet").append(operation), u"Recordset ist keine Kette");
}

// False where they cannot be read: recorded.
bool clsTSRecordSet::loadRows() {
    if (source_) return source_->loadRows();
    if (loaded_ || !database_) return loaded_;
    if (parent_->Satznummer() < 1) return loaded_ = true;
    return loaded_ = database_->readRows(parent_->Satznummer(), chainField_, *rows_);
}

std::shared_ptr<clsTSRecord> clsTSRecordSet::rowRecord(const std::shared_ptr<ChainRow>& row) {
    if (auto record = std::static_pointer_cast<clsTSRecord>(row->object.lock())) return record;
    std::shared_ptr<clsTSRecord> record(new clsTSRecord(shared_from_this(), row));
    row->object = std::static_pointer_cast<void>(record);
    return record;
}

int32 clsTSRecordSet::placeOfRow(const ChainRow& row) {
    const auto& list = rows_->list();
    const auto at =
        std::find_if(list.begin(), list.end(), [&](const auto& each) { return each.get() == &row; });
    return at == list.end() ? 0 : static_cast<int32>(at - list.begin()) + 1;
}

// All that was changed, or one row alone. What belongs to a record that is not stored yet waits for it.
bool clsTSRecordSet::storeRows(const ChainRow* only) {
    if (readOnly_ || !database_) return false;
    if (parent_->Satznummer() < 1 || !rows_->changed()) return true;
    return database_->storeRows(*parent_, chainField_, *rows_, only);
}

bool clsTSRecordSet::Changed() {
    needRows(u".Changed");
    return loaded_ && rows_->changed();
}

TSIOArray clsTSRecordSet::KetteTSIO() const {
    raise(445, u"clsTSRecordSet.KetteTSIO", u"KetteTSIO nicht nutzen. Stattdessen RS.Control. ...");
}

TextTable clsTSRecordSet::Inhalt() {
    needRows(u".Inhalt");
    TextTable out;
    if (!database_ || !loadRows()) return out;
    for (const auto& row : rows_->list()) rows_->rows().decode(row->bytes, out.emplace_back());
    return out;
}

void clsTSRecordSet::Inhalt(const TextTable& value) {
    needRows(u".Inhalt");
    if (!database_ || readOnly_ || !loadRows()) return;
    while (rows_->list().size() > value.size()) rows_->remove(static_cast<int32>(rows_->list().size()));
    const auto& rows = rows_->rows();
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto row = i < rows_->list().size() ? rows_->list()[i] : rows_->add(false);
        const Bytes bytes = rows.encode(value[i]);
        if (!rows.sameCells(bytes, row->bytes)) row->bytes = bytes;
        if (const auto record = std::static_pointer_cast<clsTSRecord>(row->object.lock())) record->Reset();
    }
    rowsChanged();
}

}  // namespace tsRtm
