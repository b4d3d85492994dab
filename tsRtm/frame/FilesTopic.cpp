#include "tsRtm/frame/FilesTopic.hpp"

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/files/Content.hpp"
#include "tsRtm/frame/files/FolderLists.hpp"
#include "tsRtm/frame/files/HandleFiles.hpp"
#include "tsRtm/frame/files/NumberedFiles.hpp"
#include "tsRtm/frame/files/Paths.hpp"
#include "tsRtm/frame/files/Replace.hpp"
#include "tsRtm/frame/files/SecureKill.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/messages/Messages.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/Lifetime.hpp"

namespace tsRtm {

FilesTopic::FilesTopic(MessagesTopic& messages)
    : messages_(messages),
      numbered_(std::make_unique<NumberedFiles>(*messages.messages_)),
      handles_(std::make_unique<HandleFiles>(*messages.messages_)) {
    rtmMain::ensureStarted();
}

FilesTopic::~FilesTopic() = default;

// --- The numbered family

void FilesTopic::DB_Open(TextView FileName, int32& FileNummer, int32 Mode, bool AccessType, int32 Laenge,
                         int32 Warten) {
    numbered_->DB_Open(FileName, FileNummer, Mode, AccessType, Laenge, Warten);
}
void FilesTopic::OpenAppend(TextView FileName, int32& FileNummer) {
    DB_Open(FileName, FileNummer, 3, false, 0, -1);
}
void FilesTopic::OpenWrite(TextView FileName, int32& FileNummer) {
    DB_Open(FileName, FileNummer, 2, false, 0, -1);
}
void FilesTopic::OpenBinary(TextView FileName, int32& FileNummer) {
    numbered_->OpenBinary(FileName, FileNummer);
}
void FilesTopic::OpenRead(TextView FileName, int32& FileNummer) {
    DB_Open(FileName, FileNummer, 1, true, 0, -2);
}
void FilesTopic::OldOpenRandom(TextView Datei, int32& FileNummer, int32 Laenge, int32 Anzahl) {
    numbered_->OldOpenRandom(Datei, FileNummer, Laenge, Anzahl);
}

bool FilesTopic::TS_Eof(int32 FileNummer) { return numbered_->TS_Eof(FileNummer); }
void FilesTopic::TS_Close(int32 FileNummer) { numbered_->TS_Close(FileNummer); }
Text FilesTopic::TS_Input(int32 FileNummer) { return numbered_->TS_Input(FileNummer); }
Text FilesTopic::TS_LineInput(int32 FileNummer) { return numbered_->TS_LineInput(FileNummer); }
void FilesTopic::TS_Print(int32 FileNummer, TextView A) { numbered_->TS_Print(FileNummer, A); }
void FilesTopic::TS_Get(int32 FileNummer, int32 Position, ByteText& A) {
    numbered_->TS_Get(FileNummer, Position, A);
}
void FilesTopic::TS_Put(int32 FileNummer, int32 Position, TextView A) {
    numbered_->TS_Put(FileNummer, Position, A);
}
int32 FilesTopic::TS_Lof(int32 FileNummer) { return numbered_->TS_Lof(FileNummer); }
int32 FilesTopic::TS_Seek(int32 FileNummer, int32 Position) {
    return numbered_->TS_Seek(FileNummer, Position);
}
bool FilesTopic::DB_IsLocked(int32 FileNummer, int32 Satz) {
    return numbered_->DB_IsLocked(FileNummer, Satz);
}

void FilesTopic::OldGet(int32 FileNummer, int32 Rec, int32 Laenge, std::vector<Text>& Feld) {
    numbered_->OldGet(FileNummer, Rec, Laenge, Feld);
}
void FilesTopic::OldPut(int32 FileNummer, int32 Rec, int32 Laenge, const std::vector<Text>& Feld) {
    numbered_->OldPut(FileNummer, Rec, Laenge, Feld);
}
void FilesTopic::EraseStrings(std::vector<Text>& Feld) {
    for (Text& element : Feld) element.clear();
}

platform::File& FilesTopic::file(int32 FileNummer) { return numbered_->file(FileNummer); }

// --- The handle family

int32 FilesTopic::OpenBinaryAPI(TextView Name, bool ReadOnly, bool Shared) {
    return handles_->OpenBinaryAPI(Name, ReadOnly, Shared);
}
void FilesTopic::CloseAPI(int32 Handle) { handles_->CloseAPI(Handle); }
int64 FilesTopic::LofAPI(int32 Handle) { return handles_->LofAPI(Handle); }
int64 FilesTopic::FilePosAPI(int32 Handle) { return handles_->FilePosAPI(Handle); }
void FilesTopic::SeekAPI(int32 Handle, int64 Position) { handles_->SeekAPI(Handle, Position); }
void FilesTopic::SetEndAPI(int32 Handle, int64 Position) { handles_->SetEndAPI(Handle, Position); }
void FilesTopic::GetAPI(int32 Handle, int64 Position, ByteText& Buffer) {
    handles_->GetAPI(Handle, Position, Buffer);
}
void FilesTopic::GetBytesAPI(int32 Handle, int64 Position, std::span<std::byte> Buffer, int32 Count) {
    handles_->GetBytesAPI(Handle, Position, Buffer, Count);
}
void FilesTopic::PutAPI(int32 Handle, int64 Position, TextView Buffer) {
    handles_->PutAPI(Handle, Position, Buffer);
}
void FilesTopic::PutBytesAPI(int32 Handle, int64 Position, std::span<const std::byte> Buffer, int32 Count) {
    handles_->PutBytesAPI(Handle, Position, Buffer, Count);
}
void FilesTopic::GetIntegerAPI(int32 Handle, int64 Position, int32 Size, int32& Value) {
    handles_->GetIntegerAPI(Handle, Position, Size, Value);
}
void FilesTopic::PutIntegerAPI(int32 Handle, int64 Position, int32 Size, int32 Value) {
    handles_->PutIntegerAPI(Handle, Position, Size, Value);
}
bool FilesTopic::LockAPI(int32 Handle, int64 Position, int32 Length) {
    return handles_->LockAPI(Handle, Position, Length);
}
bool FilesTopic::UnlockAPI(int32 Handle, int64 Position, int32 Length) {
    return handles_->UnlockAPI(Handle, Position, Length);
}
Text FilesTopic::HandleFileName(int32 Handle) { return handles_->HandleFileName(Handle); }
int32 FilesTopic::DetectEncoding(int32 Handle) { return handles_->DetectEncoding(Handle); }

platform::File& FilesTopic::handleFile(int32 Handle) { return handles_->handleFile(Handle); }

// --- Whole text files

Text FilesTopic::GetContentAPI(TextView Name, int32& Encoding, Date& Datum) {
    return readContent(*handles_, Name, Encoding, Datum);
}
int64 FilesTopic::PutContentAPI(TextView Name, TextView Inhalt, int32 Encoding, bool Append, Date& Datum) {
    return writeContent(*handles_, Name, Inhalt, Encoding, Append, Datum);
}
Text FilesTopic::Content(TextView Datei) {
    int32 encoding = ANSI1252;
    Date changed;
    return GetContentAPI(Datei, encoding, changed);
}
bool FilesTopic::safeReplace(TextView Name, BytesView Inhalt) { return replaceContent(Name, Inhalt); }

// --- Files and folders by name

Text FilesTopic::MakePath(const VariantList& Parts) { return paths::join(Parts); }
bool FilesTopic::Exist(TextView Datei) { return fileExists(Datei); }
bool FilesTopic::ExistFolder(TextView PathName) { return folderExists(PathName); }
int32 FilesTopic::GetAllFiles(TextView Root, TextView Pattern, std::vector<Text>& Field, bool IncludeFullPath,
                              int32 Counter, bool DontShowHidden, bool MitDirs) {
    return listFiles(Root, Pattern, Field, Counter + 1,
                     {.fullPath = IncludeFullPath, .hidden = !DontShowHidden, .folders = MitDirs});
}
void FilesTopic::Recycle(TextView FileName) { static_cast<void>(rtmMain::system().files.recycle(FileName)); }
bool FilesTopic::SecureKill(TextView Datei) { return secureKill(*numbered_, Datei); }
bool FilesTopic::TSReplaceFile(TextView ReplacedFile, TextView NewFile, bool CreateBackup) {
    return replaceFile(ReplacedFile, NewFile, CreateBackup);
}
bool FilesTopic::CheckFileAccess(TextView FileName, int32 DesiredAccess) {
    constexpr int32 fileObject = 1;
    return rtmMain::CheckAccess(FileName, fileObject, DesiredAccess);
}
Text FilesTopic::PathCleanup(TextView Pfad) { return paths::cleaned(Pfad); }
Text FilesTopic::PathName(TextView Pfad) { return paths::folder(Pfad); }
Text FilesTopic::BaseName(TextView Pfad) { return paths::base(Pfad); }
Text FilesTopic::DriveName(TextView Pfad) { return paths::drive(Pfad); }
Text FilesTopic::FileName(TextView Pfad) { return paths::last(Pfad); }
Text FilesTopic::ExtName(TextView Pfad) { return paths::extension(Pfad); }
Text FilesTopic::TempName() { return paths::temporary(); }

}  // namespace tsRtm
