#include "tsRtm/appointments/clsTermine.hpp"

#include <algorithm>

#include "tsRtm/appointments/clsTerminkalender.hpp"
#include "tsRtm/appointments/keys/TerminKeys.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/tables/clsQuickSort.hpp"

namespace tsRtm {
namespace {

constexpr int32 kLast = 9999;

bool isAmong(TextView key, TextView keys) {
    for (std::size_t at = 0; at < keys.size(); at += appointments::kKeyLength)
        if (equalIgnoringCase(keys.substr(at, appointments::kKeyLength), key)) return true;
    return false;
}

}  // namespace

clsTermine::clsTermine(std::shared_ptr<clsTerminkalender> Kalender, const std::vector<int32>& Satznummern,
                       tsRtm::Text Keys, int32 Tag, TextView Extent)
    : calendar_(std::move(Kalender)), keys_(std::move(Keys)), day_(Tag), extent_(Extent) {
    entries_.reserve(Satznummern.size());
    for (const int32 number : Satznummern)
        if (auto termin = calendar_->TerminAusSatz(number)) entries_.push_back(std::move(termin));
    sort();
    change_ = calendar_->Change.connect([this](const auto& termin) { changed(termin); });
    stale_ = calendar_->stale_.connect([this] { askAnew(); });
    otherStore_ = calendar_->DBChange.connect([this] { clear(); });
}

clsTermine::~clsTermine() = default;

std::shared_ptr<clsTermin> clsTermine::Item(int32 Index) const {
    return Index >= 1 && Index <= Count() ? entries_[static_cast<std::size_t>(Index - 1)] : nullptr;
}

std::shared_ptr<clsTermin> clsTermine::ItemByID(TextView ID) const {
    if (!calendar_) return nullptr;
    if (auto live = calendar_->FindTermin(ID)) return live;
    const bool byNumber = calendar_->FeldNummern()[TerminFelder::id] == 0;
    for (const auto& entry : entries_) {
        const auto record = entry->Record();
        if (record && (byNumber ? record->Satznummer() == roundToInt32(Val(ID)) : entry->ID() == ID))
            return entry;
    }
    return nullptr;
}

std::shared_ptr<clsTSRecordSet> clsTermine::Records() const {
    const auto database = calendar_->DB();
    auto set = database ? database->Records()->GetSelection({}) : nullptr;
    for (const auto& entry : entries_)
        if (set) set->AddRecords(Variant(entry->number_));
    return set;
}

// --- Order

eCompareResults clsTermine::Compare(int32 Vergleich, int32 Pivot, eCompareMethod PivotNeu, Variant&) {
    if (PivotNeu == NewPivot) pivot_ = times_[static_cast<std::size_t>(Pivot - 1)];
    const int32 time = times_[static_cast<std::size_t>(Vergleich - 1)];
    return time < pivot_ ? Kleiner : time > pivot_ ? Groesser : Gleich;
}

void clsTermine::Swap(int32 v1, int32 v2, Variant&) {
    std::swap(entries_[static_cast<std::size_t>(v1 - 1)], entries_[static_cast<std::size_t>(v2 - 1)]);
    std::swap(times_[static_cast<std::size_t>(v1 - 1)], times_[static_cast<std::size_t>(v2 - 1)]);
}

void clsTermine::sort() {
    const bool timed = calendar_ && calendar_->FeldNummern()[TerminFelder::uhrzeitVon] > 0;
    times_.clear();
    for (const auto& entry : entries_) {
        const int32 minute = timed ? entry->MinuteStart() : 0;
        times_.push_back(minute < 0 ? kLast : minute);
    }
    clsQuickSort().QuickSort(1, Count(), this);
    for (std::size_t i = 0; i < entries_.size(); ++i) entries_[i]->Index(static_cast<int32>(i) + 1);
}

int32 clsTermine::positionOf(const clsTermin& termin) const {
    const auto at = std::find_if(entries_.begin(), entries_.end(),
                                 [&](const auto& entry) { return entry.get() == &termin; });
    return at == entries_.end() ? 0 : static_cast<int32>(at - entries_.begin()) + 1;
}

// --- Changes

void clsTermine::changed(const std::shared_ptr<clsTermin>& termin) {
    const auto held = weak_from_this().lock();  // a listener may end this list
    const int32 position = positionOf(*termin);
    if (keys_.empty()) {
        if (position > 0) tell(caChange, termin);
        return;
    }
    const auto key = termin->Termin();
    const bool affected = key.starts_with(u'*') || isAmong(key, keys_);
    const bool due = affected && calendar_->belongs(*termin, day_, extent_);
    if (due && position == 0)
        entries_.push_back(termin);
    else if (!due && position > 0)
        entries_.erase(entries_.begin() + (position - 1));
    if (due || position > 0) tell(!due ? caRemove : position == 0 ? caAdd : caChange, termin);
}

void clsTermine::tell(eChangeAction action, const std::shared_ptr<clsTermin>& termin) {
    sort();
    Change(action, termin);
    if (day_ != 0 && calendar_) calendar_->dayChanged(day_);
}

// Others have changed records, which ones is not known.
void clsTermine::askAnew() {
    if (keys_.empty()) return;
    const auto held = weak_from_this().lock();
    const auto numbers = calendar_->due(day_, extent_);
    const auto before = entries_;
    for (const auto& entry : before) {
        entry->readAnew();
        if (std::find(numbers.begin(), numbers.end(), entry->number_) != numbers.end()) continue;
        if (const int32 position = positionOf(*entry); position > 0)
            entries_.erase(entries_.begin() + (position - 1));
        tell(caRemove, entry);
    }
    for (const int32 number : numbers) {
        if (keys_.empty()) return;  // given up meanwhile
        const auto termin = calendar_->TerminAusSatz(number);
        if (!termin || positionOf(*termin) > 0) continue;
        entries_.push_back(termin);
        tell(caAdd, termin);
    }
    sort();
}

void clsTermine::clear() {
    const auto held = weak_from_this().lock();
    entries_.clear();
    times_.clear();
    keys_.clear();
    day_ = 0;
    Change(caClear, nullptr);
}

}  // namespace tsRtm
