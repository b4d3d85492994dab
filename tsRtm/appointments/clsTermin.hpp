#pragma once
// One appointment: a record of an appointment store, by the roles of its fields.
#include "tsRtm/appointments/TerminFelder.hpp"
#include "tsRtm/appointments/iKalenderExtension.hpp"

namespace tsRtm {

class clsTerminkalender;

// What a store's layout lacks reads empty and takes nothing. A store has a duration, an end, or both: what is
// missing is reckoned from the start. Once the record has gone with its database, all reads empty, and
// nothing raises. Dates are local ones, times have the marks of TerminTimes.
class clsTermin : public std::enable_shared_from_this<clsTermin> {
 public:
    clsTermin(std::shared_ptr<clsTSRecord> Record, const TerminFelder& Felder,
              std::shared_ptr<iKalenderExtension> Extension = nullptr);
    clsTermin(const clsTermin&) = delete;
    clsTermin& operator=(const clsTermin&) = delete;

    // Free for the caller.
    int32 LongTag = 0;
    tsRtm::Text StringTag;

    std::shared_ptr<clsTerminkalender> Terminkalender() const { return calendar_; }
    std::shared_ptr<iKalenderExtension> EXTENSION() const { return extension_; }
    std::shared_ptr<clsTSRecord> Record() const { return record_; }
    // The field of that role, else the record number; kept once it is known. Empty for a new record.
    tsRtm::Text ID();
    // Position in a list, set by the list.
    int32 Index() const noexcept { return index_; }
    void Index(int32 value) noexcept { index_ = value; }

    // A field by its number in the record.
    tsRtm::Text Field(int32 Index) const;
    void Field(int32 Index, TextView value);
    void Reset();
    // Stores the record, by which lists hear of it; then Change is raised.
    bool Update();
    bool Locked() const;
    void Locked(bool value);
    bool Deleted() const;
    void Deleted(bool value);
    // The database's, else the extension's; true without a database.
    bool ReadOnly() const;

    // The key: when it is due.
    tsRtm::Text Termin() const { return role(TerminFelder::schluessel); }
    void Termin(TextView value) { role(TerminFelder::schluessel, value); }
    tsRtm::Text Datum() const { return role(TerminFelder::tag); }
    void Datum(TextView value) { role(TerminFelder::tag, value); }
    tsRtm::Text DatumVon() const { return role(TerminFelder::gueltigAb); }
    void DatumVon(TextView value) { role(TerminFelder::gueltigAb, value); }
    tsRtm::Text DatumBis() const { return role(TerminFelder::gueltigBis); }
    void DatumBis(TextView value) { role(TerminFelder::gueltigBis, value); }
    tsRtm::Text Uhrzeitvon() const { return role(TerminFelder::uhrzeitVon); }
    void Uhrzeitvon(TextView value) { role(TerminFelder::uhrzeitVon, value); }
    // Hours and minutes. Where it has to be turned into the other of the two, a value that is no time changes
    // nothing, and neither does any without a start; an empty one clears.
    tsRtm::Text Uhrzeitbis() const;
    void Uhrzeitbis(TextView value);
    tsRtm::Text Dauer() const;
    void Dauer(TextView value);
    tsRtm::Text Betreff() const { return role(TerminFelder::betreff); }
    void Betreff(TextView value) { role(TerminFelder::betreff, value); }
    tsRtm::Text Ort() const { return role(TerminFelder::ort); }
    void Ort(TextView value) { role(TerminFelder::ort, value); }
    tsRtm::Text Memo() const { return role(TerminFelder::memo); }
    void Memo(TextView value) { role(TerminFelder::memo, value); }
    int32 Prioritaet() const;
    void Prioritaet(int32 value);

    // Minutes since midnight, and so many; 0 for an empty time.
    int32 MinuteStart() const;
    int32 MinuteEnd() const;
    int32 MinuteDuration() const;
    // Without a start: of the whole day.
    bool Tagestermin() const { return Uhrzeitvon().empty(); }
    eTerminTypen SerienTyp() const;

    // "jeden Montag um 10:00 Uhr bis 11:00 Uhr beginnend am 01.01.2024"; empty without a key. One date has no
    // words, so the text then begins with the blank of " um ".
    tsRtm::Text What() const;
    // Subject, with the times in front where a view has no place for them; what the extension says of it
    // wins.
    tsRtm::Text Text(eKalenderAnzeigen Typ) const;
    tsRtm::Text Title(eKalenderAnzeigen Typ) const;
    // Of the extension; -1 and no pictures without one.
    int32 ForeColor() const { return color(ceForeColor); }
    int32 BackColor() const { return color(ceBackColor); }
    int32 BorderColor() const { return color(ceBorderColor); }
    int32 TaskColor() const { return color(ceTaskColor); }
    eTerminIcons Icons() const { return extension_ ? extension_->Icons() : tiNone; }
    int32 ExtraIcon(int32 /*Index*/) const noexcept { return 0; }

    // The record was stored.
    Event<> Change;

 private:
    friend class clsTerminkalender;
    friend class clsTermine;
    class Storing;

    // Of a calendar, until that gives its database up.
    void belongTo(const std::shared_ptr<clsTerminkalender>& calendar, int32 number);
    void extend(std::shared_ptr<iKalenderExtension> extension);
    void letGo();
    // The record was written, here or by others; what was assigned and not stored stays.
    void refresh();
    void readAnew();

    tsRtm::Text role(TerminFelder::Rolle role) const { return Field(fields_[role]); }
    void role(TerminFelder::Rolle role, TextView value) { Field(fields_[role], value); }
    int32 color(eColorElement element) const { return extension_ ? extension_->DisplayColor(element) : -1; }

    std::shared_ptr<clsTerminkalender> calendar_;
    std::shared_ptr<clsTSRecord> record_;
    std::shared_ptr<iKalenderExtension> extension_;
    TerminFelder fields_;
    tsRtm::Text id_;
    int32 index_ = 0;
    int32 number_ = 0;  // of the record, once the calendar knows it
    bool storing_ = false;
    Subscription gone_;        // the record has
    Subscription otherStore_;  // the calendar gives its database up
};

}  // namespace tsRtm
