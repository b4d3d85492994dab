#pragma once
// One record apart from the cursor of its database: a private copy of the fields, with its own change and
// lock state.
#include <map>
#include <memory>
#include <vector>

#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/database/iPropertyTarget.hpp"
#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class clsTSDB;
class clsTSRecordSet;
class ChainRowSet;
class DatenTab;
class RecordBuffer;
class RecordLayout;
struct ChainRow;
struct RecordProperty;

// The fields are loaded from the file at the first read; where that fails they are empty, the database has
// the error, and what is assigned then is refused: Update fails with 70 until Reset. Satznummer is 0 or below
// for a record that was not stored yet. The link to the database is weak: once that has gone, DB is nothing,
// fields are empty, writing and Update are refused. A lock that the record has won ends with it. Order of
// locks: the record first, then what Update takes.
//
// There is one object for a stored record as long as somebody holds it, save for its WorkCopies; a change of
// the record shows in it at the next read, unless it has changes of its own. Update lays only what was
// assigned here over the record that stands in the file by then.
//
// As a row of a chain it has a set as its Parent, and its place there as its number; it cannot be locked or
// marked as deleted, and Update stores it into the chain, the texts of its memos with it.
class clsTSRecord : public Object, public std::enable_shared_from_this<clsTSRecord> {
 public:
    // Made by clsTSDB (Record, Add, Append, Finde) and by sets and cursors.
    clsTSRecord(const std::shared_ptr<clsTSDB>& Database, int32 Satznummer);
    ~clsTSRecord() override;
    clsTSRecord(const clsTSRecord&) = delete;
    clsTSRecord& operator=(const clsTSRecord&) = delete;

    int32 Satznummer() const;
    std::shared_ptr<clsTSDB> DB() const { return database_.lock(); }
    std::shared_ptr<clsControl> Control() const { return control_; }
    bool IsKetteRecord() const noexcept { return row_ != nullptr; }
    // Of a row; else nothing.
    std::shared_ptr<clsTSRecordSet> Parent() const noexcept { return parent_; }
    // The rows that the record has in a chain field: one set, as long as somebody holds it. Those that are
    // added to a new record are stored with it. Nothing, and error 53, where the field has no rows.
    std::shared_ptr<clsTSRecordSet> Kette(int32 FeldNr);
    // A field was written since the last store.
    bool Changed() const noexcept { return changed_; }
    void Changed(bool value) noexcept { changed_ = value; }
    bool ReadOnly() const noexcept { return readOnly_; }
    void ReadOnly(bool value) noexcept { readOnly_ = value; }

    // Field 0 is the deleted mark; outside of the fields empty. Numbers with decimals come in the form of the
    // locale. An empty serial number of a stored record shows the record number.
    const Text& Fields(int32 Index);
    void Fields(int32 Index, TextView Inhalt);
    // By the name of the field, without regard to case; empty or without effect for an unknown one.
    const Text& NamedField(TextView Feldname);
    void NamedField(TextView Feldname, TextView Inhalt);
    bool IsEmpty(int32 Index);
    // The field that names this value object, with this index.
    const Text& Value(TextView ValueName, int32 Index = 0);
    // Sets all properties of the object that fields name; False where none was set.
    bool GetObject(TextView ObjectName, iPropertyTarget& This, int32 Index = 0);

    // Named texts in the property memo of the database: found without regard to case, empty where there is
    // none. Those that were set are stored by Update beside what others have set meanwhile; a whole text that
    // is assigned to the memo's field takes the place of all. Raises 380 for an empty key, "=" or a line
    // break in it, and for a line break in the value.
    Text Property(TextView Key);
    void Property(TextView Key, TextView Wert);
    // A copy of all of them: key and value.
    std::shared_ptr<DatenTab> Properties();

    // Stores the record; a new one gets its number. False where it could not be stored: Error then tells the
    // number that the database gave, until the next Update.
    bool Update();
    int32 Error() const noexcept { return error_; }
    // Drops what was loaded and written: the next read takes it from the file. A lock stays.
    void Reset();
    // Another object on the same stored record, that nobody is told of. Nothing for a new record.
    std::shared_ptr<clsTSRecord> WorkCopy() const;

    // Wins the lock: shows from then on what the file has, so that unsaved changes are lost. True on a record
    // locked already; a record without a number is Locked without a lock, and the result is False.
    bool Sperren(int32 Warten = 0);
    // Gives back the lock that this object has won; who else holds it keeps it.
    bool Entsperren();
    bool Locked() const noexcept { return locked_; }
    void Locked(bool value) { value ? Sperren() : Entsperren(); }
    bool Deleted();
    void Deleted(bool value);

    // The record stands no longer for stored data.
    Event<> Invalidated;

 private:
    friend class clsTSDB;
    friend class clsTSIndex;
    friend class clsTSRecordSet;

    struct LazyMemo {
        Text text;
        bool assigned = false;
    };
    struct Rows {
        std::weak_ptr<clsTSRecordSet> set;
        std::shared_ptr<ChainRowSet> waiting;  // for the record to be stored
    };

    clsTSRecord(std::shared_ptr<clsTSRecordSet> Parent, std::shared_ptr<ChainRow> Row);
    bool storeRow(clsTSDB& database);
    void forgetChanges();

    bool load();
    bool takesAssignment();
    const Text& memo(int32 field);
    void invalidate();
    void stored(clsTSDB& database, int32 number);
    void structureChanged();
    void lockFlag(bool value) noexcept { locked_ = value; }
    void serialNumber(int32 value);

    std::weak_ptr<clsTSDB> database_;
    std::shared_ptr<clsControl> control_;
    const RecordLayout* layout_;  // of the database or the chain, while it lives
    int32 number_;
    std::unique_ptr<RecordBuffer> felder_;
    std::map<int32, LazyMemo> memos_;         // by field: those that were read or assigned
    std::vector<RecordProperty> properties_;  // that were set
    std::map<int32, Rows> chains_;            // by field
    std::shared_ptr<clsTSRecordSet> parent_;
    std::shared_ptr<ChainRow> row_;
    Text shown_;
    int32 error_ = 0;
    int32 serial_ = 0;  // given out for this record, not stored yet
    std::size_t livePlace_ = 0;
    bool loaded_ = false;
    bool changed_ = false;
    bool locked_ = false;
    bool readOnly_ = false;
    bool unread_ = false;      // something was assigned while the record could not be read
    bool storeTried_ = false;  // the serial number may be in the file
};

}  // namespace tsRtm
