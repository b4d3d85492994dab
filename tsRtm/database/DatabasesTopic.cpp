#include "tsRtm/database/DatabasesTopic.hpp"

#include "tsRtm/database/CountFile.hpp"
#include "tsRtm/database/LockWait.hpp"
#include "tsRtm/frame/files/clsStreamWriter.hpp"
#include "tsRtm/frame/rtmMain.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

constexpr TextView kDatabaseEnd = u".DBD";
constexpr TextView kMaskEnd = u".MASKE";
constexpr std::size_t kIndexCharacters = 9;

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

}  // namespace

bool DatabasesTopic::DB_Create(TextView DB, const TSIOArray& DatenFeld, int32 Saetze, TextView Index) {
    return DBCreateExt(DBAnsi, DB, {}, DatenFeld, Saetze, Index);
}

bool DatabasesTopic::DBCreateExt(eDBTyp Typ, TextView DB, TextView Maske, const TSIOArray& DatenFeld,
                                 int32 Saetze, TextView Index) {
    const Text folder = withEnd(DB, kDatabaseEnd);
    const Text target = FilesTopic::MakePath(
        {Variant(folder), Variant(Maske.empty() ? Text(u"Control.tsd") : withEnd(Maske, kMaskEnd))});
    if (!makeFolders(folder)) return false;
    {
        clsStreamWriter writer;
        const auto encoding = Typ == DBAscii || Typ == DBAnsi ? ANSI1252 : UTF8;
        if (!writer.Init(files_, target, encoding)) return false;
        // What is left of a text that is no multiple of nine is ignored: 17 characters are one index.
        const std::size_t indexes = Index.size() / kIndexCharacters;
        writer.WriteLine(u"TS" + toText(Typ) + u"," + toText(static_cast<int64>(DatenFeld.size())));
        for (const auto& field : DatenFeld) writer.WriteLine(fieldLine(*field));
        writer.WriteLine(u"1," + toText(Saetze) + u"," + toText(static_cast<int64>(indexes)));
        for (std::size_t i = 0; i < indexes; ++i) writer.WriteLine(indexLine(Index, i));
    }
    // A mask counts as normal only to those who asked for one.
    if (!Maske.empty()) return false;
    clsStreamWriter count;
    if (!count.Init(files_, FilesTopic::MakePath({Variant(folder), Variant(u"Count.tsd")}), ANSI1252))
        return false;
    count.WriteString(fromAnsi(countFormat::initialText()));
    return true;
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

void DatabasesTopic::CloseRTMDBs() noexcept {
    for (const auto& weak : std::exchange(opened_, {}))
        if (const auto database = weak.lock()) database->Schliesse();
}

void DatabasesTopic::DB_Lock(int32 FileNummer, int32 Satz, int32 Warten, bool DB) {
    lockWithWait(files_.messages(), files_.file(FileNummer), {Satz, Warten, DB});
}

}  // namespace tsRtm
