#pragma once
// One record apart from the cursor of its database: a private copy of the fields, with its own change and
// lock state.
#include <map>
#include <memory>

#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/types/Event.hpp"

namespace tsRtm {

class clsTSDB;
class RecordBuffer;
class RecordLayout;

// The fields are loaded from the file at the first read. Satznummer is 0 or below for a record that was not
// stored yet. The link to the database is weak: once that has gone, DB is nothing, reading gives what was
// loaded, writing and Update are refused. A lock that the record holds ends with it. Order of locks: the
// record first, then what Update takes.
class clsTSRecord {
 public:
    // Made by clsTSDB: Record, Add, Append, Finde.
    clsTSRecord(const std::shared_ptr<clsTSDB>& Database, int32 Satznummer);
    ~clsTSRecord();
    clsTSRecord(const clsTSRecord&) = delete;
    clsTSRecord& operator=(const clsTSRecord&) = delete;

    int32 Satznummer() const noexcept { return number_; }
    std::shared_ptr<clsTSDB> DB() const { return database_.lock(); }
    std::shared_ptr<clsControl> Control() const { return control_; }
    bool IsKetteRecord() const noexcept { return false; }
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
    bool Entsperren();
    bool Locked() const noexcept { return locked_; }
    void Locked(bool value) { value ? Sperren() : Entsperren(); }
    bool Deleted();
    void Deleted(bool value);

    // The record stands no longer for stored data.
    Event<> Invalidated;

 private:
    friend class clsTSDB;

    struct LazyMemo {
        Text text;
        bool assigned = false;
    };

    bool load();
    const Text& memo(int32 field);
    void invalidate();
    void structureChanged();
    void lockFlag(bool value) noexcept { locked_ = value; }
    void serialNumber(int32 value);

    std::weak_ptr<clsTSDB> database_;
    std::shared_ptr<clsControl> control_;
    const RecordLayout* layout_;  // of the database, while it lives
    int32 number_;
    std::unique_ptr<RecordBuffer> felder_;
    std::map<int32, LazyMemo> memos_;  // by field: those that were read or assigned
    Text shown_;
    int32 error_ = 0;
    int32 serial_ = 0;  // given out for this record, not stored yet
    bool loaded_ = false;
    bool changed_ = false;
    bool locked_ = false;
    bool readOnly_ = false;
    bool lockIsOurs_ = false;  // this object won the lock, and gives it back
    bool storeTried_ = false;  // the serial number may be in the file
};

}  // namespace tsRtm
