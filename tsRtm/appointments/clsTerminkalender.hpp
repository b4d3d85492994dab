#pragma once
// A calendar: appointments in a database, and what is due on a day.
//
//     const auto kalender = std::make_shared<clsTerminkalender>();
//     if (kalender->Init(u"/daten/Termine")) {
//         const auto neu = kalender->Add(kalender->CreateKey(u"MO2"), u"", u"10:00", u"01:00",
//         u"Besprechung"); neu->Update(); for (int32 i = 1; i <= kalender->Termine(u"11.11.2024")->Count();
//         ++i) ...
//     }
//
// Each appointment has a key (keys/TerminKeys.hpp tells them), a date has all keys that are due on it, and so
// a day's appointments are a few ranges of an index, and the series that count from a start. Several programs
// share a store: changes made here are told at once, those of others are seen when CheckDB looks, which every
// query and Add does first.
#include <chrono>
#include <unordered_map>

#include "tsRtm/appointments/clsTermine.hpp"
#include "tsRtm/appointments/iKalenderExtender.hpp"
#include "tsRtm/database/DatabasesTopic.hpp"
#include "tsRtm/database/iRecordChecker.hpp"

namespace tsRtm {

namespace appointments {
struct Day;
}

// Without a database every operation gives nothing or False. Lives in a std::shared_ptr; its appointments and
// lists keep it alive. Not thread-safe.
class clsTerminkalender : public iRecordChecker, public std::enable_shared_from_this<clsTerminkalender> {
 public:
    clsTerminkalender();
    ~clsTerminkalender() override;
    clsTerminkalender(const clsTerminkalender&) = delete;
    clsTerminkalender& operator=(const clsTerminkalender&) = delete;

    // Opens a store, or makes one where there is none and DoCreate says so. False without a store; where it
    // could not be made the user was told.
    bool Init(TextView DBName, std::shared_ptr<iKalenderExtender> Extender = nullptr, bool Cachable = true,
              bool DoCreate = true);
    // Whether what was found is kept in memory.
    bool Cachable() const noexcept { return cachable_; }
    void Cachable(bool value);
    // Forgets it; needed only where records change without a notice.
    void ClearCache() { cache_.clear(); }
    std::shared_ptr<clsTSDB> DB() const { return db_; }
    // Another store: DBChange is told, and all appointments of the former one let go. One without a field for
    // keys is taken for none.
    void DB(std::shared_ptr<clsTSDB> value);
    std::shared_ptr<iKalenderExtender> Extender() const { return extender_; }
    void Extender(std::shared_ptr<iKalenderExtender> value) { extender_ = std::move(value); }
    bool IsReadOnly() const { return !db_ || db_->IsReadOnly(); }
    const TerminFelder& FeldNummern() const noexcept { return fields_; }

    // A new appointment, not stored before its Update. An empty Key is made from Datum. Nothing for a key
    // that is none, and in a store that is read only.
    std::shared_ptr<clsTermin> Add(TextView Key, TextView Datum, TextView Zeit, TextView Dauer,
                                   TextView Betreff, TextView DatumVon = {}, TextView DatumBis = {});
    // What is due on a date, today for an empty one. Extent is the extender's to judge by.
    std::shared_ptr<clsTermine> Termine(TextView Datum = {}, TextView Extent = {});
    // The appointments of a range of an index, in the order of their times; an empty Bis is its end.
    std::shared_ptr<clsTermine> Selection(int32 IndexFeld, TextView Von, TextView Bis,
                                          iRecordChecker* Checker = nullptr);
    // As the condition of a range: whether a record counts on the day, and in the Extent, that Termine was
    // asked last: not deleted, valid, and if it counts from a start also due. Not before the first question.
    bool Okay(const std::shared_ptr<clsTSRecord>& R) override;
    // By its id, or by the number of its record where the store has no ids. FindTermin finds only one that
    // somebody holds.
    std::shared_ptr<clsTermin> Termin(TextView ID);
    std::shared_ptr<clsTermin> FindTermin(TextView ID);
    std::shared_ptr<clsTermin> TerminAusSatz(int32 Satznummer);

    // All keys that are due on a date; a key in words; the key for what a user typed (TerminKeys.hpp).
    tsRtm::Text DateKeys(TextView Datum) const;
    tsRtm::Text What(TextView Key) const;
    tsRtm::Text CreateKey(TextView A) const;

    // Looks for what others have done: new records are told as changed; where records were changed nothing
    // kept in memory counts any more, and lists are asked anew. Always False: nobody asks for the answer.
    bool CheckDB();

    Event<> DBChange;
    Event<> Created;  // a store was made
    Event<const std::shared_ptr<clsTermin>&> Change;
    Event<int32> DayChanged;  // by its Julian number
    // For the calendar's own use: who holds the appointment of that id, or record, puts it in.
    Event<TextView, std::shared_ptr<clsTermin>&> HalloTermin;
    Event<int32, std::shared_ptr<clsTermin>&> HalloTerminRec;

 private:
    friend class clsTermin;
    friend class clsTermine;

    struct Cached {
        tsRtm::Text key;
        std::vector<int32> numbers;
        std::chrono::nanoseconds since;
    };
    // While one lives DayChanged waits.
    class Holding {
     public:
        explicit Holding(clsTerminkalender& calendar) : calendar_(calendar) { ++calendar_.held_; }
        ~Holding() {
            --calendar_.held_;
            calendar_.tellDays();
        }
        Holding(const Holding&) = delete;
        Holding& operator=(const Holding&) = delete;

     private:
        clsTerminkalender& calendar_;
    };

    bool create(TextView name);
    std::vector<int32> due(int32 day, TextView extent);
    const std::vector<int32>& range(const tsRtm::Text& key, std::vector<int32>& room);
    bool isDue(int32 number, const appointments::Day& day, TextView key, TextView extent);
    bool belongs(const clsTermin& termin, int32 day, TextView extent);
    std::shared_ptr<clsTermin> live(int32 number);
    void recordChanged(int32 number);
    void tell(int32 number);
    void keepInLine(int32 number);
    void newRecords(int32 upTo);
    void dayChanged(int32 day);
    void tellDays();
    void letGo();

    std::unique_ptr<MessagesTopic> messages_;
    std::unique_ptr<FilesTopic> files_;
    DatabasesTopic databases_;
    std::shared_ptr<clsTSDB> db_;
    std::shared_ptr<iKalenderExtender> extender_;
    TerminFelder fields_;
    bool cachable_ = true;
    int32 seen_ = 0;    // records at the last look
    Datenstand stand_;  // at the last look, or after our own last write
    bool indexChanged_ = false;
    int32 asked_ = 0;  // the day that was asked last, and the extent
    tsRtm::Text askedExtent_;
    std::vector<Cached> cache_;
    std::unordered_map<int32, std::weak_ptr<clsTermin>> live_;  // by record
    clsTermin* storing_ = nullptr;
    int32 held_ = 0;  // DayChanged is held back
    std::vector<int32> changedDays_;
    Event<> stale_;  // others have changed records
    Subscription written_, indexWritten_, packed_, letGo_, answerId_, answerNumber_;
};

}  // namespace tsRtm
