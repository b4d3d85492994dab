// clsTSDB: positions, keys and searches.
#include <algorithm>

#include "tsRtm/calendar/DateText.hpp"
#include "tsRtm/database/DatabaseParts.hpp"
#include "tsRtm/database/IndexFiles.hpp"
#include "tsRtm/database/TextSearch.hpp"
#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"

namespace tsRtm {
namespace {

// A key as a caller types it, in the form that the index has it: a date at its start turns to its sortable
// form.
Text typedKey(const DatabaseParts& parts, int32 index, TextView typed) {
    const int32 primary = parts.index(index).keys.primary();
    if (!parts.layout.has(primary)) return Text(typed);
    const auto& field = parts.layout.field(primary);
    // The keys take dates with fewer than two decimals, the search those with none.
    if (!field.date || field.nachKomma != 0) return Text(typed);
    const auto blank = std::min(typed.find(u' '), typed.size());
    return DateSort(typed.substr(0, blank)).append(typed.substr(blank));
}

// "#0" stands for the first position, and an empty key for "#1".
int32 positionNumber(TextView typed) { return roundToInt32(Val(typed.substr(1))); }

// Position of a record in an order, 0 where it has none.
int32 positionOf(DatabaseParts& parts, int32 index, int32 record) {
    return index == 0 ? record : openIndex(parts, index).positionOf(record);
}

int32 recordAt(DatabaseParts& parts, int32 index, int32 position) {
    return index == 0 ? position : openIndex(parts, index).recordAt(position);
}

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
    if (IndexNr != 0 && !parts_->hasIndex(IndexNr))
        parts_->fail(53);
    else
        parts_->aktIndex = IndexNr;
}

int32 clsTSDB::ActiveIndex() const {
    return parts_->aktIndex == 0 ? 0 : parts_->index(parts_->aktIndex).keys.primary();
}
Text clsTSDB::IndexName() const { return Caption(ActiveIndex()); }
bool clsTSDB::Locating() const { return locating_; }
int32 clsTSDB::AktSatzNr() const { return parts_->aktSatz; }
int32 clsTSDB::LogSatz() const { return parts_->logPos; }

void clsTSDB::AktSatzNr(int32 value) {
    auto& d = *parts_;
    recordingFileFailures(d, [&] {
        if (!readRecord(value)) return;
        if (const int32 position = positionOf(d, d.aktIndex, value); position != 0) d.logPos = position;
    });
}

int32 clsTSDB::Index(int32 LogSatz) {
    auto& d = *parts_;
    if (!d.hasRecord(LogSatz)) {
        d.fail(63);
        return 0;
    }
    const int32 record = recordAt(d, d.aktIndex, LogSatz);
    if (record == 0) d.fail(28);
    d.logPos = LogSatz;
    return record;
}

bool clsTSDB::Exist(TextView Suchbegriff, int32 IndexNr) {
    auto& d = *parts_;
    if (Suchbegriff.empty()) Suchbegriff = u"#1";
    if (IndexNr == 0 || Suchbegriff.starts_with(u'#')) {
        const int32 position =
            Suchbegriff.starts_with(u'#') ? positionNumber(Suchbegriff) : roundToInt32(Val(Suchbegriff));
        return d.hasRecord(position);
    }
    if (!d.hasIndex(IndexNr)) return d.fail(53);
    const SearchUnderWay search(locating_);
    const SearchKey key = d.index(IndexNr).keys.search(typedKey(d, IndexNr, Suchbegriff));
    return openIndex(d, IndexNr).locate(key).exact;
}

void clsTSDB::Gehezu(TextView Suchbegriff) {
    recordingFileFailures(*parts_, [&] { goTo(Suchbegriff); });
}

void clsTSDB::goTo(TextView Suchbegriff) {
    auto& d = *parts_;
    d.refreshWhenDue();
    if (d.records() < 1) {
        d.logPos = 0;
        d.aktSatz = 0;
        return;
    }
    if (Suchbegriff.empty()) Suchbegriff = u"#1";
    if (d.aktIndex == 0 || Suchbegriff.starts_with(u'#')) {
        const int32 wanted =
            Suchbegriff.starts_with(u'#') ? positionNumber(Suchbegriff) : roundToInt32(Val(Suchbegriff));
        d.logPos = std::clamp(wanted, 1, d.records() + 1);
        if (d.logPos <= d.records()) d.aktSatz = recordAt(d, d.aktIndex, d.logPos);
    } else {
        const SearchUnderWay search(locating_);
        const SearchKey key = d.index(d.aktIndex).keys.search(typedKey(d, d.aktIndex, Suchbegriff));
        const Found found = openIndex(d, d.aktIndex).locate(key);
        d.logPos = found.position;
        if (found.record != 0) d.aktSatz = found.record;
    }
    d.viewPos = d.logPos;
    // Behind the last record the last one stays in memory.
    if (d.logPos > d.records()) d.aktSatz = recordAt(d, d.aktIndex, d.records());
    readRecord(d.aktSatz);
}

int32 clsTSDB::Rang(TextView Suchbegriff) {
    auto& d = *parts_;
    if (d.aktIndex == 0) return std::clamp(roundToInt32(Val(Suchbegriff)), 1, d.records() + 1);
    const SearchUnderWay search(locating_);
    return openIndex(d, d.aktIndex)
        .locate(d.index(d.aktIndex).keys.search(typedKey(d, d.aktIndex, Suchbegriff)))
        .position;
}

std::shared_ptr<clsTSRecord> clsTSDB::Finde(TextView Suchtext) {
    auto& d = *parts_;
    d.refreshWhenDue();
    const int32 count = d.records();
    if (count < 1) return nullptr;
    const SearchUnderWay search(locating_);
    const TextSearch wanted(d.layout, Suchtext);
    Bytes room;
    const int32 start = std::clamp(d.logPos, 0, count);
    for (int32 step = 1; step <= count; ++step) {
        const int32 position = (start + step - 1) % count + 1;
        const int32 record = recordAt(d, d.aktIndex, position);
        if (!d.store.has(record) || !wanted.in(d.store.view(record, room))) continue;
        moveTo(position);
        return Record(record);
    }
    return nullptr;
}

void clsTSDB::moveTo(int32 position) {
    recordingFileFailures(*parts_, [&] { moveToPosition(position); });
}

void clsTSDB::moveToPosition(int32 position) {
    auto& d = *parts_;
    const bool there = d.hasRecord(position);
    d.logPos = std::clamp(position, 0, d.records() + 1);
    if (!there) {
        d.fail(62);
        return;
    }
    const int32 record = recordAt(d, d.aktIndex, position);
    if (record == 0) {
        d.fail(28);
        return;
    }
    readRecord(record);
}

void clsTSDB::MoveFirst() {
    parts_->refreshWhenDue();
    if (parts_->records() > 0) parts_->viewPos = 1;
    moveTo(1);
}

void clsTSDB::MoveLast() {
    parts_->refreshWhenDue();
    parts_->viewPos = parts_->records();
    moveTo(parts_->records());
}

void clsTSDB::MoveNext() {
    parts_->viewPos = parts_->logPos + 1;
    moveTo(parts_->logPos + 1);
}

void clsTSDB::MovePrevious() {
    parts_->viewPos = parts_->logPos - 1;
    moveTo(parts_->logPos - 1);
}

bool clsTSDB::BOFile() const { return parts_->viewPos < 2; }
bool clsTSDB::EOFile() const { return parts_->viewPos > parts_->records(); }

}  // namespace tsRtm
