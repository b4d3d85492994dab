#include "tsRtm/database/clsTSIndex.hpp"

#include <algorithm>

#include "tsRtm/database/records/TextSearch.hpp"
#include "tsRtm/database/sets/KeyRange.hpp"
#include "tsRtm/database/sets/ListedOrder.hpp"
#include "tsRtm/database/sets/TypedKey.hpp"

namespace tsRtm {
namespace {

constexpr int32 kWrongPlace = 9;
constexpr TextView kLookUp = u"clsTSIndex.RecNr";

// The order of the set itself, by places.
class OwnOrder {
 public:
    explicit OwnOrder(SetContent& content) : content_(content) {}
    int32 total() { return content_.count(); }
    int32 recordAt(int32 position) { return content_.numberAt(position); }
    int32 positionOf(int32 number) { return content_.placeOf(number); }
    // Has no keys.
    Found locate(const SearchKey&) { return {total() + 1, 0, total(), false}; }

 private:
    SetContent& content_;
};

}  // namespace

clsTSIndex::clsTSIndex(std::shared_ptr<clsTSRecordSet> set, const std::vector<int32>& fields, bool shared)
    : set_(std::move(set)), shared_(shared) {
    std::copy_n(fields.begin(), std::min(fields.size(), fields_.size()), fields_.begin());
    if (!shared_ && fields_[0] != 0) keys_ = std::make_unique<IndexKeys>(set_->content().layout(), fields_);
}

clsTSIndex::~clsTSIndex() = default;

// Their numbers may change with other indexes.
int32 clsTSIndex::sharedNumber() const { return set_->Control()->IndexNr(Variant(fields_[0])); }

const IndexKeys& clsTSIndex::keys() { return keys_ ? *keys_ : DB()->engine_->d.indexes.keys(sharedNumber()); }

ListedOrder& clsTSIndex::list() {
    if (!list_) {
        list_ = std::make_unique<ListedOrder>(*keys_);
        list_->sort(set_->content());
    }
    return *list_;
}

// `look(order)` sees an order as no update of others disturbs it; it may be called again. What a file refuses
// is recorded.
template <class Look>
void clsTSIndex::look(Look look) {
    if (!DB()) return;
    const auto self = shared_from_this();
    const auto database = DB();
    const clsTSDB::Working working(*database);
    auto& e = *database->engine_;
    e.recordingFileFailures([&] {
        const int32 index = shared_ ? sharedNumber() : 0;
        if (!e.d.store && !set_->rows_) return;
        if (index != 0) {
            e.inIndex(index, [&](IndexForm& form) {
                look(form);
                return true;
            });
        } else if (keys_) {
            look(list());
        } else {
            OwnOrder own(set_->content());
            look(own);
        }
    });
}

Text clsTSIndex::Caption() const {
    if (!set_ || fields_[0] == 0) return set_ ? set_->Caption() : Text();
    return Text(set_->Control()->field(fields_[0]).Caption());
}

int32 clsTSIndex::IndexFelder(int32 Index) const noexcept {
    return Index < 1 || Index > 3 ? 0 : fields_[static_cast<std::size_t>(Index - 1)];
}

void clsTSIndex::Descending(bool value) {
    if (value == descending_) return;
    const int32 total = Count();
    position_ = total + 1 - position_;
    viewed_ = total + 1 - viewed_;
    descending_ = value;
}

int32 clsTSIndex::Count() {
    int32 count = 0;
    look([&](auto& order) { count = order.total(); });
    return count;
}

void clsTSIndex::Rebuild() {
    if (!DB()) return;
    if (shared_)
        DB()->Sort(sharedNumber());
    else
        stale();
}

void clsTSIndex::stale() {
    list_.reset();
    Changed();
}

void clsTSIndex::end() {
    const auto self = shared_from_this();
    const auto set = std::exchange(set_, nullptr);
    list_.reset();
    number_ = position_ = viewed_ = seen_ = 0;
    if (set) Invalidated();
}

int32 clsTSIndex::numberAt(int32 position) {
    int32 number = 0;
    look([&](auto& order) {
        const int32 total = order.total();
        number = position < 1 || position > total ? 0 : order.recordAt(mirrored(position, total));
    });
    return number;
}

int32 clsTSIndex::Satznummer(int32 LogSatz) {
    if (LogSatz == -1) return number_;
    const int32 number = numberAt(LogSatz);
    if (number > 0) return number;
    if (set_ && (set_->IsSelection() || !shared_))
        raise(kWrongPlace, kLookUp, u"Falsche Indexfolgenummer " + toText(LogSatz) + u" im Recordset");
    if (number < 0)
        raise(
            kWrongPlace, kLookUp,
            u"Ungültige Satznummer " + toText(number) + u" in der Indexdatei bei LogSatz " + toText(LogSatz));
    raise(kWrongPlace, kLookUp, u"Fehler in der Indexdatei bei LogSatz " + toText(LogSatz));
}

std::shared_ptr<clsTSRecord> clsTSIndex::Record(int32 LogSatz, bool Locked) {
    const int32 number = LogSatz == -1 ? number_ : numberAt(LogSatz);
    const auto record = number > 0 && DB() ? set_->recordOf(number) : nullptr;
    return record && Locked && !record->Sperren() ? nullptr : record;
}

void clsTSIndex::stand(int32 position, int32 number, int32 total) {
    position_ = viewed_ = position;
    number_ = number;
    seen_ = total;
}

std::shared_ptr<clsTSRecord> clsTSIndex::shown() {
    return number_ > 0 && DB() ? set_->recordOf(number_) : nullptr;
}

void clsTSIndex::LogSatz(int32 value) {
    int32 position = 0, number = 0, total = 0;
    look([&](auto& order) {
        total = order.total();
        position = std::clamp(value, 0, total + 1);
        number = position < 1 || position > total ? 0 : order.recordAt(mirrored(position, total));
    });
    stand(position, number, total);
}

void clsTSIndex::AktSatzNr(int32 value) {
    int32 position = 0, total = 0;
    look([&](auto& order) {
        total = order.total();
        position = order.positionOf(value);
        if (position != 0) position = mirrored(position, total);
    });
    if (position != 0) stand(position, value, total);
}

std::shared_ptr<clsTSRecord> clsTSIndex::step(int32 by) {
    int32 to = position_, number = 0, total = seen_;
    look([&](auto& order) {
        total = order.total();
        to = position_;
        if (number_ != 0 && order.recordAt(mirrored(to, total)) != number_) {
            const int32 now = order.positionOf(number_);
            // Where it has gone the one behind has its place.
            to = now != 0 ? mirrored(now, total) : by > 0 ? to - 1 : to;
        }
        to = std::clamp(to + by, 0, total + 1);
        number = to < 1 || to > total ? 0 : order.recordAt(mirrored(to, total));
    });
    stand(to, number, total);
    return shown();
}

std::shared_ptr<clsTSRecord> clsTSIndex::standOnEnd(bool first) {
    int32 to = 0, number = 0, total = 0;
    look([&](auto& order) {
        total = order.total();
        to = first ? 1 : total;
        number = total < 1 ? 0 : order.recordAt(mirrored(to, total));
    });
    stand(to, number, total);
    return shown();
}

std::shared_ptr<clsTSRecord> clsTSIndex::MoveFirst() { return standOnEnd(true); }
std::shared_ptr<clsTSRecord> clsTSIndex::MoveLast() { return standOnEnd(false); }
std::shared_ptr<clsTSRecord> clsTSIndex::MoveNext() { return step(1); }
std::shared_ptr<clsTSRecord> clsTSIndex::MovePrevious() { return step(-1); }

std::shared_ptr<clsTSRecord> clsTSIndex::MoveTo(TextView Suchbegriff, TextView Such2, TextView Such3) {
    if (!DB()) return nullptr;
    const TextView parts[] = {Suchbegriff, Such2, Such3};
    auto place = positionIn(Suchbegriff);
    if (Suchbegriff.empty() && Such2.empty() && Such3.empty()) place = 1;
    if (!place && fields_[0] == 0) place = roundToInt32(Val(Suchbegriff));
    std::optional<SearchKey> key;
    if (!place) key = keys().search(typedKey(keys(), set_->content().layout(), parts));
    int32 to = 0, number = 0, total = 0;
    look([&](auto& order) {
        total = order.total();
        const int32 position = place ? std::clamp(*place, 1, total + 1) : order.locate(*key).position;
        to = mirrored(position, total);
        number = position > total ? 0 : order.recordAt(position);
    });
    stand(to, number, total);
    return shown();
}

std::shared_ptr<clsTSRecord> clsTSIndex::FindRecord(TextView Suchbegriff, TextView Such2, TextView Such3,
                                                    bool Locked, bool IncludeDeleted) {
    if (!DB()) return nullptr;
    auto& content = set_->content();
    const auto& layout = content.layout();
    int32 position = 0, number = 0, total = 0;
    Bytes room;
    const auto taken = [&](BytesView record) {
        return IncludeDeleted || set_->rows_ || !RecordLayout::isDeleted(record);
    };
    if (fields_[0] == 0) {
        const int32 wanted = roundToInt32(Val(Suchbegriff));
        look([&](auto& order) {
            total = order.total();
            position = order.positionOf(wanted);
            number = position == 0 || !taken(content.view(wanted, room)) ? 0 : wanted;
        });
    } else {
        const TextView parts[] = {Suchbegriff, Such2, Such3};
        const Text typed = typedKey(keys(), layout, parts);
        const SearchKey key = keys().search(typed);
        const SearchKey end = keys().search(typed + u" " + greatestText(keys(), layout, 3));
        const ExactParts wanted(layout, fields_, parts);
        look([&](auto& order) {
            total = order.total();
            number = 0;
            for (position = order.locate(key).position; position <= total && number == 0; ++position) {
                const int32 found = order.recordAt(position);
                const BytesView record = content.view(found, room);
                if (record.empty() || keys().compare(end, record) < 0) break;
                if (taken(record) && wanted.in(record)) {
                    number = found;
                    break;
                }
            }
        });
    }
    if (number == 0) return nullptr;
    stand(mirrored(position, total), number, total);
    return Record(-1, Locked);
}

std::vector<clsTSIndex::Place> clsTSIndex::places(const KeyRange* range, int32 first, int32 last) {
    std::vector<Place> out;
    look([&](auto& order) {
        out.clear();
        const int32 total = order.total();
        KeyRange::Places found{first, std::min(last, total)};
        if (range) found = range->placesIn(order);
        for (int32 at = found.first; at <= found.last; ++at)
            if (const int32 number = order.recordAt(at); number > 0)
                out.push_back({number, mirrored(at, total)});
    });
    if (descending_) std::reverse(out.begin(), out.end());
    return out;
}

std::shared_ptr<clsTSRecord> clsTSIndex::Finde(TextView Suchtext) {
    if (!DB()) return nullptr;
    const auto self = shared_from_this();
    const auto set = set_;
    const TextSearch wanted(set->content().layout(), Suchtext);
    std::vector<int32> numbers;
    look([&](auto& order) {
        numbers.clear();
        for (int32 position = 1, total = order.total(); position <= total; ++position)
            numbers.push_back(order.recordAt(mirrored(position, total)));
    });
    const auto total = static_cast<int32>(numbers.size());
    Bytes room;
    for (int32 i = 0; i < total; ++i) {
        const int32 position = (std::clamp(position_, 0, total) + i) % total + 1;
        const int32 number = numbers[static_cast<std::size_t>(position - 1)];
        if (!set->content().read(number, room) || !wanted.in(room)) continue;
        stand(position, number, total);
        return shown();
    }
    return nullptr;
}

}  // namespace tsRtm
