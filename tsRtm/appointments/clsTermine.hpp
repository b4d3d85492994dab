#pragma once
// Appointments in the order of their times: those of a day, or of a selection. Keeps itself up to date.
#include <memory>
#include <vector>

#include "tsRtm/appointments/clsTermin.hpp"
#include "tsRtm/tables/iSortHelper.hpp"

namespace tsRtm {

class clsTSRecordSet;
class clsTerminkalender;

enum eChangeAction : int32 { caChange = 0, caAdd = 1, caRemove = 2, caClear = 3 };

// Made by a clsTerminkalender. Appointments without a time come first. What happens to one of a day's list is
// told by Change, and then by the calendar's DayChanged. Empty once the calendar has another store.
class clsTermine : private iSortHelper, public std::enable_shared_from_this<clsTermine> {
 public:
    // Of the records with these numbers. Keys are those of the day, by its Julian number; both are empty for
    // a selection.
    clsTermine(std::shared_ptr<clsTerminkalender> Kalender, const std::vector<int32>& Satznummern,
               tsRtm::Text Keys = {}, int32 Tag = 0, TextView Extent = {});
    ~clsTermine() override;
    clsTermine(const clsTermine&) = delete;
    clsTermine& operator=(const clsTermine&) = delete;

    std::shared_ptr<clsTerminkalender> Terminkalender() const { return calendar_; }
    int32 Count() const noexcept { return static_cast<int32>(entries_.size()); }
    // From 1; nothing outside.
    std::shared_ptr<clsTermin> Item(int32 Index) const;
    std::shared_ptr<clsTermin> ItemByID(TextView ID) const;
    // A new set of the records of all, in this order; nothing without a store.
    std::shared_ptr<clsTSRecordSet> Records() const;

    // What happened to which appointment; caClear has none.
    Event<eChangeAction, const std::shared_ptr<clsTermin>&> Change;

 private:
    void Suchbegriff(const Variant&) override {}
    eCompareResults Compare(int32 Vergleich, int32 Pivot, eCompareMethod PivotNeu, Variant& Zusatz) override;
    void Swap(int32 v1, int32 v2, Variant& Zusatz) override;

    void sort();
    void changed(const std::shared_ptr<clsTermin>& termin);
    void tell(eChangeAction action, const std::shared_ptr<clsTermin>& termin);
    void askAnew();
    void clear();
    int32 positionOf(const clsTermin& termin) const;

    std::shared_ptr<clsTerminkalender> calendar_;
    tsRtm::Text keys_;
    int32 day_;
    tsRtm::Text extent_;
    std::vector<std::shared_ptr<clsTermin>> entries_;
    std::vector<int32> times_;  // minutes, beside the entries
    int32 pivot_ = 0;           // minutes of the element that is compared with
    Subscription change_, stale_, otherStore_;
};

}  // namespace tsRtm
