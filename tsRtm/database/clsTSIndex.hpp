#pragma once
// A cursor over a set of records in some order.
#include <array>
#include <memory>

#include "tsRtm/database/clsTSRecordSet.hpp"

namespace tsRtm {

class IndexKeys;
class KeyRange;
class ListedOrder;

// It keeps a position (LogSatz, from 1) and the number of the record there, apart from the cursor of the
// database and from other cursors. Where others have moved or added records meanwhile a step goes on from
// where that record is now. A new cursor stands before the first record.
//
// The cursor holds its set. When the set or its index ends, Invalidated is told: moves and searches give
// nothing then, and ActionLoop raises 91. Damage of an index raises as in clsTSDB.
class clsTSIndex : public Object, public std::enable_shared_from_this<clsTSIndex> {
 public:
    // Made by clsTSRecordSet: Index, CreateIndex.
    ~clsTSIndex() override;
    clsTSIndex(const clsTSIndex&) = delete;
    clsTSIndex& operator=(const clsTSIndex&) = delete;

    std::shared_ptr<clsTSDB> DB() const { return set_ ? set_->DB() : nullptr; }
    std::shared_ptr<clsTSRecordSet> RecordSet() const noexcept { return set_; }
    // Of the first field; the set's where there is none.
    Text Caption() const;
    // The fields of the order, from 1; 0 for none.
    int32 IndexFeld() const noexcept { return fields_[0]; }
    int32 IndexFelder(int32 Index) const noexcept;
    // Position 1 is the last record then.
    bool Descending() const noexcept { return descending_; }
    void Descending(bool value);
    int32 Count();
    // Sorts anew: in memory, or the index of the database (clsTSDB::Sort).
    void Rebuild();

    int32 LogSatz() const noexcept { return position_; }
    // Stands on a position: 0 before the first, Count + 1 behind the last.
    void LogSatz(int32 value);
    // Record number, 0 where it stands on none.
    int32 AktSatzNr() const noexcept { return number_; }
    // Stands on that record, if it is one of the set.
    void AktSatzNr(int32 value);
    bool BOFile() const noexcept { return viewed_ < 2; }
    bool EOFile() const noexcept { return viewed_ > seen_; }

    // The record at a position, of the current one for -1. Satznummer raises 9 for a position that there is
    // not; Record gives nothing.
    int32 Satznummer(int32 LogSatz = -1);
    std::shared_ptr<clsTSRecord> Record(int32 LogSatz = -1, bool Locked = false);
    // Nothing behind the last and before the first one.
    std::shared_ptr<clsTSRecord> MoveFirst();
    std::shared_ptr<clsTSRecord> MoveNext();
    std::shared_ptr<clsTSRecord> MovePrevious();
    std::shared_ptr<clsTSRecord> MoveLast();
    // Stands on the first record in the order of the index whose key is not below; nothing behind the last.
    std::shared_ptr<clsTSRecord> MoveTo(TextView Suchbegriff, TextView Such2 = {}, TextView Such3 = {});
    // A record whose fields are exactly these, as many as are given; else nothing, and the cursor stays.
    std::shared_ptr<clsTSRecord> FindRecord(TextView Suchbegriff, TextView Such2 = {}, TextView Such3 = {},
                                            bool Locked = false, bool IncludeDeleted = false);
    // Searches the text in the records without regard to case, from behind the current one around to it.
    std::shared_ptr<clsTSRecord> Finde(TextView Suchtext);

    // Calls Action for each record whose key is between Von and all that begin with Bis, deleted ones with
    // Alle only. Each is visited once, in the order of the cursor, as it was when the loop began; one that
    // has left the range meanwhile is passed over. With DoUpdate each is locked before, and stored and
    // unlocked behind Action; where the lock is not to be had ActionLocked decides. Raises 91 where the
    // cursor has ended, 70 on a set that is read only with DoUpdate.
    void ActionLoop(TextView Von, TextView Bis, bool Alle, Variant& Zusatz, bool DoUpdate = false);
    // Set by a handler: ends the loop before the next record.
    bool CancelAction() const noexcept { return cancel_; }
    void CancelAction(bool value) noexcept { cancel_ = value; }

    // The order has changed.
    Event<> Changed;
    Event<> Invalidated;
    Event<Variant&> ActionStart;
    Event<const std::shared_ptr<clsTSRecord>&, Variant&> Action;
    // A record is locked by somebody else. At first AskUser, and AskUserAgain when it was tried again.
    Event<const std::shared_ptr<clsTSRecord>&, Variant&, eLockedAction&> ActionLocked;
    Event<> ActionEnd;

 private:
    friend class clsTSRecordSet;

    clsTSIndex(std::shared_ptr<clsTSRecordSet> set, const std::vector<int32>& fields, bool shared);
    class Loop;
    struct Place {
        int32 number;
        int32 position;  // in the direction of the cursor
    };
    // Of a range, or from one position to another one, in the direction of the cursor.
    std::vector<Place> places(const KeyRange* range, int32 first, int32 last);
    template <class Look>
    void look(Look look);
    const IndexKeys& keys();
    int32 sharedNumber() const;
    ListedOrder& list();
    int32 mirrored(int32 position, int32 total) const noexcept {
        return descending_ ? total + 1 - position : position;
    }
    int32 numberAt(int32 position);
    void stand(int32 position, int32 number, int32 total);
    std::shared_ptr<clsTSRecord> step(int32 by);
    std::shared_ptr<clsTSRecord> standOnEnd(bool first);
    std::shared_ptr<clsTSRecord> shown();
    void stale();
    void end();

    std::shared_ptr<clsTSRecordSet> set_;
    std::array<int32, 3> fields_{};
    std::unique_ptr<IndexKeys> keys_;    // where no index of the database serves
    std::unique_ptr<ListedOrder> list_;  // sorted at the first look
    int32 number_ = 0;
    int32 position_ = 0;  // in the direction of the cursor
    int32 viewed_ = 0;    // as the last move left it
    int32 seen_ = 0;      // records at that move
    bool shared_;
    bool descending_ = false;
    bool cancel_ = false;
};

}  // namespace tsRtm
