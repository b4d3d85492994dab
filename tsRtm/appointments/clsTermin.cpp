#include "tsRtm/appointments/clsTermin.hpp"

#include "tsRtm/appointments/keys/TerminKeys.hpp"
#include "tsRtm/appointments/keys/TerminTimes.hpp"
#include "tsRtm/calendar/clsDatum.hpp"
#include "tsRtm/database/clsTSDB.hpp"

namespace tsRtm {

using namespace appointments;

namespace {
using Rolle = TerminFelder;
}

clsTermin::clsTermin(std::shared_ptr<clsTSRecord> Record, const TerminFelder& Felder,
                     std::shared_ptr<iKalenderExtension> Extension)
    : record_(std::move(Record)), extension_(std::move(Extension)), fields_(Felder) {
    if (!record_) return;
    if (extension_) extension_->Record(record_);
    gone_ = record_->Invalidated.connect([this] {
        record_.reset();
        extension_.reset();
    });
}

tsRtm::Text clsTermin::ID() {
    if (!id_.empty() || !record_) return id_;
    if (fields_[Rolle::id] > 0)
        id_ = role(Rolle::id);
    else if (record_->Satznummer() >= 1)
        id_ = toText(record_->Satznummer());
    return id_;
}

tsRtm::Text clsTermin::Field(int32 Index) const {
    return record_ && Index > 0 ? record_->Fields(Index) : tsRtm::Text();
}

void clsTermin::Field(int32 Index, TextView value) {
    if (record_ && Index > 0) record_->Fields(Index, value);
}

void clsTermin::Reset() {
    if (record_) record_->Reset();
}

bool clsTermin::Update() {
    const auto record = record_;  // a listener may end this object
    if (!record || !record->Update()) return false;
    Change();
    return true;
}

bool clsTermin::Locked() const { return record_ && record_->Locked(); }
void clsTermin::Locked(bool value) {
    if (record_) record_->Locked(value);
}
bool clsTermin::Deleted() const { return record_ && record_->Deleted(); }
void clsTermin::Deleted(bool value) {
    if (record_) record_->Deleted(value);
}

bool clsTermin::ReadOnly() const {
    const auto db = record_ ? record_->DB() : nullptr;
    return !db || db->IsReadOnly() || (extension_ && extension_->ReadOnly());
}

// --- Duration and end: one field may stand for both

tsRtm::Text clsTermin::Dauer() const {
    return fields_[Rolle::dauer] > 0 ? role(Rolle::dauer)
                                     : timeBetween(Uhrzeitvon(), role(Rolle::uhrzeitBis));
}

void clsTermin::Dauer(TextView value) {
    if (fields_[Rolle::dauer] > 0) return role(Rolle::dauer, value);
    const auto end = timeAfter(Uhrzeitvon(), value);
    if (value.empty() || !end.empty()) role(Rolle::uhrzeitBis, end);
}

tsRtm::Text clsTermin::Uhrzeitbis() const {
    return fields_[Rolle::uhrzeitBis] > 0 ? role(Rolle::uhrzeitBis)
                                          : timeAfter(Uhrzeitvon(), role(Rolle::dauer));
}

void clsTermin::Uhrzeitbis(TextView value) {
    if (fields_[Rolle::uhrzeitBis] > 0) return role(Rolle::uhrzeitBis, value);
    const auto duration = timeBetween(Uhrzeitvon(), value);
    if (value.empty() || !duration.empty()) role(Rolle::dauer, duration);
}

int32 clsTermin::Prioritaet() const { return roundToInt32(Val(role(Rolle::prioritaet))); }
void clsTermin::Prioritaet(int32 value) { role(Rolle::prioritaet, toText(value)); }

int32 clsTermin::MinuteStart() const { return minutesOf(Uhrzeitvon()); }
int32 clsTermin::MinuteEnd() const { return minutesOf(Uhrzeitbis()); }
int32 clsTermin::MinuteDuration() const { return minutesOf(Dauer()); }

eTerminTypen clsTermin::SerienTyp() const { return kindOf(Termin()); }

// --- In words

tsRtm::Text clsTermin::What() const {
    const auto key = Termin();
    if (key.empty()) return {};
    auto words = wordsOf(key);
    const auto add = [&words](TextView before, const tsRtm::Text& value, TextView after = {}) {
        if (!value.empty()) ((words += before) += value) += after;
    };
    add(u" um ", Uhrzeitvon(), u" Uhr");
    add(u" bis ", Uhrzeitbis(), u" Uhr");
    if (key.front() == u'*' || key.front() == u'+' || key.back() == u'+') {
        const clsDatum calendar;
        add(u" beginnend am ", calendar.DateTo8(DatumVon()));
        add(u" bis zum ", calendar.DateTo8(DatumBis()));
    }
    return words;
}

tsRtm::Text clsTermin::Text(eKalenderAnzeigen Typ) const {
    tsRtm::Text text;
    if (Typ == WochenAnsicht || Typ == MonatsAnsicht || Typ == WochenDruck || Typ == MonatsDruck) {
        text = Uhrzeitvon();
        if (MinuteDuration() > 0) text += u"-" + Uhrzeitbis();
        if (!text.empty()) text += u" ";
    }
    if (Typ != JahresAnsicht) text += Betreff();
    auto own = extension_ ? extension_->Text(Typ, text) : tsRtm::Text();
    return own.empty() ? text : own;
}

tsRtm::Text clsTermin::Title(eKalenderAnzeigen Typ) const {
    return extension_ ? extension_->Title(Typ) : tsRtm::Text();
}

}  // namespace tsRtm
