#pragma once
// The file layer: all files of the library are opened, read, written, locked and named here.
//
// Two families. The numbered family (DB_Open, TS_*) works on small file numbers with positions from 1, waits
// while a file is locked and leaves its verdict in F (clsCommon). The handle family (*API) works on
// handles with 64-bit positions from 0 and raises. Beside them: whole text files with their encodings, an old
// fixed-record format, and names of files.
//
//     int32 number;
//     files.OpenRead(u"Liste.txt", number);
//     while (number != 0 && !files.TS_Eof(number)) use(files.TS_LineInput(number));
//
// Several processes use the same files at once; within one, only the library's thread. Waits let other events
// run, so a call may come in while another one waits.
#include <memory>
#include <span>
#include <vector>

#include "tsRtm/platform/File.hpp"
#include "tsRtm/types/Date.hpp"
#include "tsRtm/types/Encodings.hpp"
#include "tsRtm/types/Text.hpp"
#include "tsRtm/types/Variant.hpp"

namespace tsRtm {

class HandleFiles;
class MessagesTopic;
class NumberedFiles;

class FilesTopic {
 public:
    // The messages outlive the files.
    explicit FilesTopic(MessagesTopic& messages);
    ~FilesTopic();
    FilesTopic(const FilesTopic&) = delete;
    FilesTopic& operator=(const FilesTopic&) = delete;

    // For the classes that are given this topic alone.
    MessagesTopic& messages() const noexcept { return messages_; }

    // --- Opening with a file number
    // ------------------------------------------------------------------------------- FileNummer is 0 on
    // failure and F says why: 53 not found, 55 open already, 64 bad name, 67 too many files, 70 locked, 71
    // not ready, 75 access, 76 folder not found. Anything else goes through ErrorHandler(0), which shows or
    // raises it.
    //
    // Mode: 0 random access, 1 sequential read, 2 sequential write of an emptied file, 3 append, 4 binary, 5
    // binary of an existing file (reading alone where it may not be written). AccessType: shared; false locks
    // all others out, but in mode 5; modes 2 and 3 always do. Warten: NetWait * |Warten| seconds until a wait
    // for a locked file ends; then 0 goes on for ever, above 0 asks the user, below 0 gives up with F 70.
    // Laenge: record length of mode 0, stored only.
    void DB_Open(TextView FileName, int32& FileNummer, int32 Mode, bool AccessType, int32 Laenge,
                 int32 Warten);
    void OpenAppend(TextView FileName, int32& FileNummer);
    void OpenWrite(TextView FileName, int32& FileNummer);
    void OpenBinary(TextView FileName, int32& FileNummer);
    void OpenRead(TextView FileName, int32& FileNummer);
    // Opens an old record file; an empty one gets Anzahl free records of Laenge bytes.
    void OldOpenRandom(TextView Datei, int32& FileNummer, int32 Laenge, int32 Anzahl);

    // --- Work on a file number
    // ------------------------------------------------------------------------------------ Each raises the
    // failure's number with source "clsRtm:" and the operation; F stays as it is. 52 unknown number, 54 wrong
    // mode, 57 device, 61 disk full, 62 end of file, 63 position below 1, 70 locked, 75 access.
    bool TS_Eof(int32 FileNummer);
    void TS_Close(int32 FileNummer);
    // The next item: up to a comma or the line's end, blanks before it skipped; in double quotes it may hold
    // both.
    Text TS_Input(int32 FileNummer);
    // The next line without its end, which is CR LF, CR or LF.
    Text TS_LineInput(int32 FileNummer);
    // A line, ended by CR LF.
    void TS_Print(int32 FileNummer, TextView A);
    // As many bytes as A is long. In mode 1 behind a TS_Seek to Position, raising 62 where fewer are left;
    // else at Position, and what lies behind the end of the file stays as it was in A.
    void TS_Get(int32 FileNummer, int32 Position, ByteText& A);
    void TS_Put(int32 FileNummer, int32 Position, TextView A);
    // Bytes; raises 6 above 2 GB.
    int32 TS_Lof(int32 FileNummer);
    // Sets the position where one is given, and returns it: 1 is the first byte. A negative one goes that
    // many bytes BEHIND the end.
    int32 TS_Seek(int32 FileNummer, int32 Position = 0);
    // Whether another opening holds the byte at position Satz locked; false on any failure.
    bool DB_IsLocked(int32 FileNummer, int32 Satz);

    // Old record files: record Rec, from 1, of Laenge bytes. OldGet fills Feld as far as it goes and empties
    // the rest; a free record leaves it empty. OldPut does nothing while F is not 0, and clears it
    // afterwards.
    void OldGet(int32 FileNummer, int32 Rec, int32 Laenge, std::vector<Text>& Feld);
    void OldPut(int32 FileNummer, int32 Rec, int32 Laenge, const std::vector<Text>& Feld);
    static void EraseStrings(std::vector<Text>& Feld);

    // The opened file behind a number, for bulk work. Raises 52 for an unknown one. Valid until TS_Close.
    platform::File& file(int32 FileNummer);

    // --- Handle family
    // -------------------------------------------------------------------------------------------- 0 on
    // failure, and F says why: 53, 67, 70 (after NetWait seconds), 71, 76. Raises 445 for any other failure.
    // Opened for reading the file must exist, else it is made.
    int32 OpenBinaryAPI(TextView Name, bool ReadOnly, bool Shared);
    // Each makes one system call and raises 5 where it fails, with the system's error number and text.
    // Positions are bytes from 0.
    void CloseAPI(int32 Handle);
    int64 LofAPI(int32 Handle);
    int64 FilePosAPI(int32 Handle);
    void SeekAPI(int32 Handle, int64 Position);  // a negative one counts from the end
    void SetEndAPI(int32 Handle, int64 Position);
    // Bytes behind the end of the file stay as they were in the buffer.
    void GetAPI(int32 Handle, int64 Position, ByteText& Buffer);
    void GetBytesAPI(int32 Handle, int64 Position, std::span<std::byte> Buffer, int32 Count);
    void PutAPI(int32 Handle, int64 Position, TextView Buffer);
    void PutBytesAPI(int32 Handle, int64 Position, std::span<const std::byte> Buffer, int32 Count);
    // Little-endian, Size 1, 2 (both unsigned) or 4; raises 380 for another one.
    void GetIntegerAPI(int32 Handle, int64 Position, int32 Size, int32& Value);
    void PutIntegerAPI(int32 Handle, int64 Position, int32 Size, int32 Value);
    // Exclusive, without waiting; Length bytes from Position. Whether it succeeded.
    bool LockAPI(int32 Handle, int64 Position, int32 Length);
    bool UnlockAPI(int32 Handle, int64 Position, int32 Length);
    // Empty for a handle that is not open.
    Text HandleFileName(int32 Handle);
    // Code page number by the file's mark, 1252 without one; the position then stands on the text. Never
    // fails.
    int32 DetectEncoding(int32 Handle);

    // The opened file behind a handle, for bulk work. Raises 52 for an unknown one. Valid until CloseAPI.
    platform::File& handleFile(int32 Handle);

    // --- Whole text files
    // ----------------------------------------------------------------------------------------- The text up
    // to an old end-of-file mark (code 26). Encoding becomes the file's (it stays for an empty file, and 850
    // stays where the file has no mark), Datum its time stamp. Empty where the file cannot be opened, and F
    // says why. Raises 321 for an encoding that cannot be read.
    Text GetContentAPI(TextView Name, int32& Encoding, Date& Datum);
    // Writes the text, cuts the file behind it and returns that position; Datum becomes the file's time
    // stamp. The file's own encoding and mark are kept when appending and with 1252. Raises 75 where it
    // cannot be opened, 321 for an encoding that cannot be written, 5 where writing fails; the file then is
    // as it was.
    int64 PutContentAPI(TextView Name, TextView Inhalt, int32 Encoding, bool Append, Date& Datum);
    Text Content(TextView Datei);
    // The bytes in place of the file's: written beside it, flushed and put in its place in one step, with the
    // rights of the file before. Whether it succeeded; else the file is as it was.
    bool safeReplace(TextView Name, BytesView Inhalt);

    // --- Files and folders by name ---
    // Non-empty parts joined by the path delimiter; the first one stands as it is.
    static Text MakePath(const VariantList& Parts);
    // Whether there is a file, not a folder, of that name or wildcard name.
    static bool Exist(TextView Datei);
    static bool ExistFolder(TextView PathName);
    // Puts the files of Root that match Pattern ("*" and "?"; empty matches all) into Field, sorted, behind
    // index Counter; with MitDirs the matching folders, too, always by full path. Number of entries in Field;
    // 0 for an unreadable folder.
    static int32 GetAllFiles(TextView Root, TextView Pattern, std::vector<Text>& Field,
                             bool IncludeFullPath = false, int32 Counter = -1, bool DontShowHidden = false,
                             bool MitDirs = false);
    // Into the waste-paper basket; failures are ignored.
    static void Recycle(TextView FileName);
    // Overwrites and deletes the file, or all files that match. Whether any was; raises what overwriting
    // fails with.
    bool SecureKill(TextView Datei);
    // Puts NewFile, with the rights of ReplacedFile, in its place; a copy of that stays with the extension
    // ".sik" if wanted.
    bool TSReplaceFile(TextView ReplacedFile, TextView NewFile, bool CreateBackup);
    // DesiredAccess: 1 list or read, 2 write or add a file, 4 add a folder, 64 delete, 0x120089 read,
    // 0x120116 write.
    static bool CheckFileAccess(TextView FileName, int32 DesiredAccess);
    // A file name without what may not stand in one, 260 characters at most.
    static Text PathCleanup(TextView Pfad);
    static Text PathName(TextView Pfad);   // the folder, without a delimiter at its end unless it is a root
    static Text BaseName(TextView Pfad);   // last part without its extension
    static Text DriveName(TextView Pfad);  // "C:", "\\server\share", "/" or empty
    static Text FileName(TextView Pfad);   // last part
    static Text ExtName(TextView Pfad);    // without the dot
    static Text TempName();                // "rad" and five hexadecimal digits and ".tmp"

 private:
    MessagesTopic& messages_;
    std::unique_ptr<NumberedFiles> numbered_;
    std::unique_ptr<HandleFiles> handles_;
};

}  // namespace tsRtm
