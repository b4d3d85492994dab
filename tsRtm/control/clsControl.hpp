#pragma once
// The structure of a database, of a chain or of a mask: its control file in memory.
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "tsRtm/fields/ControlContent.hpp"
#include "tsRtm/fields/TSIO.hpp"
#include "tsRtm/fields/clsMemo.hpp"
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class FilesTopic;
class clsMasken;

// Reads, answers for and writes one structure file. Created closed; Oeffne fills it.
//
// Fields, indexes, memos, chains and blobs count from 1. A control holds its parent weakly (a mask and a
// chain know the control of their database) and its children strongly. To be a parent it must live in a
// std::shared_ptr. The FilesTopic outlives it.
class clsControl : public std::enable_shared_from_this<clsControl> {
 public:
    explicit clsControl(FilesTopic& Files) noexcept : files_(Files) {}
    clsControl(const clsControl&) = delete;
    clsControl& operator=(const clsControl&) = delete;
    ~clsControl();

    // False where the file is missing, of version 3 or above, damaged, or beyond the limits of
    // ControlContent; the object then stays as far as reading got. NichtAnsi tells whether a file with the
    // older head has texts in the DOS code page; it comes back False for a file that says it is Ansi. Faults
    // of the structure that can be lived with (names and indexes twice, wrong index fields, missing chain
    // files) are shown to the user.
    bool Oeffne(TextView Datei, bool& NichtAnsi);
    bool Oeffne(TextView Datei);
    // Writes the file by way of "Control.tmp" in its directory; the target is replaced in one step, and only
    // by a file that is whole on the device. Raises what the file system says (source "clsControl.Save", the
    // old file stands), and 380 for a Titel that the format cannot hold.
    void Save();
    // What Save would write if the file were in Unicode, or in code page 1252, and then with "?" for what
    // that lacks. Raises 380 as Save does.
    Bytes TextAs(bool Unicode) const;

    // Directory of the file; without its last four characters (".DBD"); name of the file without its
    // extension.
    const Text& DBDir() const noexcept { return dir_; }
    Text DBName() const;
    const Text& Name() const noexcept { return name_; }
    eControlTyp Typ() const noexcept { return typ_; }

    bool IstAnsi() const noexcept { return !content_.nichtAnsi; }
    bool IstUnicode() const noexcept { return looksUnicode_.value_or(content_.unicode); }
    // The open path of the database sets it by the look of the data file. Save keeps to what the file said.
    void IstUnicode(bool value) noexcept { looksUnicode_ = value; }
    // Whether some field is of the kind that stores UTF-16 inside an 8-bit record.
    bool HatUnicodeFelder() const noexcept { return content_.unicodeFelder; }

    // For a chain control the field number that owns it.
    int32 Anker() const noexcept { return anker_; }
    int32 PointerLaenge() const noexcept;
    // Characters of a record before its fields: the deleted mark, or the pointers of a chain row.
    int32 VorLaenge() const noexcept { return vorLaenge_; }
    int32 Felder() const noexcept { return static_cast<int32>(content_.felder.size()); }
    int32 Seiten() const noexcept { return content_.seiten; }
    int32 MaxRecords() const noexcept { return content_.maxRecords; }
    void MaxRecords(int32 value) noexcept { content_.maxRecords = value; }
    int32 Indizes() const noexcept { return static_cast<int32>(content_.indizes.size()); }
    int32 SatzLaenge() const noexcept { return content_.satzLaenge; }
    int32 GesamtSatzLaenge() const noexcept { return vorLaenge_ + content_.satzLaenge; }
    int32 AnzahlKetten() const noexcept { return static_cast<int32>(content_.ketten.size()); }
    int32 AnzahlMemos() const noexcept { return static_cast<int32>(content_.memos.size()); }
    int32 AnzahlBlobs() const noexcept { return static_cast<int32>(content_.blobs.size()); }
    // Field numbers, 0 for none.
    int32 AutowertFeld() const noexcept { return content_.autowertFeld; }
    int32 PropFeld() const noexcept { return content_.propFeld; }

    // The field itself, not a copy. Raises 9 outside 1..Felder.
    std::shared_ptr<TSIO> Feld(int32 Index) const;
    TSIOArray GetTSIOArray() const { return content_.felder; }
    // The same for loops that know their bounds: no check, no counted reference.
    const TSIO& field(int32 index) const noexcept {
        return *content_.felder[static_cast<std::size_t>(index - 1)];
    }

    // Field number of component IndexFeld (1..3) of an index; 0 outside 1..Indizes or 1..3.
    int32 Index(int32 IndexNr, int32 IndexFeld = 1) const noexcept;
    // The first index whose primary field is the one given by number or by name, else 0.
    int32 IndexNr(const Variant& FeldNummer) const;
    // Adds an index in memory, False where a field number does not fit; takes one out. Neither writes the
    // file.
    bool IndexHinzu(int32 Primaer, int32 Sekundaer = 0, int32 Tertiaer = 0);
    bool IndexWeg(int32 IndexNr);
    const std::vector<IndexEntry>& indexes() const noexcept { return content_.indizes; }

    // The field of that Name without regard to case, else -1. The first call builds the list of names and
    // shows names that occur twice (not in a mask); the first one stays.
    int32 FeldNummer(TextView Feldname) const;

    // Object references "Objekt(Index).Eigenschaft" in the fields' names. ValueFeld: the first field that
    // refers to the object with this index or with none, else Felder + 1. ObjectCount: the largest index,
    // else -1. ObjectFelder: all fields that do so with the property each one names; the result is their
    // count.
    int32 ValueFeld(TextView ValueName, int32 Index) const;
    int32 ObjectCount(TextView ObjectName) const;
    int32 ObjectFelder(TextView ObjectName, int32 Index, std::vector<int32>& Felder,
                       std::vector<Text>& PropNames) const;

    // The control of a chain field, opened at first use; nothing where the field is no chain or the chain has
    // no fields.
    std::shared_ptr<clsControl> Kette(int32 FeldNummer);
    // Nothing where the field is no memo.
    std::shared_ptr<clsMemo> Memo(int32 FeldNummer) const;
    // Field numbers of the chains, memos and blobs by their order; 0 outside.
    int32 KetteFeld(int32 KetteNr) const noexcept;
    int32 MemoFeld(int32 MemoNr) const noexcept;
    int32 BlobFeld(int32 BlobNr) const noexcept;
    const std::vector<clsMemo>& memos() const noexcept { return content_.memos; }
    const std::vector<int32>& chains() const noexcept { return content_.ketten; }
    const std::vector<int32>& blobs() const noexcept { return content_.blobs; }

    // A mask by number or name, and the list of all masks of the directory.
    std::shared_ptr<clsControl> Maske(const Variant& Item);
    std::shared_ptr<clsMasken> Masken();

 private:
    friend class clsMasken;
    friend class clsCTL;

    bool read(TextView file, bool& nichtAnsi);
    void locate(TextView file);
    void resetNames() const noexcept;
    Text fileName() const;

    FilesTopic& files_;
    std::weak_ptr<const clsControl> parent_;
    eControlTyp typ_ = ControlTyp_DB;
    Text dir_;
    Text name_;
    Text extension_;
    int32 anker_ = 0;
    int32 vorLaenge_ = 1;
    ControlContent content_;
    std::optional<bool> looksUnicode_;
    mutable std::unordered_map<Text, int32> names_;
    mutable bool namesBuilt_ = false;
    std::unordered_map<int32, std::shared_ptr<clsControl>> children_;
    std::shared_ptr<clsMasken> masken_;
};

}  // namespace tsRtm
