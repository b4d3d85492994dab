#include "tsRtm/frame/clsStartObjects.hpp"

#include <utility>

namespace tsRtm {

const clsStartObjects::Entry* clsStartObjects::at(int32 Index) const noexcept {
    return Index < 1 || Index > Count() ? nullptr : &entries_[static_cast<std::size_t>(Index - 1)];
}

int32 clsStartObjects::Add(int32 ProgID, Variant Args, bool Waiting, bool First) {
    entries_.insert(First ? entries_.begin() : entries_.end(), Entry{ProgID, Waiting, std::move(Args)});
    return First ? 1 : Count();
}

bool clsStartObjects::Remove(int32 Index) {
    if (at(Index)) entries_.erase(entries_.begin() + (Index - 1));
    return false;
}

int32 clsStartObjects::ProgID(int32 Index) const {
    const auto* entry = at(Index);
    return entry ? entry->progID : 0;
}

int32 clsStartObjects::Waiting(int32 Index) const {
    const auto* entry = at(Index);
    return entry && entry->waiting ? -1 : 0;
}

Variant clsStartObjects::Args(int32 Index) const {
    const auto* entry = at(Index);
    return entry ? entry->args : Variant{};
}

}  // namespace tsRtm
