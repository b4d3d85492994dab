// clsTSRecordSet: the rows of a chain.
#include <algorithm>

#include "tsRtm/database/chains/ChainMerge.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
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

bool clsTSRecordSet::hasText(int32 field) const {
    const auto* const memos = database_ ? memosOfRows() : nullptr;
    return memos && memos->has(field);
}

MemoStores* clsTSRecordSet::memosOfRows() const {
    auto& d = database_->engine_->d;
    ChainStore* const store = d.chains.find(chainField_);
    return store ? d.rowMemos(*store) : nullptr;
}

// Of a memo cell: what waits to be stored, else what the file has.
Text clsTSRecordSet::rowText(const ChainRow& row, int32 field) {
    if (const auto waiting = row.texts.find(field); waiting != row.texts.end()) return waiting->second;
    if (row.from != ChainRow::From::file || !hasText(field)) return {};
    const clsTSDB::Working working(*database_);
    auto& e = *database_->engine_;
    ChainStore& store = *e.d.chains.find(chainField_);
    const ChainRows& cells = rows_->rows();
    MemoStores& memos = *memosOfRows();
    // As the row is at this moment: somebody may have given it another text, and the one before is zeros.
    const auto pointer = [&] {
        const Bytes stored = cells.withoutPointers(store.read(parent_->Satznummer()).bytes);
        const auto place = rows_->placeIn(stored, row);
        const std::size_t length = cells.layout().bytes();
        return place ? memos.pointerIn(BytesView(stored).substr(*place * length, length), field) : 0;
    };
    try {
        return memos.textOf(field, pointer);
    } catch (const Failure& failure) {
        e.fail(failure);
        return {};
    }
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

TextTable clsTSRecordSet::Inhalt(MemoCells memos) {
    needRows(u".Inhalt");
    TextTable out;
    if (!database_ || !loadRows()) return out;
    const auto& rows = rows_->rows();
    for (const auto& row : rows_->list()) {
        auto& cells = out.emplace_back();
        rows.decode(row->bytes, cells);
        for (int32 field = 1; memos == MemoCells::texts && field <= rows.fields(); ++field)
            if (rows.layout().field(field).pointer)
                cells[static_cast<std::size_t>(field - 1)] = rowText(*row, field);
    }
    return out;
}

void clsTSRecordSet::Inhalt(const TextTable& value, MemoCells memos) {
    needRows(u".Inhalt");
    if (!database_ || readOnly_ || !loadRows()) return;
    while (rows_->list().size() > value.size()) rows_->remove(static_cast<int32>(rows_->list().size()));
    const auto& rows = rows_->rows();
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto row = i < rows_->list().size() ? rows_->list()[i] : rows_->add(false);
        if (memos == MemoCells::texts)
            rows_->assign(*row, value[i]);
        else if (Bytes bytes = rows.encode(value[i]); !rows.sameCells(bytes, row->bytes))
            row->bytes = std::move(bytes);
        if (const auto record = std::static_pointer_cast<clsTSRecord>(row->object.lock())) record->Reset();
    }
    rowsChanged();
}

}  // namespace tsRtm
