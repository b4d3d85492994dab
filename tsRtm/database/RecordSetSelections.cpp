// clsTSRecordSet: parts of a set.
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/database/sets/KeyRange.hpp"
#include "tsRtm/database/sets/ListedOrder.hpp"
#include "tsRtm/database/sets/RangeWalk.hpp"

namespace tsRtm {

std::shared_ptr<clsTSRecordSet> clsTSRecordSet::GetSelection(TextView /*Condition*/) {
    return database_ ? selected({}) : nullptr;
}

std::shared_ptr<clsTSRecordSet> clsTSRecordSet::GetSelectedRecords(iRecordChecker* Condition) {
    return database_ ? taken(Satznummern(), Condition) : nullptr;
}

std::shared_ptr<clsTSRecordSet> clsTSRecordSet::GetRange(int32 Feld, TextView Start, TextView Ende,
                                                         iRecordChecker* Condition) {
    if (!database_) return nullptr;
    if (!content().layout().has(Feld)) {
        database_->engine_->fail(DatabaseError::badField);
        return nullptr;
    }
    const auto self = shared_from_this();
    std::vector<int32> numbers;
    database_->engine_->recordingFileFailures([&] { numbers = inRange(Feld, Start, Ende); });
    return taken(std::move(numbers), Condition);
}

// A handler may end the set: what was found by then is no answer.
std::shared_ptr<clsTSRecordSet> clsTSRecordSet::taken(std::vector<int32> numbers, iRecordChecker* condition) {
    const auto self = shared_from_this();
    if (condition)
        std::erase_if(numbers, [&](int32 number) {
            const auto record = database_ ? recordOf(number) : nullptr;
            return !record || !condition->Okay(record);
        });
    return database_ ? selected(numbers) : nullptr;
}

std::vector<int32> clsTSRecordSet::inRange(int32 field, TextView from, TextView to) {
    auto& e = *database_->engine_;
    const int32 index = rows_ || numbers_ ? 0 : control_->IndexNr(Variant(field));
    if (index != 0) {
        const auto range = KeyRange::between(e.d.indexes.keys(index), e.d.layout, from, to);
        return numbersIn(e, index, range);
    }
    auto& records = content();
    const IndexKeys keys(records.layout(), {field, 0, 0});
    const auto range = KeyRange::between(keys, records.layout(), from, to);
    std::vector<int32> found;
    Bytes record;
    for (int32 place = 1, count = records.count(); place <= count; ++place) {
        const int32 number = records.numberAt(place);
        if (number != 0 && records.read(number, record) && range.holds(record)) found.push_back(number);
    }
    ListedOrder order(keys);
    order.sort(records, found);
    for (int32 position = 1; position <= order.total(); ++position)
        found[static_cast<std::size_t>(position - 1)] = order.recordAt(position);
    found.resize(static_cast<std::size_t>(order.total()));
    return found;
}

}  // namespace tsRtm
