#pragma once
// An embedded multi-user database of fixed-length text records.
//
// One database is one directory whose name ends in ".DBD". A clsTSDB opens it and stands on one record
// (AktSatzNr), at one position (LogPos) of one index, or of the physical order. The fields of that record are
// read and set in memory as text; Update brings the indexes in line and writes the record.
//
//     auto db = rtm.OpenTSDB(u"/daten/Kunden");
//     db->SetIndex(1);
//     db->Gehezu(u"Müller");                      // the first key that is not below
//     if (db->Sperren(db->AktSatzNr())) {
//         db->Fields(4, u"12,50");
//         db->Update();
//         db->Entsperren(db->AktSatzNr());
//     }
//
// Errors are recorded: an operation that fails returns normally and sets a number that Error reads and
// clears: 5 read only, 7 full, 9 bad field number, 28 index walk failed, 52 no control file, 53 bad index
// number, 54 chain of a database that is read only, 55 already open, 57 device, 61 no room, 62 no further
// record, 63 bad record number, 70 cannot lock or open. Damage of the structure raises.
//
// Several processes may have a database open; all that keeps them apart are byte-range locks in its files,
// and these die with the process. One thread. Lives in a std::shared_ptr.
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "tsRtm/control/clsControl.hpp"
#include "tsRtm/database/DatabaseEvents.hpp"
#include "tsRtm/fields/clsBlob.hpp"
#include "tsRtm/types/Text.hpp"

namespace tsRtm {

// What a loop over records does with one that somebody else has locked.
enum eLockedAction : int32 { AskUser = 0, Cancel = 1, Retry = 2, Ignore = 3, Delay = 4, AskUserAgain = 5 };

// Rows of cells, both from 0.
using TextTable = std::vector<std::vector<Text>>;

// How far a database has changed.
struct Datenstand {
    uint64 changes = 0;  // of indexes; 2 more for each update that changes one
    uint64 size = 0;     // of the data file, bytes
    float64 time = 0;    // its time stamp, in days
    bool operator==(const Datenstand&) const = default;
};

class clsTSRecord;
class clsTSRecordSet;
class ChainRowSet;
class ChainStore;
class DatenTab;
class KeyRange;
class NewRecords;
struct ChainRow;
struct RangeWalk;
class SideWrite;
struct BulkFace;
struct BulkOutcome;
struct DatabaseEngine;
struct OpenDatabase;
struct WriteOutcome;
enum class Conversion;

class clsTSDB : public DatabaseEvents, public std::enable_shared_from_this<clsTSDB> {
 public:
    // The files outlive the database.
    explicit clsTSDB(FilesTopic& Files);
    ~clsTSDB();
    clsTSDB(const clsTSDB&) = delete;
    clsTSDB& operator=(const clsTSDB&) = delete;

    // --- Opening
    // ---------------------------------------------------------------------------------------------------
    // ".DBD" is added to Pfad where it is missing. 0 on success, else the error number. An opening that finds
    // the mark of an update that died builds the indexes anew; one that finds that the last user did not
    // leave cleanly checks them first. A shared opening is refused with 70 and a message where the file
    // system does not keep locks. A reader of a database that is being reorganised gets an empty view. Raises
    // 55 on an open database.
    int32 Oeffne(TextView Pfad, bool ReadOnly = false, bool SingleUse = false);
    // Widths of the fields on a list, from the file ViewFile ".viw" of the directory; False where it is
    // missing.
    bool OpenView(TextView ViewFile);
    // Closes all files; what is in memory and not stored is lost, as at the end of the object.
    void Schliesse() noexcept;
    // Ends every live record, record set and cursor of this database.
    void KillAllObjects();

    std::shared_ptr<clsControl> Control() const;
    std::shared_ptr<class clsMasken> Masken() const;
    Text Pfad() const;    // the directory in upper case, for showing
    Text DBName() const;  // name of the directory without ".DBD"
    bool IsAnsi() const;
    bool IsReadOnly() const;
    bool IsShared() const;
    bool IsBig() const;
    // What a reader gets of a database that somebody holds alone just now: open, but without a record.
    bool IsEmptyView() const;
    // Whether the open files are still those that its folder has.
    bool InPlace() const;
    // Equal as long as nobody has changed a key. Older programs and changes of other fields show in size and
    // time alone, which are less sure. From then on AnzahlDSaetze counts what was there at that moment.
    Datenstand Stand();
    // The first of these by itself: without a system call where the files have windows.
    uint64 ChangeNumber();
    bool Sensible() const;
    void Sensible(bool value);
    // Whether a write of this object is on the device when it returns, so that a cut of the power takes
    // nothing that was acknowledged. At an opening as DatabasesTopic::Dauerhaft says.
    bool Dauerhaft() const;
    void Dauerhaft(bool value);
    // The last error number; reading clears it.
    int32 Error();

    // --- Records
    // ---------------------------------------------------------------------------------------------------
    // Reads a record into memory and gives its raw text; with Gehezu memo, blob and chain fields read as
    // plain text. Raises 445 for a database with single fields in UTF-16: only GetField and PutField reach
    // those.
    Text GetSatz(int32 Satznummer, bool Gehezu = false);
    // Writes the fields in memory as that record: 1..count + 1. Changes no index. Columns of memos, blobs and
    // chains keep what the file has: what stands in memory only shows it.
    void PutSatz(int32 Satznummer);
    // One field straight from or to the file; field 0 is the deleted mark. PutField changes no index.
    Text GetField(int32 Satznummer, int32 FeldNummer);
    void PutField(int32 Satznummer, int32 FeldNummer, TextView Inhalt);
    // A field in memory, 0 the deleted mark. Numbers are read in the form of the locale with their decimals
    // and may be written in it. The reference holds until the field or the record changes.
    const Text& Fields(int32 Index);
    void Fields(int32 Index, TextView Inhalt);
    // The same as Fields without a Text of its own, for loops over many records. Holds until the next call.
    TextView FieldView(int32 Index);
    // All fields from 0 on; the result is Fields(0).
    Text Satz(std::vector<Text>& Feld);
    void ClearRecord();

    // Stores the fields in memory as a new record at once; memos, blobs and chains start empty. In single use
    // the application calls LockDB(True) before, else Error is 70.
    std::shared_ptr<clsTSRecord> Append();
    // A new record object, not stored before its Update, with its serial number if the database has one:
    // Error 70 where the counter cannot be had, 7 where its numbers are used up.
    std::shared_ptr<clsTSRecord> Add();
    // Stores what was assigned to a record object over what the file has by now; what its Update calls. The
    // record number, 0 or below where it failed.
    int32 SatzSpeichern(clsTSRecord& Record);
    // The record object of that number, of the current record for 0; nothing where there is none. The one
    // that somebody holds already, if there is one.
    std::shared_ptr<clsTSRecord> Record(int32 Satznummer = 0, bool Locked = false);
    // All records, as a set.
    std::shared_ptr<clsTSRecordSet> Records();
    // Sets and takes the deleted mark. The record keeps its place in all indexes.
    void Delete(int32 Satznummer);
    void Reaktivieren(int32 Satznummer);
    bool IsDeleted() const;

    int32 AktSatzNr() const;
    // Stands on that record, also in the active index.
    void AktSatzNr(int32 value);
    int32 LogSatz() const;
    int32 LogSatzNr() const { return LogSatz(); }
    int32 AnzahlDSaetze();
    int32 MaxData() const;
    // Whether no record can be added, told to the user.
    bool IsFull();
    int32 AnzahlIndizes() const;
    int32 AnzahlKetten() const;
    int32 AnzahlMemos() const;
    int32 CtrlEintraege() const;  // fields

    // Of a field, 1..CtrlEintraege; empty or 0 outside.
    Text Caption(int32 Index) const;
    Text Hilfetext(int32 Index) const;
    int32 Laenge(int32 Index) const;
    int32 ViewLaenge(int32 Index) const;
    int32 Spalte(int32 Index) const;
    int32 Typ(int32 Index) const;
    int32 Zeile(int32 Index) const;
    int32 NachKomma(int32 Index) const;
    int32 MemoNr(int32 FeldNummer) const;
    int32 KetteNr(int32 FeldNummer) const;
    int32 IndexNr(const Variant& FeldNummer) const;
    int32 IndexFeld(int32 Index, int32 Item = 1) const;

    // Looks through all records for the names of their properties, and counts them; and what it found last:
    // name, and how many records have it.
    int32 FindPropertyNames();
    std::shared_ptr<DatenTab> PropertyNames();

    // --- Memos and blobs
    // ------------------------------------------------------------------------------------------- Those of
    // the current record, by their number 1..AnzahlMemos among the memo fields. The text is that of the file
    // at this moment. 9 for a number that there is not.
    Text Memo(int32 MemoNr);
    // Stores it at once; an empty text takes no room. 63 where there is no stored record, 53 where a
    // scrambled field has no key file, 61 without room: then all is as it was.
    void Memo(int32 MemoNr, TextView Inhalt);
    // The same for blob fields.
    clsBlob Blob(int32 BlobNr);
    void Blob(int32 BlobNr, const clsBlob& Inhalt);

    // --- Chains: repeating rows of a record
    // ------------------------------------------------------------------------------------------- Those of
    // the current record, by their number 1..AnzahlKetten, read from the file and written to it at once;
    // whoever replaces a whole chain holds the record's lock. 53 where a chain has no structure file, 61
    // where no row is to be had, 63 without a record.
    //
    // All rows; False, and no row, for an empty chain. 9 for a number that there is not.
    bool KetteLesen(int32 KetteNr, TextTable& Inhalt);
    // These rows in the place of all that there are; 53 for a number that is none. All or nothing.
    void KetteSchreiben(int32 KetteNr, const TextTable& Kette);
    // Action AND 7: 1 reads all rows into rows 1.. of TabFeld, as far as it reaches (an empty one is made to
    // fit), and gives their number; 2 writes Anzahl rows from row 1 on; 5 adds row 1 at the end, 7 in front;
    // others do nothing. Plus 16: the cells of a row stand in its first one, joined by the character 0. Plus
    // 32: rows come and go by the event KetteIO. Cell (0, 0) gets a text that describes the chain in 1 and 2.
    // 9 where TabFeld has not so many rows.
    void KetteAction(int32 Action, int32 Feld, TextTable& TabFeld, int32& Anzahl);
    // Of the chain that was used last: what its fields are, from 0, and its most rows.
    void KetteCaption(std::vector<Text>& Inhalt) const;
    void KetteHilfe(std::vector<Text>& Inhalt) const;
    void KetteTyp(std::vector<int32>& Inhalt) const;
    void KetteNachkomma(std::vector<int32>& Inhalt) const;
    void KetteLaenge(std::vector<int32>& Inhalt) const;
    void KetteTSIO(TSIOArray& Inhalt) const;
    int32 KetteMaxZeilen() const;

    // --- Order and search
    // -------------------------------------------------------------------------------------------- Index
    // number, 0 the physical order; another number is error 53 and changes nothing.
    void SetIndex(int32 IndexNr);
    int32 ActiveIndex() const;  // primary field of the active index, 0 for none
    Text IndexName() const;     // its caption
    bool Locating() const;      // a search is under way
    // Record number at a position of the active index; stands there.
    int32 Index(int32 LogSatz);
    // Whether an index has exactly this key. Changes no position.
    bool Exist(TextView Suchbegriff, int32 IndexNr);
    // Stands on the first record whose key is not below, behind the last one where there is none. "#n" is
    // position n.
    void Gehezu(TextView Suchbegriff);
    // Position of the first entry of the active index whose key is not below: its number of smaller keys plus
    // one.
    int32 Rang(TextView Suchbegriff);
    // Searches the text in all records without regard to case, from behind the current position around to it;
    // every record that is there is looked at, wherever others move it. On a miss the position stays and the
    // result is nothing.
    std::shared_ptr<clsTSRecord> Finde(TextView Suchtext);
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    bool BOFile() const;
    bool EOFile() const;

    // Calls Action for each record of a range, as the current one, at the position that it had when the loop
    // began; deleted ones with Alle only. Feld 0 takes record numbers; else the index of that field: all keys
    // from Von to those that begin with Bis, of a date without decimals the days. Each record is visited
    // once, whatever is changed meanwhile; one that has left the range is passed over. Where a handler leaves
    // DoUpdate, this value at first, True, the record is stored. ActionEnd comes in any case. Error 1 for a
    // field without an index.
    void ActionLoop(int32 Feld, TextView Von, TextView Bis, bool Alle, Variant& Zusatz,
                    bool DoUpdate = false);
    // Set by a handler: ends the loop before the next record.
    bool CancelAction() const noexcept { return cancelAction_; }
    void CancelAction(bool value) noexcept { cancelAction_ = value; }

    // --- Writing and locks
    // ----------------------------------------------------------------------------------------------- Writes
    // the record in memory, and every index whose key changed, under the database lock. After a failure
    // record and indexes are as they were. In a handler that runs inside a write of this object, Error is 70.
    void Update();
    // The database lock, kept until given back here.
    bool LockDB(bool Modus);
    // Locks a record. Warten: 0 waits for ever, below 0 that many times NetWait seconds in silence, above 0
    // then asks. False on a record that this object holds already.
    bool Sperren(int32 Satznummer, int32 Warten = 0);
    // True also on a record that was not locked.
    bool Entsperren(int32 Satznummer);
    // Whether this object or somebody else holds the record; 0 asks for the database lock.
    bool Gesperrt(int32 Satznummer);

    // --- Whole database
    // --------------------------------------------------------------------------------------------------
    // Rebuilds an index, or all for -1. False, and Error 70, where somebody else has the database open; all
    // locks stay.
    bool Sort(int32 IndexSpalte = -1);
    // Adds an index, the last one then, and builds it. Error 9 for a field that cannot be searched by, 53
    // where an index with this primary field is there.
    void CreateIndex(int32 Primaer, int32 Sekundaer = 0, int32 Tertiaer = 0);
    // Takes the index with this primary field away; 53 for none.
    void DelIndex(int32 IndexSpalte);
    // Takes the records out that are marked as deleted; the others get new numbers in their order. Live
    // record objects end, locks of records are given up, and Packed is told. All files change at once: who
    // dies in it leaves the database as it was, or packed.
    bool Pack();
    // Takes the room out of memo and chain stores that no record leads to. Raises, source "DB PackMemoKette",
    // for a chain that leads out of its file or in a circle; then nothing is changed.
    bool PackMemoKette();
    // Both, and all indexes anew.
    bool Rebuild();
    // Takes all records out, with their memos and chains; serial numbers go on.
    void Zap();
    // Puts the records that Fill adds in the place of all that there are; where Fill gives False, or somebody
    // else has the database open (70), all stays as it was. As with Pack, all files change at once, numbers
    // are new, and Packed is told.
    bool Replace(const std::function<bool(NewRecords&)>& Fill);
    // The records, chains and structure from the DOS code page to 1252; all of them to 1252, or to UTF-16. A
    // database that is in that form already stays as it is. Where 1252 lacks characters the user is asked
    // once; his No, and the want of a user, is False, and nothing is changed. Record objects drop what was
    // not stored.
    bool ConvertToWin();
    bool ConvertToAnsi();
    bool ConvertToUnicode();
    // Checks every index against the records, and the chains; what it finds goes to the debug log and to
    // Befunde. With Repair a faulty index is rebuilt, and chains lead nowhere but to rows of their own; the
    // result is that of the check before.
    bool Check(bool Repair, TextView Zusatz);
    const std::vector<Text>& Befunde() const;

 private:
    friend class clsTSRecord;
    friend class clsTSRecordSet;
    friend class clsTSIndex;
    friend class BulkLoader;
    friend class RecordScan;
    friend class DatabaseCare;

    void openInner();
    bool openStructure();
    void openCount();
    bool openFiles();
    void openSerial();
    enum class Exchanged { places, forms, numbers };
    template <class Work>
    bool exchanging(Work work, Exchanged what);
    bool exchanged(const std::function<BulkOutcome(OpenDatabase&, const BulkFace&)>& work);
    bool convert(Conversion conversion);
    void letGoOfSets();
    int32 greatestSerial();
    void settle();
    bool refusesLocks();
    bool readRecord(int32 Satznummer, bool plain = false);
    bool showRecord(int32 Satznummer);
    void recordChanged(int32 Satznummer);
    bool lockForNew();
    int32 storeNew(clsTSRecord& record);
    template <class Store>
    WriteOutcome stored(clsTSRecord& record, Store store);
    void putMark(int32 Satznummer, char16_t mark);
    template <class Read>
    auto readPlace(int32 field, int32 record, Read read);
    template <class Content>
    void writePlace(int32 field, Content content);
    // Nothing where it could not be read, which is recorded.
    std::optional<Text> memoText(int32 record, int32 field);
    ChainStore* useChain(int32 field);
    bool readChain(int32 record, ChainStore& store, TextTable& rows);
    bool writeChain(int32 record, const ChainStore& store, SideWrite& write,
                    const std::function<void()>& written = {});
    bool readRows(int32 record, int32 field, ChainRowSet& rows);
    bool storeRows(clsTSRecord& parent, int32 field, ChainRowSet& rows, const ChainRow* only);
    void visit(const RangeWalk& walk, const KeyRange* range, bool all, Variant& Zusatz, bool update);
    template <class Entry, class Take>
    void eachChainField(std::vector<Entry>& out, Take take) const;
    bool isEmpty() const;
    void goTo(TextView Suchbegriff);
    void goToNumber(int32 wanted);
    void goToKey(TextView Suchbegriff);
    void moveTo(int32 position);
    void moveToPosition(int32 position);
    std::shared_ptr<clsTSRecord> standOn(int32 record);
    void enter(clsTSRecord& record);
    void leave(clsTSRecord& record) noexcept;
    void standsFor(clsTSRecord& record);
    std::shared_ptr<clsTSRecord> liveRecord(int32 number) const;
    // A record object won the lock of its record; the second one tells whether it has it, which ends then.
    void takeLock(clsTSRecord& record);
    bool giveUpLock(clsTSRecord& record) noexcept;
    void enter(const std::shared_ptr<clsTSRecordSet>& set);
    // Tells all live sets, whichever end meanwhile.
    template <class Tell>
    void eachSet(Tell tell);
    void indexChanged(int32 field);
    void indexRebuilt(int32 field);
    void indexDropped(int32 field);
    void newNumber(int32 before, int32 number);
    void contentReplaced();
    void giveUpSerial(int32 value, bool storeTried) noexcept;
    bool storeSerial(int32 record, TextView number);

    // An operation in which events may run: what a handler closes is closed when it is over, and its waits
    // end at once.
    class Working {
     public:
        explicit Working(clsTSDB& database) : database_(database) { ++database_.working_; }
        ~Working() {
            if (--database_.working_ == 0 && database_.closing_) database_.Schliesse();
        }
        Working(const Working&) = delete;
        Working& operator=(const Working&) = delete;

     private:
        clsTSDB& database_;
    };

    std::unique_ptr<DatabaseEngine> engine_;
    int32 working_ = 0;
    bool closing_ = false;
    bool cancelAction_ = false;
    std::shared_ptr<DatenTab> propertyNames_;
    std::vector<Text> befunde_;
    Text shown_;  // a number as Fields shows it
    bool locating_ = false;
};

}  // namespace tsRtm
