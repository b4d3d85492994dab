#include "tsRtm/database/NewRecords.hpp"

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/records/FieldValue.hpp"
#include "tsRtm/database/upkeep/FileExchange.hpp"
#include "tsRtm/database/upkeep/Packing.hpp"

namespace tsRtm {

NewRecords::NewRecords(const RecordLayout& layout, int32 most, FileExchange& exchange,
                       const std::function<void(BytesView)>& add)
    : layout_(layout),
      exchange_(exchange),
      add_(add),
      row_(std::make_unique<RecordBuffer>(layout)),
      most_(most) {
    row_->clear();
}

NewRecords::~NewRecords() = default;

void NewRecords::set(int32 field, TextView text) {
    if (!layout_.has(field)) return;
    const auto& layout = layout_.field(field);
    if ((layout.typ & 7) == 5 && !layout.special)
        row_->set(field, storedNumber(layout, text));
    else
        row_->set(field, text);
}

bool NewRecords::add() {
    if (rows_ >= most_) return false;
    Bytes image;
    row_->compose({}, RecordBuffer::Extent::whole, image);
    add_(image);
    row_->clear();
    ++rows_;
    return true;
}

platform::File& NewRecords::file(TextView name) { return exchange_.make(name); }

bool clsTSDB::Replace(const std::function<bool(NewRecords&)>& Fill) {
    return exchanged([&](OpenDatabase& d, const BulkFace& face) {
        return replaceRecords(d, face, [&](FileExchange& exchange, const auto& add) {
            NewRecords records(d.layout, d.maxRecords(), exchange, add);
            return Fill(records);
        });
    });
}

}  // namespace tsRtm
