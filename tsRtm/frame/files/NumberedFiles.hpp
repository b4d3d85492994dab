#pragma once
// The numbered family of open files: small numbers, positions from 1, waits for locked files, the verdict in
// F.
#include <initializer_list>
#include <memory>
#include <vector>

#include "tsRtm/frame/files/OpenFileTable.hpp"

namespace tsRtm {

class Failure;
class Messages;

// The operations of FilesTopic of the same names, which tells them in full.
class NumberedFiles {
 public:
    // The messages outlive it.
    explicit NumberedFiles(Messages& messages) noexcept : messages_(messages) {}
    NumberedFiles(const NumberedFiles&) = delete;
    NumberedFiles& operator=(const NumberedFiles&) = delete;

    void DB_Open(TextView FileName, int32& FileNummer, int32 Mode, bool AccessType, int32 Laenge,
                 int32 Warten);
    void OpenBinary(TextView FileName, int32& FileNummer) { DB_Open(FileName, FileNummer, 4, true, 0, -2); }
    void OldOpenRandom(TextView Datei, int32& FileNummer, int32 Laenge, int32 Anzahl);

    bool TS_Eof(int32 FileNummer);
    void TS_Close(int32 FileNummer);
    Text TS_Input(int32 FileNummer);
    Text TS_LineInput(int32 FileNummer);
    void TS_Print(int32 FileNummer, TextView A);
    void TS_Get(int32 FileNummer, int32 Position, ByteText& A);
    void TS_Put(int32 FileNummer, int32 Position, TextView A);
    int32 TS_Lof(int32 FileNummer);
    int32 TS_Seek(int32 FileNummer, int32 Position);
    bool DB_IsLocked(int32 FileNummer, int32 Satz);

    void OldGet(int32 FileNummer, int32 Rec, int32 Laenge, std::vector<Text>& Feld);
    void OldPut(int32 FileNummer, int32 Rec, int32 Laenge, const std::vector<Text>& Feld);

    platform::File& file(int32 FileNummer);

 private:
    // What comes after a failed try to open: the same wait goes on, a new one begins, or F stays.
    enum class Then { tryAgain, startAnew, giveUp };
    struct OpenAttempt;
    std::unique_ptr<platform::File> tryOpen(const OpenAttempt& attempt);
    Then afterFailure(OpenAttempt& attempt);
    Then afterLocked(OpenAttempt& attempt);
    Then afterAccessRefused(OpenAttempt& attempt);
    void record(const Failure& failure, TextView Source);

    NumberedFile& numbered(int32 FileNummer, TextView Operation);
    [[noreturn]] void raiseNumbered(TextView name, TextView Operation, int32 number);
    void check(const NumberedFile& opened, TextView Operation, platform::SystemError error);
    void needMode(const NumberedFile& opened, TextView Operation, std::initializer_list<int32> modes);
    void writeFreeRecords(NumberedFile& opened, int32 length, int32 count);
    void append(NumberedFile& opened, TextView Operation, BytesView bytes);
    Text nextText(int32 FileNummer, TextView Operation, SequentialReader::Step step);
    Bytes getBytes(NumberedFile& opened, TextView Operation, uint64 offset, std::size_t count);

    Messages& messages_;
    OpenFileTable numbers_;
};

}  // namespace tsRtm
