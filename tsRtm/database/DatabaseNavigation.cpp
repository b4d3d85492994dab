// clsTSDB: positions, keys and searches.
#include <algorithm>
#include <limits>
#include <optional>

#include "tsRtm/calendar/days/DateText.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/engine/DatabaseEngine.hpp"
#include "tsRtm/database/records/TextSearch.hpp"
#include "tsRtm/database/sets/TypedKey.hpp"

namespace tsRtm {
namespace {

// In place of a position.
constexpr int32 kLast = std::numeric_limits<int32>::max();

// A key as a caller types it, in the form that the index has it: a date at its start turns to its sortable
// form. Made in the room of the search before, which a search within a search finds empty.
class TypedKey {
 public:
    TypedKey(DatabaseEngine& engine, int32 index, TextView typed)
        : engine_(engine), key_(std::move(engine.spareKey)) {
        const IndexKeys& keys = engine.d.indexes.keys(index);
        const auto& layout = engine.d.layout;
        const int32 primary = keys.primary();
        // The keys take dates with fewer than two decimals, the search those with none.
        const bool asDate =
            layout.has(primary) && layout.field(primary).date && layout.field(primary).nachKomma == 0;
        const auto blank = std::min(typed.find(u' '), typed.size());
        if (asDate)
            keys.search(DateSort(typed.substr(0, blank)).append(typed.substr(blank)), key_);
        else
            keys.search(typed, key_);
    }
    ~TypedKey() { engine_.spareKey = std::move(key_); }
    TypedKey(const TypedKey&) = delete;
    TypedKey& operator=(const TypedKey&) = delete;

    const SearchKey& operator*() const noexcept { return key_; }

 private:
    DatabaseEngine& engine_;
    SearchKey key_;
};

// Marks a search while it runs.
class SearchUnderWay {
 public:
    explicit SearchUnderWay(bool& flag) : flag_(flag) { flag_ = true; }
    ~SearchUnderWay() { flag_ = false; }
    SearchUnderWay(const SearchUnderWay&) = delete;
    SearchUnderWay& operator=(const SearchUnderWay&) = delete;

 private:
    bool& flag_;
};

}  // namespace

void clsTSDB::SetIndex(int32 IndexNr) {
    if (IndexNr != 0 && !engine_->d.indexes.has(IndexNr))
        engine_->fail(DatabaseError::badIndex);
    else
        engine_->c.aktIndex = IndexNr;
}

int32 clsTSDB::ActiveIndex() const {
    const int32 index = engine_->c.aktIndex;
    return index == 0 ? 0 : engine_->d.indexes.keys(index).primary();
}
Text clsTSDB::IndexName() const { return Caption(ActiveIndex()); }
bool clsTSDB::Locating() const { return locating_; }
int32 clsTSDB::AktSatzNr() const { return engine_->c.aktSatz; }
int32 clsTSDB::LogSatz() const { return engine_->c.logPos; }

// Nothing to stand on: no record, or a reader's view of a database that is being reorganised.
bool clsTSDB::isEmpty() const { return !engine_->d.store || engine_->d.records() < 1; }

void clsTSDB::AktSatzNr(int32 value) {
    const Working working(*this);
    auto& e = *engine_;
    e.recordingFileFailures([&] {
        if (!e.d.store || !e.d.store.reaches(value)) {
            e.fail(DatabaseError::badRecord);
            return;
        }
        int32 position = value;
        if (e.c.aktIndex != 0)
            e.recordInIndex(e.c.aktIndex, [&](IndexForm& form) {
                position = form.positionOf(value);
                return value;
            });
        if (!showRecord(value)) return;
        if (position != 0) e.c.logPos = position;
    });
}

int32 clsTSDB::Index(int32 LogSatz) {
    const Working working(*this);
    auto& e = *engine_;
    int32 record = 0;
    e.recordingFileFailures([&] {
        if (!e.d.store || !e.d.store.reaches(LogSatz)) {
            e.fail(DatabaseError::badRecord);
            return;
        }
        record = e.c.aktIndex == 0
                     ? LogSatz
                     : e.inIndex(e.c.aktIndex, [&](IndexForm& form) { return form.recordAt(LogSatz); });
        if (record == 0) e.fail(DatabaseError::walkFailed);
        e.c.logPos = LogSatz;
    });
    return record;
}

bool clsTSDB::Exist(TextView Suchbegriff, int32 IndexNr) {
    const Working working(*this);
    auto& e = *engine_;
    if (!e.d.store) return false;
    if (Suchbegriff.empty()) Suchbegriff = u"#1";
    const auto position = positionIn(Suchbegriff);
    if (IndexNr == 0 || position)
        return e.d.store.reaches(position ? *position : roundToInt32(Val(Suchbegriff)));
    if (!e.d.indexes.has(IndexNr)) return e.fail(DatabaseError::badIndex);
    const SearchUnderWay search(locating_);
    bool exact = false;
    e.recordingFileFailures([&] {
        const TypedKey key(e, IndexNr, Suchbegriff);
        exact = e.inIndex(IndexNr, [&](IndexForm& form) { return form.locate(*key).exact; });
    });
    return exact;
}

void clsTSDB::Gehezu(TextView Suchbegriff) {
    const Working working(*this);
    engine_->recordingFileFailures([&] { goTo(Suchbegriff); });
}

void clsTSDB::goTo(TextView Suchbegriff) {
    auto& e = *engine_;
    e.d.refreshWhenDue();
    if (isEmpty()) {
        if (e.d.store) e.d.refreshCount();
        if (isEmpty()) {
            e.c.logPos = 0;
            e.c.aktSatz = 0;
            return;
        }
    }
    if (Suchbegriff.empty()) Suchbegriff = u"#1";
    const auto position = positionIn(Suchbegriff);
    if (e.c.aktIndex == 0 || position)
        goToNumber(position ? *position : roundToInt32(Val(Suchbegriff)));
    else
        goToKey(Suchbegriff);
    e.c.viewPos = e.c.logPos;
}

// Behind the last record the last one stays in memory.
void clsTSDB::goToNumber(int32 wanted) {
    auto& e = *engine_;
    auto& c = e.c;
    int32 record = 0;
    if (c.aktIndex == 0) {
        record = e.d.store.reaches(wanted) ? wanted : 0;
        c.seen = e.d.records();
        if (record == 0) record = std::clamp(wanted, 1, c.seen);
    } else {
        record = e.recordInIndex(c.aktIndex, [&](IndexForm& form) {
            c.seen = form.total();
            return c.seen < 1 ? 0 : form.recordAt(std::clamp(wanted, 1, c.seen));
        });
    }
    c.logPos = std::clamp(wanted, 1, c.seen + 1);
    if (record == 0) record = c.aktSatz;
    showRecord(record);
}

void clsTSDB::goToKey(TextView Suchbegriff) {
    auto& e = *engine_;
    const SearchUnderWay search(locating_);
    const TypedKey key(e, e.c.aktIndex, Suchbegriff);
    Found found;
    const int32 record = e.recordInIndex(e.c.aktIndex, [&](IndexForm& form) {
        found = form.locate(*key);
        return found.record == 0 && found.total > 0 ? form.recordAt(found.total) : found.record;
    });
    e.c.seen = found.total;
    e.c.logPos = found.position;
    showRecord(record != 0 ? record : e.c.aktSatz);
}

int32 clsTSDB::Rang(TextView Suchbegriff) {
    const Working working(*this);
    auto& e = *engine_;
    if (!e.d.store) return 1;
    if (e.c.aktIndex == 0) return std::clamp(roundToInt32(Val(Suchbegriff)), 1, e.d.records() + 1);
    const SearchUnderWay search(locating_);
    int32 rank = 1;
    e.recordingFileFailures([&] {
        const TypedKey key(e, e.c.aktIndex, Suchbegriff);
        rank = e.inIndex(e.c.aktIndex, [&](IndexForm& form) { return form.locate(*key).position; });
    });
    return rank;
}

std::shared_ptr<clsTSRecord> clsTSDB::Finde(TextView Suchtext) {
    const Working working(*this);
    auto& e = *engine_;
    auto& d = e.d;
    if (!d.store) return nullptr;
    d.refreshCount();
    const int32 count = d.records();
    const SearchUnderWay search(locating_);
    const TextSearch wanted(d.layout, Suchtext);
    std::vector<bool> seen(static_cast<std::size_t>(count) + 1, false);
    Bytes room;
    const auto hits = [&](int32 record) {
        if (record < 1 || record > count || seen[static_cast<std::size_t>(record)]) return false;
        seen[static_cast<std::size_t>(record)] = true;
        d.read(record, room);
        return wanted.in(room);
    };
    std::shared_ptr<clsTSRecord> found;
    e.recordingFileFailures([&] {
        const int32 start = std::clamp(e.c.logPos, 0, count);
        for (int32 step = 0; step < count; ++step) {
            const int32 position = (start + step) % count + 1;
            const int32 record = e.c.aktIndex == 0 ? position : e.inIndex(e.c.aktIndex, [&](IndexForm& form) {
                return form.recordAt(position);
            });
            if (!hits(record)) continue;
            found = standOn(record);
            return;
        }
        // What others moved past us meanwhile.
        for (int32 record = 1; record <= count && !found; ++record)
            if (hits(record)) found = standOn(record);
    });
    return found;
}

std::shared_ptr<clsTSRecord> clsTSDB::standOn(int32 record) {
    AktSatzNr(record);
    return Record(record);
}

void clsTSDB::moveTo(int32 position) {
    const Working working(*this);
    engine_->recordingFileFailures([&] { moveToPosition(position); });
}

void clsTSDB::moveToPosition(int32 position) {
    auto& e = *engine_;
    auto& c = e.c;
    const bool last = position == kLast;
    int32 record = 0;
    if (!e.d.store) {
        c.seen = 0;
    } else if (c.aktIndex == 0) {
        record = e.d.store.reaches(position) ? position : 0;
        c.seen = e.d.records();
        if (last) position = record = c.seen;
    } else {
        record = e.recordInIndex(c.aktIndex, [&](IndexForm& form) {
            c.seen = form.total();
            if (last) position = c.seen;
            return position < 1 || position > c.seen ? 0 : form.recordAt(position);
        });
    }
    c.logPos = std::clamp(position, 0, c.seen + 1);
    if (position < 1 || position > c.seen)
        e.fail(DatabaseError::noFurtherRecord);
    else if (record == 0)
        e.fail(DatabaseError::walkFailed);
    else
        showRecord(record);
}

void clsTSDB::MoveFirst() {
    moveTo(1);
    if (engine_->c.seen > 0) engine_->c.viewPos = 1;
}

void clsTSDB::MoveLast() {
    moveTo(kLast);
    engine_->c.viewPos = engine_->c.logPos;
}

void clsTSDB::MoveNext() {
    const int32 position = engine_->c.logPos + 1;
    moveTo(position);
    engine_->c.viewPos = position;
}

void clsTSDB::MovePrevious() {
    const int32 position = engine_->c.logPos - 1;
    moveTo(position);
    engine_->c.viewPos = position;
}

bool clsTSDB::BOFile() const { return engine_->c.viewPos < 2; }
bool clsTSDB::EOFile() const { return engine_->c.viewPos > engine_->c.seen; }

}  // namespace tsRtm
