#pragma once
// What DatenTab and DatenVarTab have in common: rows in memory that live in a text file.
#include <memory>
#include <utility>
#include <vector>

#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class LineCode;
class TableFile;
enum class Holds : int32;
enum class TableLook : int32;

// Rows count from 1. What another process stores is seen after 4.32 seconds at most, with sync-always at
// once; it replaces the table, changes that are not stored yet included, and the last writer wins. Without a
// file name the table is in memory alone.
//
// Reading raises what GetContentAPI raises. A file that cannot be opened now leaves the table as it is, and F
// says why; a change of a table whose file cannot be read raises that number. Storing raises with the source
// ".SchreibDaten" behind the type name; the file is then as it was.
class TableBase {
 public:
    TableBase(const TableBase&) = delete;
    TableBase& operator=(const TableBase&) = delete;

    const Text& Datei() const noexcept;
    // Rows.
    int32 Count();
    // False when the file did not hold whole rows alone.
    bool Okay();
    // Whether there are changes to store; reading clears that, so that Commit finds none.
    bool Changed() noexcept { return std::exchange(changed_, false); }

    // Sensible (the default): old versions of the file are overwritten before they are deleted.
    bool Sensible() const noexcept;
    void Sensible(bool Value) noexcept;
    // Code page number that the file is written in; 0 until known, and then what the file has, or UTF-8.
    int32 Encoding() const noexcept;
    void Encoding(int32 Value) noexcept;
    // Cells are scrambled in the file: a character outside code page 1252 becomes "?".
    bool Encrypted() const noexcept { return encrypted_; }
    void Encrypted(bool Value) noexcept;

    // Empties the table; with Sync the file is deleted at once. The number of rows there were.
    int32 Clear(bool Sync = true);
    // Stores what has changed.
    void Commit() { write(); }
    void Signal() { Change(); }

    // After each change of the table, and after the file was read again.
    Event<> Change;

    bool IsAnsi = true;

 protected:
    explicit TableBase(TextView TypeName);
    virtual ~TableBase();
    // For the destructors of the tables: stores what has changed; a failure goes to the debug log.
    void writeAtTheEnd() noexcept;

    // For Init.
    void bind(TextView Datei, bool SyncAlways);
    void sync();
    void sync(TableLook how);
    // Raises where the file may not be written over.
    void beforeChange(TextView Operation);
    void afterChange();
    // Before a row is added or inserted: whether it is to be stored at once. The table is then up to date.
    bool beforeAdding(bool Sync, TextView Operation);
    // Puts a row behind the file's last one, where that can be done; else it is to be written as a whole.
    bool appended(TextView rowText);
    void write();

    bool bound() const noexcept;
    bool syncAlways() const noexcept;
    Text source(TextView Operation) const { return typeName_ + Text(Operation); }
    // Raises 380 for a text that a line of the file cannot hold.
    void needHeldText(TextView text, Holds what, TextView Operation) const;
    Text coded(TextView cell);
    Text decoded(TextView line);

    bool okay_ = true;
    bool changed_ = false;

 private:
    // Takes the lines of the file. Raises, and leaves the rows as they are, where they make no sense.
    virtual void load(const std::vector<Text>& lines) = 0;
    virtual int32 rows() const noexcept = 0;
    virtual void dropRows() noexcept = 0;
    virtual Text fileText() = 0;

    Text typeName_;
    std::unique_ptr<TableFile> file_;
    std::unique_ptr<LineCode> code_;
    bool encrypted_ = false;
};

}  // namespace tsRtm
