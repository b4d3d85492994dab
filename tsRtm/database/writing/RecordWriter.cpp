#include "tsRtm/database/writing/RecordWriter.hpp"

#include <algorithm>
#include <atomic>
#include <numeric>
#include <tuple>
#include <utility>

#include "tsRtm/database/files/RecordedFailure.hpp"

namespace tsRtm {
namespace {

constexpr int32 kNoEntry = 28;  // the old key is not in its place
constexpr TextView kWrongTotal = u"Ein Index hat mehr Einträge als die Datenbank Sätze";
constexpr int32 kUpdateOverrun = static_cast<int32>(0x80040001);

WriteOutcome refused(DatabaseError error) { return {error, 0, 0}; }

// The lock of a record that is about to be made: given back where nothing comes of it.
class NewRecordLock {
 public:
    explicit NewRecordLock(DatabaseLocks& locks) : locks_(locks) {}
    ~NewRecordLock() {
        if (record_ != 0) locks_.unlockRecord(record_);
    }
    NewRecordLock(const NewRecordLock&) = delete;
    NewRecordLock& operator=(const NewRecordLock&) = delete;

    bool take(int32 record) {
        if (locks_.owns(record)) return true;
        if (failed(locks_.tryRecord(record))) return false;
        record_ = record;
        return true;
    }
    void keep() noexcept { record_ = 0; }

 private:
    DatabaseLocks& locks_;
    int32 record_ = 0;
};

using Columns = std::pair<std::size_t, std::size_t>;  // from, and the first behind

// The columns in which two records differ, and what lies between them; empty where they are the same.
Columns difference(const Bytes& a, const Bytes& b) {
    const auto first = std::mismatch(a.begin(), a.end(), b.begin()).first;
    if (first == a.end()) return {0, 0};
    const auto last = std::mismatch(a.rbegin(), a.rend(), b.rbegin()).first.base();
    return {static_cast<std::size_t>(first - a.begin()), static_cast<std::size_t>(last - a.begin())};
}

}  // namespace

class RecordWriter::Sides {
 public:
    explicit Sides(std::span<SideWrite* const> writes) : writes_(writes) {}
    ~Sides() {
        while (begun_ > 0) writes_[--begun_]->undo();
    }
    Sides(const Sides&) = delete;
    Sides& operator=(const Sides&) = delete;

    void prepare(BytesView stored, std::span<char> image) {
        for (auto* const write : writes_) {
            ++begun_;
            write->prepare(stored, image);
        }
    }
    void flush() const {
        for (auto* const write : writes_) write->flush();
    }
    // From here on the record may point to them, whatever becomes of its write.
    void show() noexcept { begun_ = 0; }
    void finish() noexcept {
        show();
        for (auto* const write : writes_) write->finish();
    }

 private:
    std::span<SideWrite* const> writes_;
    std::size_t begun_ = 0;
};

void RecordWriter::prepare() {
    keyBytes_.assign(d_.layout.bytes(), false);
    from_.resize(static_cast<std::size_t>(d_.indexes.count()));
    to_.resize(from_.size());
    for (int32 index = 1; d_.indexes.has(index); ++index) {
        const auto& keys = d_.indexes.keys(index);
        for (int32 component = 0; component < keys.count(); ++component) {
            const auto& field = d_.layout.field(keys.field(component));
            std::fill_n(keyBytes_.begin() + field.offset, field.bytes, true);
        }
    }
}

bool RecordWriter::touchesKeys(std::size_t first, std::size_t last) const {
    return std::find(keyBytes_.begin() + static_cast<std::ptrdiff_t>(first),
                     keyBytes_.begin() + static_cast<std::ptrdiff_t>(last),
                     true) != keyBytes_.begin() + static_cast<std::ptrdiff_t>(last);
}

// One write of this object at a time; failures are outcomes.
template <class Work>
WriteOutcome RecordWriter::alone(RecordBuffer* content, Work work) {
    if (d_.folder.readOnly) return refused(DatabaseError::readOnly);
    if (busy_ || !d_.store) return refused(DatabaseError::locked);
    struct Busy {
        RecordWriter& writer;
        ~Busy() {
            writer.busy_ = false;
            writer.content_ = nullptr;
            writer.kept_.reset();
        }
    } busy{*this};
    busy_ = true;
    content_ = content;
    try {
        if (const auto error = d_.sign.enter(); failed(error)) return refused(error);
        return work();
    } catch (const Failure& failure) {
        recordFailure(failure);
        if (failure.Number() == kUpdateOverrun) throw;
        return refused(static_cast<DatabaseError>(failure.Number()));
    }
}

void RecordWriter::keepContent() {
    if (!busy_ || !content_ || kept_) return;
    kept_.emplace(*content_);
    content_ = &*kept_;
}

// From the database lock, with everything of the file known anew, to a database that is whole again.
template <class Work>
WriteOutcome RecordWriter::underLock(Work work) {
    const DatabaseHold hold(d_.locks);
    if (!hold) return refused(hold.error());
    // On every way out that is not heeded below, a death among them, the marks are given up and stay.
    struct Marks {
        UpdateMarks& marks;
        ~Marks() { marks.giveUp(); }
    } marks{d_.marks};
    const bool known = std::exchange(countKnown_, false) && !d_.folder.shared;
    if (!known) d_.refreshCount();
    if (d_.marks.leftBehind()) {
        keepContent();
        d_.indexes.rebuildAll();
    }
    try {
        try {
            const WriteOutcome out = work();
            countKnown_ = true;
            return out;
        } catch (const Failure& failure) {
            if (failure.Number() != kNoEntry) throw;
            // Somebody who sets no mark has died: the indexes are built anew, and it goes once more.
            recordFailure(failure);
            keepContent();
            d_.marks.begin();
            d_.indexes.rebuildAll();
            d_.marks.end(d_.records());
            return work();
        }
    } catch (const Failure&) {
        heal();
        throw;
    }
}

void RecordWriter::heal() noexcept {
    if (!d_.marks.underWay() || !d_.guard.holds()) return;
    try {
        d_.indexes.rebuildAll();
        d_.marks.end(d_.records());
    } catch (const Failure& failure) {
        recordFailure(failure);
    }
}

WriteOutcome RecordWriter::change(int32 record, const WriteOrder& order) {
    return alone(&order.content, [&] {
        if (!d_.store.reaches(record)) return refused(DatabaseError::badRecord);
        const bool tears = d_.store.tears(record, 0, d_.layout.bytes());
        const bool needsLock =
            order.locked || tears || d_.layout.namesPlaces() || d_.remote() || d_.durable();
        if (!needsLock && order.sides.empty())
            if (const auto out = changeWithoutLock(record, order)) return *out;
        return underLock([&] { return changeUnderLock(record, order); });
    });
}

// Who holds the lock may lay what he has read over ours. He makes the number odd before he reads; one who
// stands below us on the stack reads once more when we are gone.
std::optional<WriteOutcome> RecordWriter::changeWithoutLock(int32 record, const WriteOrder& order) {
    const bool watches = d_.folder.shared && d_.changes && !UpdateMarks::underWayHere(d_.count);
    const uint64 number = watches ? d_.changes.value() : 0;
    if (!ChangeCount::isQuiet(number)) return std::nullopt;
    const WriteOutcome done{DatabaseError::none, record, 0};
    d_.store.read(record, stored_);
    content_->compose(stored_, order.extent, image_);
    const auto [from, to] = difference(image_, stored_);
    if (from == to) return done;
    // Somebody may be moving the record to another key at this moment: the keys stay his.
    if (touchesKeys(from, to)) return std::nullopt;
    d_.store.writePart(record, static_cast<uint32>(from), BytesView(image_).substr(from, to - from));
    std::atomic_thread_fence(std::memory_order_seq_cst);
    if (watches && d_.changes.value() != number) return std::nullopt;
    return done;
}

WriteOutcome RecordWriter::changeUnderLock(int32 record, const WriteOrder& order) {
    if (!d_.store.has(record)) return refused(DatabaseError::badRecord);
    WriteOutcome out{DatabaseError::none, record, 0};
    d_.store.read(record, stored_);
    content_->compose(stored_, order.extent, image_);
    Sides sides(order.sides);
    sides.prepare(stored_, image_);
    changed_.clear();
    for (int32 index = 1; d_.indexes.has(index); ++index)
        // An index whose fields did not change is not touched at all.
        if (d_.indexes.keys(index).differs(stored_, image_)) changed_.push_back(index);
    store(record, order, sides, out);
    sides.finish();
    return out;
}

void RecordWriter::store(int32 record, const WriteOrder& order, Sides& sides, WriteOutcome& out) {
    if (d_.durable()) sides.flush();
    if (changed_.empty()) {
        sides.show();
        return put(record);
    }
    const uint64 number = beginUpdate();
    move(record, order, out);
    sides.show();
    put(record);
    endUpdate(number, d_.records());
}

uint64 RecordWriter::beginUpdate() {
    const uint64 number = d_.changes ? d_.changes.value() : 0;
    for (const int32 index : changed_) {
        IndexForm& form = d_.indexes.open(index);
        if (d_.changes) form.at(number);
    }
    d_.marks.begin();
    return number;
}

void RecordWriter::endUpdate(uint64 number, int32 records) {
    d_.marks.end(records);
    if (d_.changes) d_.indexes.holds(number, d_.changes.value());
}

// The ways into all indexes go side by side: what one of them needs from memory comes while another one is
// searched.
void RecordWriter::aim(int32 record, const std::vector<SearchKey>& keys) {
    if (!d_.changes) return;
    for (int32 turn = 0; turn < 2; ++turn)
        for (std::size_t i = 0; i < changed_.size(); ++i) d_.indexes.open(changed_[i]).aim(record, keys[i]);
}

// Who changes no key writes without the lock, perhaps while a handler of ours ran: what this write leaves as
// it was read stays as it is now.
void RecordWriter::keepOthersColumns(int32 record) {
    if (d_.locks.alone() && !d_.folder.shared) return;
    d_.store.read(record, now_);
    if (now_ == stored_) return;
    for (std::size_t i = 0; i < now_.size(); ++i)
        if (image_[i] == stored_[i] && !keyBytes_[i]) image_[i] = now_[i];
    stored_.swap(now_);
}

// What differs from the stored record. Who writes without the lock learns by the number that he came
// between.
void RecordWriter::put(int32 record) {
    if (!d_.folder.shared || !d_.changes || d_.marks.underWay() || d_.remote()) return putNow(record);
    const auto [from, to] = difference(image_, stored_);
    if (from == to) return;
    const uint64 before = d_.changes.value();
    d_.changes.begin();
    try {
        putNow(record);
    } catch (const Failure&) {
        d_.changes.end();
        throw;
    }
    d_.changes.end();
    if (!touchesKeys(from, to)) d_.indexes.holds(before, d_.changes.value());
}

// In one write. Whoever dies in it leaves the old record, or the new one, or marks by which it is completed.
void RecordWriter::putNow(int32 record) {
    keepOthersColumns(record);
    auto [from, to] = difference(image_, stored_);
    if (from == to) return;
    // The last record of a file that was cut short is written whole.
    const bool cutShort = d_.layout.offsetOf(record + 1) > d_.store.bytes().knownSize();
    if (cutShort) std::tie(from, to) = Columns(0, image_.size());
    const auto offset = static_cast<uint32>(from);
    const BytesView bytes = BytesView(image_).substr(from, to - from);
    const bool tears = d_.store.tears(record, from, to);
    const bool own = tears && !d_.marks.underWay();
    if (own) d_.marks.begin();
    const BytesView before = BytesView(stored_).substr(from, to - from);
    if (tears) d_.marks.keep(record, offset, bytes, cutShort ? BytesView() : before);
    note(record, offset, bytes, before, cutShort);
    // In place where the number of changes tells of it or nobody else is there: else the file's time has to.
    if (bytes.size() == 1 && (d_.changes || !d_.folder.shared))
        d_.store.putByte(record, offset, bytes.front());
    else
        d_.store.writePart(record, offset, bytes);
    if (own) d_.marks.end(d_.records());
    if (!d_.marks.underWay()) d_.marks.touched();
}

void RecordWriter::note(int32 record, uint32 offset, BytesView now, BytesView before, bool isNew) {
    if (d_.durable())
        d_.log.note(d_.store.bytes(), {d_.layout.offsetOf(record) + offset, now, before, isNew});
}

void RecordWriter::move(int32 record, const WriteOrder& order, WriteOutcome& out) {
    // A handler of the notice may read, and so use the room that the next index needs: all is at hand before.
    for (std::size_t i = 0; i < changed_.size(); ++i) {
        const IndexKeys& keys = d_.indexes.keys(changed_[i]);
        keys.searchFor(image_, to_[i]);
        keys.searchFor(stored_, from_[i]);
    }
    aim(record, from_);
    for (std::size_t i = 0; i < changed_.size(); ++i)
        moved(changed_[i], d_.indexes.open(changed_[i]).move(record, from_[i], to_[i]), order, out);
}

void RecordWriter::moved(int32 index, int32 position, const WriteOrder& order, WriteOutcome& out) {
    const int32 primary = d_.indexes.keys(index).primary();
    // The flat form compares a field number with the index number: stored data relies on it.
    if ((d_.indexes.big() ? index : primary) == order.watched) out.position = position;
    if (indexChanged) indexChanged(primary);
}

WriteOutcome RecordWriter::add(const WriteOrder& order) {
    return alone(&order.content, [&] { return underLock([&] { return addUnderLock(order); }); });
}

WriteOutcome RecordWriter::addUnderLock(const WriteOrder& order) {
    const int32 before = d_.records();
    const int32 record = before + 1;
    if (before >= d_.maxRecords()) return refused(DatabaseError::full);
    WriteOutcome out{DatabaseError::none, record, 0};
    // An older program died when the record was in the tree and not in the file.
    for (int32 index = 1; d_.indexes.big() && d_.indexes.has(index); ++index)
        if (d_.indexes.open(index).total() != before) raise(kNoEntry, kFileFailureSource, kWrongTotal);
    NewRecordLock lock(d_.locks);
    if (order.lockNew && !lock.take(record)) return refused(DatabaseError::locked);
    Sides sides(order.sides);
    try {
        content_->compose({}, RecordBuffer::Extent::whole, image_);
        sides.prepare({}, image_);
        if (d_.durable()) sides.flush();
        changed_.resize(static_cast<std::size_t>(d_.indexes.count()));
        std::iota(changed_.begin(), changed_.end(), 1);
        const uint64 number = beginUpdate();
        // The arrays count as many entries as there are records: room first, as deleted.
        if (!d_.indexes.big()) d_.store.write(record, d_.layout.unfilled());
        for (std::size_t i = 0; i < changed_.size(); ++i)
            d_.indexes.keys(changed_[i]).searchFor(image_, to_[i]);
        aim(record, to_);
        for (std::size_t i = 0; i < changed_.size(); ++i)
            moved(changed_[i], d_.indexes.open(changed_[i]).enter(record, to_[i]), order, out);
        if (d_.store.tears(record, 0, image_.size())) d_.marks.keep(record, 0, image_, {});
        note(record, 0, image_, d_.indexes.big() ? BytesView() : BytesView(d_.layout.unfilled()), true);
        d_.store.write(record, image_);
        sides.show();
        endUpdate(number, record);
        sides.finish();
        lock.keep();
        return out;
    } catch (const Failure&) {
        d_.store.refresh();
        if (d_.marks.underWay() && d_.guard.holds()) d_.store.cutTo(before);
        throw;
    }
}

WriteOutcome RecordWriter::place(int32 record, RecordBuffer& content) {
    return alone(&content, [&] {
        if (record < 1 || (record > 1 && !d_.store.reaches(record - 1)))
            return refused(DatabaseError::badRecord);
        return underLock([&] {
            const bool isNew = !d_.store.reaches(record);
            if (isNew)
                stored_.clear();
            else
                d_.store.read(record, stored_);
            content_->compose(stored_, RecordBuffer::Extent::whole, image_);
            if (!isNew) {
                put(record);
            } else {
                note(record, 0, image_, {}, true);
                d_.store.write(record, image_);
                d_.count.finish(d_.records());
                d_.marks.touched();
            }
            return WriteOutcome{DatabaseError::none, record, 0};
        });
    });
}

WriteOutcome RecordWriter::patch(int32 record, uint32 offset, BytesView bytes) {
    return alone(nullptr, [&] {
        if (!d_.store.reaches(record)) return refused(DatabaseError::badRecord);
        // Whoever moves this record to another key at this moment would write over it.
        return underLock([&] {
            if (!d_.store.has(record)) return refused(DatabaseError::badRecord);
            d_.store.read(record, stored_);
            image_ = stored_;
            image_.replace(offset, bytes.size(), bytes);
            put(record);
            return WriteOutcome{DatabaseError::none, record, 0};
        });
    });
}

}  // namespace tsRtm
