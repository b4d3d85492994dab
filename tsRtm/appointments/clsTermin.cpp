#include "tsRtm/appointments/clsTermin.hpp"

#include "tsRtm/appointments/clsTerminkalender.hpp"
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
        const auto held = weak_from_this().lock();
        letGo();
    });
}

void clsTermin::letGo() {
    record_.reset();
    extension_.reset();
    calendar_.reset();
    otherStore_.end();
}

void clsTermin::belongTo(const std::shared_ptr<clsTerminkalender>& calendar, int32 number) {
    calendar_ = calendar;
    number_ = number;
    otherStore_ = calendar->DBChange.connect([this] {
        const auto held = shared_from_this();
        letGo();
    });
}

void clsTermin::extend(std::shared_ptr<iKalenderExtension> extension) {
    extension_ = std::move(extension);
    if (extension_) extension_->Record(record_);
}

void clsTermin::readAnew() {
    if (record_ && record_->Satznummer() > 0 && !record_->Changed()) record_->Reset();
}

void clsTermin::refresh() {
    if (storing_) return;  // Update tells it itself
    readAnew();
    Change();
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

// While it is stored, so that the notice of its record finds it though it has no number yet.
class clsTermin::Storing {
 public:
    Storing(clsTermin& termin, clsTerminkalender* calendar) : termin_(termin), calendar_(calendar) {
        termin_.storing_ = true;
        if (calendar_) calendar_->storing_ = &termin_;
    }
    ~Storing() {
        termin_.storing_ = false;
        if (calendar_) calendar_->storing_ = nullptr;
    }
    Storing(const Storing&) = delete;
    Storing& operator=(const Storing&) = delete;

 private:
    clsTermin& termin_;
    clsTerminkalender* calendar_;
};

bool clsTermin::Update() {
    // A listener may end this object.
    const auto held = weak_from_this().lock();
    const auto record = record_;
    if (!record) return false;
    const auto calendar = calendar_;
    bool stored = false;
    {
        const Storing storing(*this, calendar.get());
        stored = record->Update();
    }
    if (stored) Change();
    return stored;
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
