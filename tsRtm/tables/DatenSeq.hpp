#pragma once
// A list of lines that lives in a text file.
//
//     DatenSeq list;
//     list.Init(u"Zuletzt.txt", 0, u"", true);   // every change is stored at once
//     list.Add(u"Müller");
//     for (int32 i = 1; i <= list.Count(); ++i) use(list.Item(i));
#include <memory>
#include <vector>

#include "tsRtm/types/Event.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

class LineCode;
class TableFile;
enum class TableLook : int32;

// Lines count from 1. What another process stores is seen after 4.32 seconds at most, with sync-always at
// once; it replaces the list, changes that are not stored yet included, and the last writer wins. Without a
// file name the list is in memory alone.
//
// Failures of reading and writing the file are raised as GetContentAPI and PutContentAPI do; the file is then
// as it was. A file that cannot be opened now leaves the list as it is, and F says why; what would write over
// such a file raises that number. A text that a line of the file cannot hold, with a line break or the old
// end-of-file mark (code 26), raises 380 unless the lines are encrypted or there is no file. A bad index is
// no failure.
class DatenSeq {
 public:
    DatenSeq();
    // Stores what has changed since the last time; a failure goes to the debug log.
    ~DatenSeq();
    DatenSeq(const DatenSeq&) = delete;
    DatenSeq& operator=(const DatenSeq&) = delete;

    // MaxItems 0: no limit. Maske, UseWriteMethod and WriteMethodForInputOnly are kept and have no effect.
    void Init(TextView Datei, int32 MaxItems = 0, TextView Maske = {}, bool SyncAlways = false,
              bool UseWriteMethod = false, bool WriteMethodForInputOnly = false);

    const Text& Datei() const noexcept;
    int32 MaxItems() const noexcept { return maxItems_; }
    const Text& Maske() const noexcept { return mask_; }

    // Sensible (the default): old versions of the file are overwritten before they are deleted.
    bool Sensible() const noexcept;
    void Sensible(bool Value) noexcept;
    // Code page number; 0 until the file is known. A file that is there keeps its own.
    int32 Encoding() const noexcept;
    void Encoding(int32 Value) noexcept;
    // Lines are scrambled in the file: a character outside code page 1252 becomes "?".
    bool Encrypted() const noexcept { return encrypted_; }
    void Encrypted(bool Value) noexcept;
    // There is something to store. Stays set after storing, until the program clears it.
    bool Dirty() const noexcept { return dirty_; }
    void Dirty(bool Value) noexcept { dirty_ = pending_ = Value; }

    // Whether the file is missing; without a file name, whether there is no line.
    bool IsEmpty();
    // MaxItems where that is set, whatever the list holds.
    int32 Count();
    Text Item(int32 Index);
    // An index behind the end makes the list longer; with a limit, one above it does nothing. Raises 9 for an
    // index that no file could have, 7 where the memory does not suffice.
    void Item(int32 Index, TextView Value);
    // The number of the new line; 0 where the limit is reached.
    int32 Add(TextView Value);
    // In front of a line that is there. The index, or 0.
    int32 Insert(int32 Index, TextView Value);
    // The line that was removed.
    Text Remove(int32 Index);
    // Empties the list and deletes the file.
    void Clear();
    // Stores the list where it is Dirty.
    void Commit();

    // Turns a file that is in the DOS code page to 1252, once. Nothing calls it by itself, and it does
    // nothing while IsAnsi is true.
    void MigrateToAnsi();

    // After each change of the list, and after the file was read again.
    Event<> Change;

    bool IsAnsi = true;

 private:
    void sync();
    void sync(TableLook how);
    void beforeChange(TextView Value, TextView Operation);
    void beforeChange(TextView Value, TextView Operation, TableLook how);
    void needHeld(TextView line, TextView Operation) const;
    void lengthen(int32 count);
    void afterChange(int32 appended = 0);
    void save(int32 from);
    Text fileText(std::size_t from);
    bool has(int32 Index) const noexcept;
    bool full() const noexcept;
    int32 held() const noexcept { return static_cast<int32>(lines_.size()); }

    std::unique_ptr<TableFile> file_;
    std::unique_ptr<LineCode> code_;
    std::vector<Text> lines_;
    int32 maxItems_ = 0;
    Text mask_;
    bool useWriteMethod_ = false;
    bool writeMethodForInputOnly_ = false;
    bool encrypted_ = false;
    bool dirty_ = false;
    bool pending_ = false;  // changed since it was last stored
    bool recoded_ = false;  // the file's lines are coded and ours are not, or the other way round
};

}  // namespace tsRtm
