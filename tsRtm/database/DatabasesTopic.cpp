#include "tsRtm/database/DatabasesTopic.hpp"

#include "tsRtm/database/files/CountFile.hpp"
#include "tsRtm/database/files/DatabaseFolder.hpp"
#include "tsRtm/database/files/LockWait.hpp"
#include "tsRtm/frame/clsStreamWriter.hpp"
#include "tsRtm/frame/files/Waiting.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

constexpr TextView kDatabaseEnd = u".DBD";
constexpr TextView kMaskEnd = u".MASKE";
constexpr TextView kLineEnd = u"\r\n";
constexpr std::size_t kIndexCharacters = 9;
constexpr int32 kLocked = 70;

Text withEnd(TextView name, TextView end) {
    return upper(name).ends_with(end) ? Text(name) : Text(name).append(end);
}

// All folders up to the last delimiter of a path.
bool makeFolders(const Text& folder) {
    if (folder.empty()) return true;
    auto& files = rtmMain::system().files;
    if (const auto status = files.status(folder); status) return status->folder;
    const Text parent = FilesTopic::PathName(folder);
    if (parent.size() < folder.size() && !parent.empty() && !makeFolders(parent)) return false;
    return !failed(files.makeFolder(folder));
}

Text fieldLine(const TSIO& field) {
    Text out;
    for (const int32 number : {field.NachKomma(), field.Zeile(), field.Spalte(), field.Laenge(), field.Typ()})
        out += toText(number) + u",";
    return out + u"\"" + field.Titel() + u"\"";
}

Text indexLine(TextView index, std::size_t number) {
    Text out;
    for (std::size_t item = 0; item < 3; ++item) {
        if (item > 0) out += u",";
        out += index.substr(number * kIndexCharacters + item * 3, 3);
    }
    return out;
}

Text structureText(eDBTyp typ, const TSIOArray& fields, int32 records, TextView index) {
    // What is left of a text that is no multiple of nine is ignored: 17 characters are one index.
    const std::size_t indexes = index.size() / kIndexCharacters;
    Text out = u"TS" + toText(typ) + u"," + toText(static_cast<int64>(fields.size())) + Text(kLineEnd);
    for (const auto& field : fields) out += fieldLine(*field) + Text(kLineEnd);
    out += u"1," + toText(records) + u"," + toText(static_cast<int64>(indexes)) + Text(kLineEnd);
    for (std::size_t i = 0; i < indexes; ++i) out += indexLine(index, i) + Text(kLineEnd);
    return out;
}

bool writeText(FilesTopic& files, const Text& name, Encodings encoding, const Text& text) {
    clsStreamWriter writer;
    if (!writer.Init(files, name, encoding)) return false;
    writer.WriteString(text);
    return true;
}

bool onDevice(const Text& name) {
    auto file = rtmMain::system().files.open(name, {.access = platform::Access::readWrite});
    return file && !failed((*file)->flush());
}

// Written beside the place and put there unless somebody was quicker: no control that others work by is ever
// written over.
bool placeControl(FilesTopic& files, const Text& folder, const Text& target, Encodings encoding,
                  const Text& text) {
    auto& system = rtmMain::system().files;
    const Text fresh = FilesTopic::MakePath({Variant(folder), Variant(FilesTopic::TempName())});
    const bool placed = writeText(files, fresh, encoding, text) && onDevice(fresh) &&
                        !failed(system.rename(fresh, target, false));
    if (!placed) static_cast<void>(system.remove(fresh));
    return placed;
}

// The lock area has to be there before anybody can open the database.
bool makeCount(const Text& folder) {
    auto file = rtmMain::system().files.open(
        FilesTopic::MakePath({Variant(folder), Variant(u"Count.tsd")}),
        {platform::Access::readWrite, platform::Sharing::all, platform::Disposition::openOrCreate});
    if (!file) return false;
    CountFile(**file).initialise();
    return true;
}

}  // namespace

bool DatabasesTopic::DB_Create(TextView DB, const TSIOArray& DatenFeld, int32 Saetze, TextView Index) {
    return DBCreateExt(DBAnsi, DB, {}, DatenFeld, Saetze, Index);
}

bool DatabasesTopic::DBCreateExt(eDBTyp Typ, TextView DB, TextView Maske, const TSIOArray& DatenFeld,
                                 int32 Saetze, TextView Index) {
    const Text folder = withEnd(DB, kDatabaseEnd);
    const auto inFolder = [&](const Text& name) {
        return FilesTopic::MakePath({Variant(folder), Variant(name)});
    };
    const auto encoding = Typ == DBAscii || Typ == DBAnsi ? ANSI1252 : UTF8;
    if (!makeFolders(folder)) return false;
    const Text text = structureText(Typ, DatenFeld, Saetze, Index);
    if (!Maske.empty()) {
        static_cast<void>(writeText(files_, inFolder(withEnd(Maske, kMaskEnd)), encoding, text));
        // A mask counts as normal only to those who asked for one.
        return false;
    }
    if (FilesTopic::Exist(inFolder(u"Data.tsd"))) return false;
    return makeCount(folder) && placeControl(files_, folder, inFolder(Text(kControlFile)), encoding, text);
}

std::shared_ptr<clsTSDB> DatabasesTopic::OpenTSDB(TextView DBName, bool ReadOnly, bool SingleUse) {
    auto database = std::make_shared<clsTSDB>(files_);
    const int32 error = database->Oeffne(DBName, ReadOnly, SingleUse);
    rtmMain::state().F = error;
    if (error != 0) return nullptr;
    std::erase_if(opened_, [](const auto& weak) { return weak.expired(); });
    opened_.push_back(database);
    return database;
}

std::shared_ptr<clsTSDB> DatabasesTopic::OpenReference(TextView Ordner, TextView DBName) {
    if (Ordner.empty()) return nullptr;
    const Text name = FilesTopic::MakePath({Variant(Text(Ordner)), Variant(Text(DBName))});
    for (Waiting wait;;) {
        auto database = OpenTSDB(name, true);
        if (database && !database->IsEmptyView()) return database;
        if (!database && rtmMain::state().F != kLocked) return nullptr;
        if (wait.longerThan(rtmMain::state().netWait) || rtmMain::state().stopping) return nullptr;
        wait.pause();
    }
}

Text DatabasesTopic::SupportDBPath() {
    Text& known = rtmMain::state().supportDBPath;
    if (!known.empty()) return known;
    known = FilesTopic::PathName(rtmMain::state().hostPath);
    std::vector<Text> databases;
    if (FilesTopic::GetAllFiles(known, u"*.DBD", databases, false, -1, false, true) == 0)
        known = FilesTopic::MakePath(
            {Variant(rtmMain::SpecialFolder(static_cast<int32>(platform::FolderId::commonProgramFiles))),
             Variant(u"Tessarol")});
    return known;
}

void DatabasesTopic::CloseRTMDBs() noexcept {
    for (const auto& weak : std::exchange(opened_, {}))
        if (const auto database = weak.lock()) database->Schliesse();
}

bool DatabasesTopic::Dauerhaft() const { return rtmMain::state().durable; }
void DatabasesTopic::Dauerhaft(bool value) { rtmMain::state().durable = value; }

void DatabasesTopic::DB_Lock(int32 FileNummer, int32 Satz, int32 Warten, bool DB) {
    lockWithWait(files_.messages(), files_.file(FileNummer), {Satz, Warten, DB});
}

}  // namespace tsRtm
