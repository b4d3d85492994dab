#include "tsRtm/database/chains/ChainCheck.hpp"

#include <algorithm>
#include <optional>

namespace tsRtm {
namespace {

constexpr int32 kOnFreeList = -1;

// The chains of one field.
class FieldCheck {
 public:
    FieldCheck(ChainStore& store, int32 field, ChainMending mending)
        : store_(store),
          file_(store.file()),
          format_(store.format()),
          name_(u"Kette in Feld " + toText(field)),
          mending_(mending) {}

    std::vector<Text> run() {
        bool there = store_.openToRead();
        if (!there && mending_ == ChainMending::repair && store_.lastNamed() != 0) {
            store_.openToWrite();
            there = true;
        }
        if (!there || store_.hasLeftover()) mending_ = ChainMending::none;
        std::optional<ChainLock> lock;
        if (mends()) lock.emplace(store_);
        if (there) file_.refresh();
        owner_.assign(static_cast<std::size_t>(file_.rows()) + 1, 0);
        const int32 records = store_.parts().records.count();
        for (int32 record = 1; record <= records; ++record) chain(record);
        if (there) freeList();
        if (there) file_.check();
        for (const auto& at : breaks_)
            if (mends()) mend(at);
        return std::move(lines_);
    }

 private:
    // Where a chain leads to a row that is not its own.
    struct Break {
        int32 record;
        int32 before;  // 0: the field itself
        int32 to;
        bool shared;  // another record has that row; what is mended may give rows to a number that had none
    };

    bool mends() const noexcept { return mending_ != ChainMending::none; }
    int32& owner(int32 row) { return owner_[static_cast<std::size_t>(row)]; }

    void note(int32 record, const Text& what) {
        lines_.push_back(name_ + u", Satz " + toText(record) + u": " + what);
    }

    Bytes columnsOf(int32 record) const {
        Bytes columns(store_.field().bytes, ' ');
        store_.parts().readRecord(record, store_.field().offset, columns);
        return columns;
    }

    void chain(int32 record) {
        const Bytes columns = columnsOf(record);
        const ChainEnds ends = format_.ends(columns);
        int32 before = 0;
        int32 row = ends.first;
        while (row != 0) {
            if (leadsAstray(record, before, row)) return;
            owner(row) = record;
            const BytesView bytes = file_.row(row, room_);
            const int32 next = format_.next(bytes);
            if (mends() && format_.paired() && format_.previous(bytes) != before)
                file_.writePointer(row, ChainFormat::kPreviousOffset, before);
            before = row;
            row = next;
        }
        if (!format_.paired() || ends.last == before || before == 0) return;
        if (!file_.holds(ends.last) || owner(ends.last) != record)
            note(record, u"die letzte Zeile gehört nicht dazu");
        if (mends()) write(record, {ends.first, before});
    }

    bool leadsAstray(int32 record, int32 before, int32 row) {
        const bool there = file_.has(row, room_);
        if (there && owner(row) == 0) return false;
        const Text from = before == 0 ? Text(u"das Feld") : u"Zeile " + toText(before);
        note(record, from + u" verweist auf Zeile " + toText(row) +
                         (!there                 ? Text(u", die es nicht gibt")
                          : owner(row) == record ? Text(u", die schon vorkam")
                                                 : u", die zu Satz " + toText(owner(row)) + u" gehört"));
        breaks_.push_back({record, before, row, there && owner(row) != record});
        return true;
    }

    void write(int32 record, ChainEnds ends) {
        const FieldLayout& field = store_.field();
        const auto& parts = store_.parts();
        Bytes columns(field.bytes, ' ');
        format_.ends(ends, columns);
        const bool tears = parts.records.tears(record, field.offset, field.offset + field.bytes);
        if (tears) {
            Bytes before(columns.size(), ' ');
            parts.records.readPart(record, field.offset, before);
            parts.marks.begin();
            parts.marks.keep(record, field.offset, columns, before);
        }
        parts.records.writePart(record, field.offset, columns);
        if (tears)
            parts.marks.end(parts.records.count());
        else
            parts.marks.touched();
    }

    void freeList() {
        if (file_.size() < format_.rowBytes()) return;
        const ChainHead head = file_.head();
        const bool sound = head.hoch >= file_.rows() && listIsSound(head);
        if (!sound) lines_.push_back(name_ + u": die Liste der freien Zeilen ist falsch");
        if (mending_ == ChainMending::cut || (mends() && !sound)) store_.supply().dropList();
    }

    bool listIsSound(ChainHead head) {
        const int32 end = head.hoch + 1;
        for (int32 row = head.frei; row != 0 && row != end;) {
            if (row < ChainFormat::kFirstRow || row > head.hoch) return false;
            // A row that was given out and never written has no place in the file.
            if (!file_.holds(row)) return true;
            if (owner(row) != 0) return false;
            owner(row) = kOnFreeList;
            row = format_.link(file_.row(row, room_));
        }
        return true;
    }

    void mend(const Break& at) {
        std::vector<int32> rows;
        if (mending_ == ChainMending::repair && at.shared) rows = copyFrom(at);
        const int32 first = rows.empty() ? 0 : rows.front();
        if (at.before != 0) file_.writePointer(at.before, format_.nextOffset(), first);
        const ChainEnds ends = format_.ends(columnsOf(at.record));
        const int32 last = rows.empty() ? at.before : rows.back();
        if (at.before == 0 || (format_.paired() && ends.last != last))
            write(at.record, {at.before == 0 ? first : ends.first, last});
    }

    // The rows from there on once more, for this chain alone.
    std::vector<int32> copyFrom(const Break& at) {
        Bytes columns(store_.field().bytes, ' ');
        format_.ends({at.to, 0}, columns);
        const ChainContent shared = store_.walk(columns);
        Bytes rows = shared.bytes;
        settleBlocks(store_.rows(), store_.memos(), shared.bytes, {}, rows);
        auto numbers = store_.supply().take(static_cast<int32>(shared.rows.size())).rows;
        const std::size_t length = format_.rowBytes();
        for (std::size_t i = 0; i < numbers.size(); ++i)
            format_.pointers(i == 0 ? at.before : numbers[i - 1],
                             i + 1 == numbers.size() ? 0 : numbers[i + 1],
                             std::span(rows).subspan(i * length, length));
        file_.write(numbers, rows);
        return numbers;
    }

    ChainStore& store_;
    ChainFile& file_;
    const ChainFormat& format_;
    Text name_;
    ChainMending mending_;
    std::vector<int32> owner_;  // by row: the record that has it
    std::vector<Break> breaks_;
    std::vector<Text> lines_;
    Bytes room_;
};

}  // namespace

std::vector<Text> checkChains(ChainSet& chains, ChainMending mending) {
    std::vector<Text> lines;
    for (const int32 field : chains.fields()) {
        ChainStore* const store = chains.find(field);
        if (!store || !store->format().usable()) continue;
        auto found = FieldCheck(*store, field, mending).run();
        std::move(found.begin(), found.end(), std::back_inserter(lines));
    }
    return lines;
}

}  // namespace tsRtm
