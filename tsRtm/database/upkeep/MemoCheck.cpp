#include "tsRtm/database/upkeep/MemoCheck.hpp"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace tsRtm {
namespace {

// Who names an entry: a record, or a row of its chain.
struct Owner {
    int32 record = 0;
    int32 row = 0;  // 0: the record itself
};

Text nameOf(const Owner& owner) {
    const Text record = u"Satz " + toText(owner.record);
    return owner.row == 0 ? record : record + u", Zeile " + toText(owner.row);
}

// The memos of one field.
class FieldCheck {
 public:
    FieldCheck(MemoStores& stores, int32 field, Mend mend, std::vector<Text>& lines)
        : stores_(stores), field_(field), gone_(stores.isMissing(field)), mend_(mend), lines_(lines) {}

    int32 field() const noexcept { return field_; }

    // `moved()`: the pointer is another one now; `put(pointer)` sets it.
    template <class Moved, class Put>
    void look(const Owner& owner, BytesView bytes, Moved moved, Put put) {
        const int32 pointer = stores_.pointerIn(bytes, field_);
        if (pointer < 1) return;
        if (!stores_.leadsSomewhere(field_, pointer)) {
            // A reader looks without a lock: somebody may have moved the text.
            if (moved(pointer)) return;
            note(nameOf(owner) + u" zeigt auf keinen Text an der Stelle " + toText(pointer));
            if (mend_ == Mend::yes || (mend_ == Mend::cut && !gone_)) put(0);
            return;
        }
        const auto [first, isNew] = owners_.emplace(pointer, owner);
        if (isNew) return;
        note(nameOf(first->second) + u" und " + nameOf(owner) + u" haben denselben Text an der Stelle " +
             toText(pointer));
        if (mend_ != Mend::no) put(stores_.copy(field_, pointer, stores_.open(field_)));
    }

 private:
    void note(const Text& text) { lines_.push_back(stores_.fileName(field_) + u": " + text); }

    MemoStores& stores_;
    int32 field_;
    bool gone_;  // before anybody made the store anew
    Mend mend_;
    std::vector<Text>& lines_;
    std::unordered_map<int32, Owner> owners_;  // of entries, by their first block
};

// A check for each field that has a store.
std::vector<FieldCheck> checksOf(MemoStores& stores, int32 fields, Mend mend, std::vector<Text>& lines) {
    std::vector<FieldCheck> checks;
    for (int32 field = 1; field <= fields; ++field)
        if (stores.has(field)) checks.emplace_back(stores, field, mend, lines);
    return checks;
}

Mend allowed(OpenDatabase& d, Mend mend) {
    return FilesTopic::Exist(d.folder.path(MemoStores::kLeftover)) ? Mend::no : mend;
}

void putInRecord(OpenDatabase& d, int32 record, int32 field, BytesView bytes, int32 pointer) {
    Bytes image(bytes);
    d.memos.setPointer(image, field, pointer);
    const auto& columns = d.layout.field(field);
    const BytesView place = BytesView(image).substr(columns.offset, columns.bytes);
    d.marks.begin();
    if (d.store.tears(record, columns.offset, columns.offset + columns.bytes))
        d.marks.keep(record, columns.offset, place, bytes.substr(columns.offset, columns.bytes));
    d.store.writePart(record, columns.offset, place);
    d.marks.end(d.records());
}

// The rows of one chain field.
class ChainMemoCheck {
 public:
    ChainMemoCheck(OpenDatabase& d, ChainStore& chain, Mend mend, std::vector<Text>& lines)
        : chain_(chain),
          stores_(*d.rowMemos(chain)),
          checks_(checksOf(stores_, chain.rows().fields(), mend, lines)) {}

    void record(int32 number) {
        const ChainContent content = chain_.read(number);
        const std::size_t length = chain_.format().rowBytes();
        for (std::size_t i = 0; i < content.rows.size(); ++i)
            for (auto& check : checks_)
                check.look(
                    {number, content.rows[i]}, BytesView(content.bytes).substr(i * length, length),
                    [&](int32 pointer) {
                        return pointerNow(number, content.rows[i], check.field()) != pointer;
                    },
                    [&](int32 pointer) { put(content.rows[i], check.field(), pointer); });
    }

 private:
    int32 pointerNow(int32 number, int32 row, int32 field) {
        const ChainContent now = chain_.read(number);
        const auto at = std::find(now.rows.begin(), now.rows.end(), row) - now.rows.begin();
        const std::size_t length = chain_.format().rowBytes();
        return stores_.pointerIn(
            BytesView(now.bytes).substr(std::min(static_cast<std::size_t>(at) * length, now.bytes.size()),
                                        length),
            field);
    }
    void put(int32 row, int32 field, int32 pointer) {
        Bytes room;
        Bytes image(chain_.file().row(row, room));
        stores_.setPointer(image, field, pointer);
        const auto& columns = chain_.rows().layout().field(field);
        chain_.file().writePart(row, columns.offset, BytesView(image).substr(columns.offset, columns.bytes));
    }

    ChainStore& chain_;
    MemoStores& stores_;
    std::vector<FieldCheck> checks_;
};

}  // namespace

std::vector<Text> checkMemos(OpenDatabase& d, Mend mend) {
    std::vector<Text> lines;
    auto checks = checksOf(d.memos, d.layout.fields(), allowed(d, mend), lines);
    Bytes bytes, now;
    for (int32 n = 1; !checks.empty() && n <= d.records(); ++n) {
        d.store.read(n, bytes);
        for (auto& check : checks)
            check.look(
                {n}, bytes,
                [&](int32 pointer) {
                    d.store.read(n, now);
                    return d.memos.pointerIn(now, check.field()) != pointer;
                },
                [&](int32 pointer) { putInRecord(d, n, check.field(), bytes, pointer); });
    }
    return lines;
}

std::vector<Text> checkRowMemos(OpenDatabase& d, Mend mend) {
    std::vector<Text> lines;
    for (const int32 field : d.chains.fields()) {
        ChainStore* const chain = d.chains.find(field);
        if (!chain || !chain->memos() || !chain->format().usable() || !chain->openToRead()) continue;
        const Mend how = chain->hasLeftover() ? Mend::no : allowed(d, mend);
        ChainMemoCheck check(d, *chain, how, lines);
        std::optional<ChainLock> lock;
        if (how != Mend::no) lock.emplace(*chain);
        for (int32 n = 1; n <= d.records(); ++n) check.record(n);
    }
    return lines;
}

}  // namespace tsRtm
