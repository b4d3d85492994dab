#pragma once
// A set of records: all of a database, the rows of a chain, or a selection.
#include <memory>
#include <vector>

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/database/clsTSRecord.hpp"
#include "tsRtm/database/iRecordChecker.hpp"

namespace tsRtm {

class ChainRowSet;
class MemoStores;
struct ChainRow;
class clsTSIndex;
class SelectedRecords;
class SetContent;
struct ChainRow;

// What a cell of a memo or blob is in a table of rows: the place of its text, as KetteLesen tells it, or the
// text.
enum class MemoCells { places, texts };

// Records have places from 1 in the set (FolgeNummer), and numbers: that of the record in the database, or,
// for a row of a chain, its place.
//
// A set holds its database open. It ends (Invalidated) when records get other numbers, or when the database
// is closed: then it is empty, and DB is nothing.
//
// A chain's rows are read at the first look, and changed in memory; Update lays what was changed, added and
// removed here over what others have made of the chain by then. Where somebody else touched the same row
// nothing is written: False, and Error of the database is 70. Rows of a record that is not stored yet are
// stored with it.
class clsTSRecordSet : public Object, public std::enable_shared_from_this<clsTSRecordSet> {
 public:
    // Made by clsTSDB::Records, clsTSRecord::Kette and the selecting operations.
    ~clsTSRecordSet() override;
    clsTSRecordSet(const clsTSRecordSet&) = delete;
    clsTSRecordSet& operator=(const clsTSRecordSet&) = delete;

    std::shared_ptr<clsTSDB> DB() const noexcept { return database_; }
    std::shared_ptr<clsControl> Control() const noexcept { return control_; }
    bool IsSelection() const noexcept { return selection_; }
    // Of a chain: the record that the rows belong to, and their field in it; else nothing and 0.
    std::shared_ptr<clsTSRecord> Parent() const noexcept { return parent_; }
    int32 KettenFeldNr() const noexcept { return chainField_; }
    Text Caption() const;
    void Caption(TextView value) { caption_ = value; }
    // Refuses writing through the set.
    bool ReadOnly() const noexcept { return readOnly_; }
    void ReadOnly(bool value) noexcept { readOnly_ = value; }
    int32 Count();
    // The numbers of all records, or of the rows of a chain, in the order of the set.
    std::vector<int32> Satznummern();

    // Of a chain alone, else they raise 5: all cells of all rows, both from 0 (assigned ones are stored by
    // Update; rows beyond those that there are come behind them, those that are missing go from the end), and
    // whether something is not stored.
    TextTable Inhalt(MemoCells memos = MemoCells::places);
    void Inhalt(const TextTable& value, MemoCells memos = MemoCells::places);
    bool Changed();
    // Raises 445: the fields of a row are those of Control.
    TSIOArray KetteTSIO() const;

    // Place of a record, 0 where it is none of the set.
    int32 FolgeNummer(const clsTSRecord& Record);
    // Nothing outside of the set, and, with Locked, where the lock was not won.
    std::shared_ptr<clsTSRecord> Record(int32 FolgeNummer, bool Locked = false);
    // The record with this serial number.
    std::shared_ptr<clsTSRecord> AutoRecord(TextView Autowert);
    // The deleted mark of a record, by its number; rows have none.
    bool Deleted(int32 SatzNr);
    void Deleted(int32 SatzNr, bool value);

    // A new record of the database, stored by its Update, or a row of the chain, in front of the others or
    // behind them. It belongs to a selection once it is stored.
    std::shared_ptr<clsTSRecord> Add(bool Vorneanhaengen = false);
    // Takes all rows out of a chain, or all records out of a selection (the records stay); how many. The set
    // of all records is left alone.
    int32 Clear();
    // The same with one. Raises 9 for a row that a chain has not.
    bool Remove(int32 SatzNr);
    // Puts records into a selection, each once: a set, a record, a number, or a list of these. How many were
    // new. Raises 5 on other sets.
    int32 AddRecords(const Variant& Records);
    // Stores what was changed in a chain; True on other sets, which have nothing to store.
    bool Update();

    // A cursor in the order of a field: by its index, or, in selections and chains, sorted in memory. 0 for
    // the order of the set. Each is one of its own. Nothing, and 53, where the database has no such index.
    std::shared_ptr<clsTSIndex> Index(int32 IndexFeld);
    // A cursor in the order of up to three fields, sorted in memory.
    std::shared_ptr<clsTSIndex> CreateIndex(int32 Feld1, int32 Feld2 = 0, int32 Feld3 = 0);

    // Selections of this set. Deleted records belong to them, unless the condition says no; it is asked when
    // all records were found. Start and Ende are texts of the field, both belong to the range; an Ende that
    // ends in the greatest character of the locale stands for all texts that begin so.
    std::shared_ptr<clsTSRecordSet> GetSelectedRecords(iRecordChecker* Condition);
    std::shared_ptr<clsTSRecordSet> GetRange(int32 Feld, TextView Start, TextView Ende,
                                             iRecordChecker* Condition = nullptr);
    // Always an empty selection, for AddRecords: there is no language of conditions, so no text takes any
    // record.
    std::shared_ptr<clsTSRecordSet> GetSelection(TextView Condition);

    // Asks for a cursor on a field that a listener holds; the listener puts it in.
    Event<int32, std::shared_ptr<clsTSIndex>&> HalloIndex;
    // The set has other records or rows.
    Event<> Change;
    // An index of the set was built anew.
    Event<> ChangedIndex;
    Event<> Invalidated;
    // A record of the set was written, locked, unlocked or deleted: its number.
    Event<int32> RecordChange;
    // An index of the database changed: its primary field.
    Event<int32> IndexChange;
    // A new record was stored: the number it had before, below 1, and its number now.
    Event<int32, int32> NewRecordNumber;

 private:
    friend class clsTSDB;
    friend class clsTSIndex;
    friend class clsTSRecord;

    explicit clsTSRecordSet(std::shared_ptr<clsTSDB> database);
    static std::shared_ptr<clsTSRecordSet> all(const std::shared_ptr<clsTSDB>& database);
    // `waiting`: rows of a record that is not stored yet, which nobody showed at the moment.
    static std::shared_ptr<clsTSRecordSet> chain(const std::shared_ptr<clsTSRecord>& parent, int32 field,
                                                 std::shared_ptr<ChainRowSet> waiting);
    std::shared_ptr<clsTSRecordSet> selected(const std::vector<int32>& numbers);
    std::shared_ptr<clsTSIndex> cursor(const std::vector<int32>& fields);
    SetContent& content();
    std::vector<int32> inRange(int32 field, TextView from, TextView to);
    std::shared_ptr<clsTSRecordSet> taken(std::vector<int32> numbers, iRecordChecker* condition);
    std::shared_ptr<clsTSRecord> recordOf(int32 number);
    std::shared_ptr<clsTSRecord> rowRecord(const std::shared_ptr<ChainRow>& row);
    int32 placeOfRow(const ChainRow& row);
    bool storeRows(const ChainRow* only);
    bool hasText(int32 field) const;
    Text rowText(const ChainRow& row, int32 field);
    MemoStores* memosOfRows() const;
    void needRows(TextView operation) const;
    bool loadRows();
    void rowsChanged();
    int32 addAll(const Variant& records);

    // What the database tells.
    void invalidate();
    void recordChanged(int32 number);
    void indexChanged(int32 field);
    void indexRebuilt(int32 field);
    void indexDropped(int32 field);
    void newNumber(int32 before, int32 number);
    void contentReplaced();
    std::vector<std::shared_ptr<clsTSIndex>> cursors();

    std::shared_ptr<clsTSDB> database_;
    std::shared_ptr<clsControl> control_;
    std::unique_ptr<SetContent> content_;
    std::shared_ptr<clsTSRecord> parent_;
    std::shared_ptr<ChainRowSet> rows_;       // of a chain
    std::shared_ptr<clsTSRecordSet> source_;  // of a selection of rows
    SelectedRecords* numbers_ = nullptr;      // of a selection of records: the content
    std::vector<std::weak_ptr<clsTSIndex>> cursors_;
    std::vector<int32> awaited_;  // numbers of new records that were added by this selection
    Text caption_;
    int32 chainField_ = 0;
    bool selection_ = false;
    bool readOnly_ = false;
    bool loaded_ = false;
};

}  // namespace tsRtm
