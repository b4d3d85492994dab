#include "tsRtm/appointments/clsTerminkalender.hpp"

#include <algorithm>
#include <unordered_set>

#include "tsRtm/appointments/keys/DueRule.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/database/clsTSRecordSet.hpp"
#include "tsRtm/frame/FilesTopic.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/clsCommon.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {

using namespace appointments;

namespace {

using Rolle = TerminFelder;

constexpr int32 kLetGo = -3;  // what HalloIndex says when records are about to get other numbers
constexpr TextView kSeries = u"*";

bool isSameId(TextView a, TextView b) { return IstZiffern(a) && IstZiffern(b) ? Val(a) == Val(b) : a == b; }

// A bound of a range that takes all keys that begin with it.
Text andAllBehind(TextView key) { return Text(key) + rtmMain::state().locale.lastChar; }

// Record numbers of the keys that begin so, in the order of the index where the field has one.
std::vector<int32> numbersOf(clsTSDB& db, int32 field, TextView key) {
    const auto all = db.Records();
    const auto range = all ? all->GetRange(field, key, andAllBehind(key)) : nullptr;
    return range ? range->Satznummern() : std::vector<int32>();
}

bool holds(const std::vector<int32>& numbers, int32 number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

}  // namespace

clsTerminkalender::clsTerminkalender()
    : messages_(std::make_unique<MessagesTopic>()),
      files_(std::make_unique<FilesTopic>(*messages_)),
      databases_(*files_) {
    answerNumber_ = HalloTerminRec.connect([this](int32 number, std::shared_ptr<clsTermin>& termin) {
        const auto known = live_.find(number);
        if (!termin && known != live_.end()) termin = known->second.lock();
    });
    answerId_ = HalloTermin.connect([this](TextView id, std::shared_ptr<clsTermin>& termin) {
        for (const auto& [number, known] : live_)
            if (const auto held = known.lock(); !termin && held && isSameId(held->ID(), id)) termin = held;
    });
}

clsTerminkalender::~clsTerminkalender() = default;

// --- The store

bool clsTerminkalender::Init(TextView DBName, std::shared_ptr<iKalenderExtender> Extender, bool Cachable,
                             bool DoCreate) {
    extender_ = std::move(Extender);
    cachable_ = Cachable;
    auto opened = databases_.OpenTSDB(DBName);
    bool made = false;
    if (!opened && DoCreate) {
        const Text folder = upper(DBName).ends_with(u".DBD") ? Text(DBName) : Text(DBName) + u".DBD";
        const Text control = FilesTopic::MakePath({Variant(folder), Variant(u"Control.tsd")});
        if (FilesTopic::Exist(control)) return false;
        made = create(DBName);
        if (!made && !FilesTopic::Exist(control)) {
            messages_->TSMsgBox(u"Die Termin-Datenbank kann nicht angelegt werden.", dlgExclamation,
                                u"Terminkalender");
            return false;
        }
        opened = databases_.OpenTSDB(DBName);
    }
    if (!opened) return false;
    DB(std::move(opened));
    if (made && db_) Created();
    return db_ != nullptr;
}

void clsTerminkalender::DB(std::shared_ptr<clsTSDB> value) {
    for (auto* subscription : {&written_, &indexWritten_, &packed_, &letGo_}) subscription->end();
    db_ = std::move(value);
    fields_ = db_ ? TerminFelder::in(*db_->Control()) : TerminFelder();
    if (fields_[Rolle::schluessel] < 1) db_.reset();
    if (db_) {
        written_ = db_->RecordChange.connect([this](int32 number) { recordChanged(number); });
        indexWritten_ = db_->IndexChange.connect([this](int32) { indexChanged_ = true; });
        packed_ = db_->Packed.connect([this] { letGo(); });
        letGo_ = db_->HalloIndex.connect([this](int32 field, std::shared_ptr<clsTSRecordSet>&) {
            if (field == kLetGo) letGo();
        });
    }
    letGo();
}

// Numbers of records stand for nothing any more.
void clsTerminkalender::letGo() {
    const auto held = weak_from_this().lock();
    cache_.clear();
    live_.clear();
    stand_ = db_ ? db_->Stand() : Datenstand();
    seen_ = db_ ? db_->AnzahlDSaetze() : 0;
    DBChange();
}

void clsTerminkalender::Cachable(bool value) {
    cachable_ = value;
    if (!value) ClearCache();
}

tsRtm::Text clsTerminkalender::DateKeys(TextView Datum) const { return dateKeys(Datum); }
tsRtm::Text clsTerminkalender::What(TextView Key) const { return wordsOf(Key); }
tsRtm::Text clsTerminkalender::CreateKey(TextView A) const { return createKey(A); }

// --- What is due

std::shared_ptr<clsTermine> clsTerminkalender::Termine(TextView Datum, TextView Extent) {
    if (!db_) return nullptr;
    CheckDB();
    const clsDatum calendar;
    const Text date = Datum.empty() ? calendar.DateTo6(clsCommon().DA8()) : Text(Datum);
    asked_ = calendar.JulianDay(date);
    askedExtent_ = Extent;
    return std::make_shared<clsTermine>(shared_from_this(), due(asked_, Extent), dateKeys(date), asked_,
                                        Extent);
}

std::shared_ptr<clsTermine> clsTerminkalender::Selection(int32 IndexFeld, TextView Von, TextView Bis,
                                                         iRecordChecker* Checker) {
    const auto all = db_ ? db_->Records() : nullptr;
    const auto range = all ? all->GetRange(IndexFeld, Von, andAllBehind(Bis), Checker) : nullptr;
    return range ? std::make_shared<clsTermine>(shared_from_this(), range->Satznummern()) : nullptr;
}

// Records in the order of the day's keys. The series come behind the first key, where they would come however
// often they were looked through.
std::vector<int32> clsTerminkalender::due(int32 number, TextView extent) {
    const Day day = dayOf(number);
    const Text keys = dateKeys(clsDatum().KalenderDay(number));
    std::vector<int32> found, room;
    std::unordered_set<int32> taken;
    const auto take = [&](const std::vector<int32>& range, TextView key) {
        for (const int32 record : range)
            if (isDue(record, day, key, extent) && taken.insert(record).second) found.push_back(record);
    };
    for (std::size_t at = 0; at < keys.size(); at += kKeyLength) {
        const Text key = keys.substr(at, kKeyLength);
        take(range(key, room), key);
        if (at == 0 && fields_[Rolle::gueltigAb] > 0)
            take(numbersOf(*db_, fields_[Rolle::schluessel], kSeries), {});
    }
    return found;
}

// All records of a key, whatever else they say; kept in memory where that is wanted.
const std::vector<int32>& clsTerminkalender::range(const Text& key, std::vector<int32>& room) {
    const auto fetched = [&] { return numbersOf(*db_, fields_[Rolle::schluessel], key); };
    if (!cachable_) return room = fetched();
    const auto now = rtmMain::system().clock.elapsed();
    auto known =
        std::find_if(cache_.begin(), cache_.end(), [&](const auto& entry) { return entry.key == key; });
    if (known == cache_.end()) {
        cache_.push_back({key, fetched(), now});
        return cache_.back().numbers;
    }
    if (db_->IsShared() && now - known->since > std::chrono::seconds(rtmMain::state().netWait))
        *known = {key, fetched(), now};
    return known->numbers;
}

// As the file has the record at this moment. `key` is that by which it was found, empty for a series or any.
bool clsTerminkalender::isDue(int32 number, const Day& day, TextView key, TextView extent) {
    if (number < 1 || db_->GetField(number, 0) == u"*") return false;
    const auto field = [&](Rolle::Rolle role) {
        return fields_[role] > 0 ? db_->GetField(number, fields_[role]) : Text();
    };
    const Text own = field(Rolle::schluessel);
    if (!key.empty() && !equalIgnoringCase(own, key)) return false;
    if (!DueRule(own, field(Rolle::gueltigAb), field(Rolle::gueltigBis)).on(day)) return false;
    if (!extender_) return true;
    const auto record = db_->Record(number);
    return record && extender_->RecordChecker(*record, extent);
}

bool clsTerminkalender::Okay(const std::shared_ptr<clsTSRecord>& R) {
    if (!db_ || !R || asked_ == 0 || R->Deleted()) return false;
    const auto field = [&](Rolle::Rolle role) {
        return fields_[role] > 0 ? R->Fields(fields_[role]) : Text();
    };
    const Text key = field(Rolle::schluessel);
    const DueRule rule(key, field(Rolle::gueltigAb), field(Rolle::gueltigBis));
    const Day day = dayOf(asked_);
    if (!(key.starts_with(kSeries) ? rule.on(day) : rule.isValid(day))) return false;
    return !extender_ || extender_->RecordChecker(*R, askedExtent_);
}

bool clsTerminkalender::belongs(const clsTermin& termin, int32 day, TextView extent) {
    return db_ && isDue(termin.number_, dayOf(day), {}, extent);
}

// --- Appointments

std::shared_ptr<clsTermin> clsTerminkalender::Add(TextView Key, TextView Datum, TextView Zeit, TextView Dauer,
                                                  TextView Betreff, TextView DatumVon, TextView DatumBis) {
    if (IsReadOnly()) return nullptr;
    CheckDB();
    const tsRtm::Text key = Key.empty() ? CreateKey(Datum) : tsRtm::Text(Key);
    const auto record = key.size() == kKeyLength ? db_->Add() : nullptr;
    if (!record) return nullptr;
    auto termin = std::make_shared<clsTermin>(record, fields_);
    termin->belongTo(shared_from_this(), 0);
    termin->Termin(key);
    termin->Datum(Datum);
    termin->Uhrzeitvon(Zeit);
    termin->Dauer(Dauer);
    termin->Betreff(Betreff);
    termin->DatumVon(DatumVon);
    termin->DatumBis(DatumBis);
    if (extender_) termin->extend(extender_->EXTENSION(*termin));
    return termin;
}

std::shared_ptr<clsTermin> clsTerminkalender::FindTermin(TextView ID) {
    std::shared_ptr<clsTermin> termin;
    if (db_) HalloTermin(ID, termin);
    return termin;
}

std::shared_ptr<clsTermin> clsTerminkalender::Termin(TextView ID) {
    if (!db_ || ID.empty()) return nullptr;
    if (auto live = FindTermin(ID)) return live;
    const int32 field = fields_[Rolle::id];
    const int32 byNumber = IstZiffern(ID) ? roundToInt32(Val(ID)) : 0;
    if (field == 0) return TerminAusSatz(byNumber);
    const auto has = [&](int32 number) { return isSameId(db_->GetField(number, field), ID); };
    if (db_->IndexNr(Variant(field)) > 0) {
        for (const int32 number : numbersOf(*db_, field, ID))
            if (has(number)) return TerminAusSatz(number);
        return nullptr;
    }
    // Without an order of ids; mostly they are the numbers of the records.
    if (byNumber >= 1 && db_->Record(byNumber) && has(byNumber)) return TerminAusSatz(byNumber);
    static_cast<void>(db_->Stand());  // what others have added counts, too
    for (int32 number = 1, count = db_->AnzahlDSaetze(); number <= count; ++number)
        if (has(number)) return TerminAusSatz(number);
    return nullptr;
}

std::shared_ptr<clsTermin> clsTerminkalender::TerminAusSatz(int32 Satznummer) {
    if (!db_) return nullptr;
    if (auto known = live(Satznummer)) return known;
    const auto record = Satznummer > 0 ? db_->Record(Satznummer) : nullptr;
    if (!record) return nullptr;
    auto termin = std::make_shared<clsTermin>(record, fields_);
    termin->belongTo(shared_from_this(), Satznummer);
    live_[Satznummer] = termin;
    if (extender_) termin->extend(extender_->EXTENSION(*termin));
    return termin;
}

std::shared_ptr<clsTermin> clsTerminkalender::live(int32 number) {
    std::shared_ptr<clsTermin> termin;
    HalloTerminRec(number, termin);
    return termin;
}

// --- Changes

bool clsTerminkalender::CheckDB() {
    if (!db_) return false;
    const auto held = weak_from_this().lock();
    if (db_->Record(seen_ + 1))
        newRecords(db_->AnzahlDSaetze());
    else
        static_cast<void>(db_->Error());
    if (!db_) return false;  // given up by a listener
    if (const auto now = db_->Stand(); now != stand_) {
        stand_ = now;
        cache_.clear();
        const Holding holding(*this);
        stale_();
    }
    return false;
}

// Records that others appended.
void clsTerminkalender::newRecords(int32 upTo) {
    while (db_ && seen_ < upTo) {
        const int32 number = seen_ + 1;
        // Not written yet: seen when it is whole.
        if (db_->GetField(number, 0) == u"*" &&
            db_->GetField(number, fields_[Rolle::schluessel]).starts_with(u'ÿ'))
            return;
        seen_ = number;
        keepInLine(number);
        tell(number);
    }
}

void clsTerminkalender::recordChanged(int32 number) {
    const auto held = weak_from_this().lock();
    if (number < 1) return;
    newRecords(number - 1);
    if (!db_) return;
    seen_ = std::max(seen_, number);
    // What nobody but we can have done changes nothing that is kept.
    const auto now = db_->Stand();
    if (now.changes == stand_.changes + (std::exchange(indexChanged_, false) ? 2 : 0)) stand_ = now;
    keepInLine(number);
    tell(number);
}

void clsTerminkalender::keepInLine(int32 number) {
    if (cache_.empty()) return;
    const Text key = db_->GetField(number, fields_[Rolle::schluessel]);
    auto emptied = cache_.end();
    for (auto entry = cache_.begin(); entry != cache_.end(); ++entry) {
        if (equalIgnoringCase(entry->key, key)) {
            if (!holds(entry->numbers, number)) entry->numbers.push_back(number);
        } else if (std::erase(entry->numbers, number) > 0 && entry->numbers.empty()) {
            emptied = entry;
        }
    }
    if (emptied != cache_.end()) cache_.erase(emptied);
}

void clsTerminkalender::tell(int32 number) {
    auto termin = live(number);
    if (!termin && storing_ && storing_->number_ == 0) {
        termin = storing_->shared_from_this();
        termin->number_ = number;
        live_[number] = termin;
    }
    if (!termin) termin = TerminAusSatz(number);
    if (!termin) return;
    const Holding holding(*this);
    termin->refresh();
    Change(termin);
}

void clsTerminkalender::dayChanged(int32 day) {
    if (!holds(changedDays_, day)) changedDays_.push_back(day);
    tellDays();
}

void clsTerminkalender::tellDays() {
    if (held_ > 0) return;
    for (const int32 day : std::exchange(changedDays_, {})) DayChanged(day);
}

}  // namespace tsRtm
