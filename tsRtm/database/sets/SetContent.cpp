#include "tsRtm/database/sets/SetContent.hpp"

#include <algorithm>

namespace tsRtm {
namespace {

bool readRecord(DatabaseEngine& engine, int32 number, Bytes& into) {
    if (!engine.d.store || !engine.d.store.reaches(number)) return false;
    engine.d.read(number, into);
    return true;
}

BytesView viewRecord(DatabaseEngine& engine, int32 number, Bytes& room) {
    return engine.d.store && engine.d.store.reaches(number) ? engine.d.store.view(number, room) : BytesView();
}

template <class List>
auto at(const List& list, int32 place) -> typename List::value_type {
    if (place < 1 || static_cast<std::size_t>(place) > list.size()) return {};
    return list[static_cast<std::size_t>(place - 1)];
}

template <class List, class Value>
int32 placeIn(const List& list, const Value& value) {
    const auto found = std::find(list.begin(), list.end(), value);
    return found == list.end() ? 0 : static_cast<int32>(found - list.begin()) + 1;
}

}  // namespace

int32 AllRecords::count() {
    engine_.d.refreshWhenDue();
    return engine_.d.store ? engine_.d.records() : 0;
}

bool AllRecords::read(int32 number, Bytes& into) { return readRecord(engine_, number, into); }

BytesView AllRecords::view(int32 number, Bytes& room) { return viewRecord(engine_, number, room); }

bool SelectedRecords::add(int32 number) {
    if (!known_.insert(number).second) return false;
    numbers_.push_back(number);
    return true;
}

bool SelectedRecords::remove(int32 number) {
    if (known_.erase(number) == 0) return false;
    numbers_.erase(std::find(numbers_.begin(), numbers_.end(), number));
    return true;
}

void SelectedRecords::clear() {
    numbers_.clear();
    known_.clear();
}

int32 SelectedRecords::numberAt(int32 place) { return at(numbers_, place); }
int32 SelectedRecords::placeOf(int32 number) { return has(number) ? placeIn(numbers_, number) : 0; }
bool SelectedRecords::read(int32 number, Bytes& into) { return readRecord(engine_, number, into); }

BytesView SelectedRecords::view(int32 number, Bytes& room) { return viewRecord(engine_, number, room); }

int32 ChainPlaces::count() {
    return some_ ? static_cast<int32>(some_->size()) : static_cast<int32>(rows_->list().size());
}

int32 ChainPlaces::numberAt(int32 place) {
    if (some_) return placeIn(rows_->list(), at(*some_, place));
    return place >= 1 && place <= count() ? place : 0;
}

int32 ChainPlaces::placeOf(int32 number) {
    const auto row = at(rows_->list(), number);
    return !row ? 0 : some_ ? placeIn(*some_, row) : number;
}

bool ChainPlaces::read(int32 number, Bytes& into) {
    const auto row = at(rows_->list(), number);
    if (row) into = row->bytes;
    return row != nullptr;
}

BytesView ChainPlaces::view(int32 number, Bytes& /*room*/) {
    const auto row = at(rows_->list(), number);
    return row ? BytesView(row->bytes) : BytesView();
}

}  // namespace tsRtm
