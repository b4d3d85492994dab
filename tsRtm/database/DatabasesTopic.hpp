#pragma once
// The topic of clsRtm for databases: making, opening and closing them, and their locks.
#include <memory>
#include <vector>

#include "tsRtm/database/clsTSDB.hpp"
#include "tsRtm/frame/FilesTopic.hpp"

namespace tsRtm {

enum eDBTyp : int32 {
    DBAscii = 0,  // head TS0, which reads as ANSI
    DBAnsi = 1,
    DBUnicode = 2,  // two bytes a character
};

class DatabasesTopic {
 public:
    // The files outlive the databases.
    explicit DatabasesTopic(FilesTopic& files) : files_(files) {}
    virtual ~DatabasesTopic() = default;

    // Makes a database: the folder, Control.tsd and Count.tsd; the other files come with the first opening.
    // DatenFeld counts from 0 here; Saetze is the most records it may hold, from 32768 on it is a big one.
    // Index has nine characters an index: three field numbers in three characters each, the rest of a text
    // that is no multiple of nine is ignored. False, and nothing is changed, where there is a database
    // already.
    bool DB_Create(TextView DB, const TSIOArray& DatenFeld, int32 Saetze, TextView Index);
    // The same with a character form; with Maske a mask file is written in the folder instead and the answer
    // is False.
    bool DBCreateExt(eDBTyp Typ, TextView DB, TextView Maske, const TSIOArray& DatenFeld, int32 Saetze,
                     TextView Index);
    // Nothing where it cannot be opened; the last failure number then tells why.
    std::shared_ptr<clsTSDB> OpenTSDB(TextView DBName, bool ReadOnly = false, bool SingleUse = false);
    // A database of reference data, of that name in that folder, for reading. While somebody holds it alone
    // it is waited for, NetWait seconds at most, since an empty view would look like lost data. Nothing where
    // the folder is empty or the database cannot be opened.
    std::shared_ptr<clsTSDB> OpenReference(TextView Ordner, TextView DBName);
    // Lets the user choose a record in the order of the active index, from the first one on whose key is not
    // below Such. The record, nothing where none was chosen; a deleted one cannot be.
    std::shared_ptr<clsTSRecord> DBSelectAt(clsTSDB& DB, TextView Caption, TextView Such = {});
    // The folder of databases that come with the programs: that of the host program if it has any, else the
    // common one. Found once.
    static Text SupportDBPath();
    // Closes every database opened here that still lives. No failure leaves it.
    void CloseRTMDBs() noexcept;
    // Whether databases that are opened from now on acknowledge only what is on the device; else, as at
    // first, the system decides when it comes there.
    bool Dauerhaft() const;
    void Dauerhaft(bool value);
    // Locks one byte of a file, at a position from 1, with the rules for waiting; 0 or 70 goes to the last
    // failure number.
    void DB_Lock(int32 FileNummer, int32 Satz, int32 Warten, bool DB = true);

 private:
    FilesTopic& files_;
    std::vector<std::weak_ptr<clsTSDB>> opened_;
};

}  // namespace tsRtm
