#include "tsRtm/database/upkeep/LostFiles.hpp"

#include <algorithm>

#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/text/CodePages.hpp"

namespace tsRtm {
namespace {

constexpr TextView kData = u"Data.tsd";
constexpr TextView kDataBeside = u"Data.tmp";

// The whole of a small file, as far as it can be read.
Bytes readable(const Text& name) {
    auto file = rtmMain::system().files.open(name, {});
    if (!file) return {};
    const auto size = (*file)->size();
    if (!size || *size == 0) return {};
    Bytes bytes(*size, '\0');
    const auto got = (*file)->readAt(0, std::as_writable_bytes(std::span(bytes)));
    return got && *got == bytes.size() ? bytes : Bytes();
}

uint64 sizeOf(const Text& name) {
    const auto status = rtmMain::system().files.status(name);
    return status ? status->size : 0;
}

// Its last line is "0".
bool isWholeControl(BytesView text) {
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) text.remove_suffix(1);
    return text.ends_with("\n0") || text.ends_with("\r0");
}

bool hasFilledStores(const DatabaseFolder& folder) {
    std::vector<Text> files;
    for (const TextView pattern : {u"Memo-*", u"KetteDat.*"})
        FilesTopic::GetAllFiles(folder.name, pattern, files, true);
    return std::any_of(files.begin(), files.end(),
                       [](const Text& name) { return !name.empty() && sizeOf(name) > 0; });
}

}  // namespace

void recoverControl(const DatabaseFolder& folder) {
    const Text control = folder.path(kControlFile);
    const Text beside = folder.path(u"Control.tmp");
    if (folder.readOnly || FilesTopic::Exist(control) || !FilesTopic::Exist(beside)) return;
    if (!isWholeControl(readable(beside))) return;
    rtmMain::DebugLog(folder.name + u": Control.tsd fehlte, Control.tmp tritt an die Stelle");
    static_cast<void>(rtmMain::system().files.rename(beside, control, false));
}

std::vector<Text> unfinishedWork(const DatabaseFolder& folder) {
    std::vector<Text> lines;
    for (const Text& name : folder.fileNames()) {
        const Text capitals = upper(name);
        if (capitals == upper(MemoStores::kLeftover) || capitals == u"KETTE.TMP" ||
            capitals.starts_with(u"KETTETMP."))
            lines.push_back(name + u": eine Reorganisation wurde nicht beendet, ihre Datei bleibt liegen");
    }
    return lines;
}

DataFile recoverData(OpenDatabase& d) {
    const Text data = d.folder.path(kData);
    if (FilesTopic::Exist(data)) {
        const Text left = d.folder.path(kDataBeside);
        if (d.folder.readOnly || !FilesTopic::Exist(left)) return DataFile::there;
        // Nobody reorganises while Count.tsd is open here: an older program died in packing, and may have
        // given the arrays the new numbers already. Written over, its tail would live again.
        rtmMain::DebugLog(d.folder.name + u": Data.tmp blieb zurück, die Indizes werden neu aufgebaut");
        return platform::failed(rtmMain::system().files.remove(left)) ? DataFile::there : DataFile::recovered;
    }
    const int32 count = roundToInt32(Val(fromAnsi(readable(d.folder.path(u"Count.tsd")))));
    const Text beside = d.folder.path(kDataBeside);
    const uint64 size = sizeOf(beside);
    if (count > 0 && !d.folder.readOnly && size == uint64{d.layout.bytes()} * static_cast<uint64>(count) &&
        !platform::failed(rtmMain::system().files.rename(beside, data, false))) {
        rtmMain::DebugLog(d.folder.name + u": Data.tsd fehlte, Data.tmp tritt an die Stelle");
        return DataFile::recovered;
    }
    if (count < 1 && !hasFilledStores(d.folder)) return DataFile::there;
    // In a new database another program has made it since, and what was counted are its first records.
    if (FilesTopic::Exist(data)) return DataFile::there;
    d.folder.messages().TSMsgBox(u"Die Datei \"" + data +
                                     u"\" fehlt.@Die Datenbank enthielt Daten und wird nicht geöffnet, damit "
                                     u"nichts überschrieben wird.",
                                 dlgCritical, u"clsTSDB.Oeffne");
    return DataFile::lost;
}

}  // namespace tsRtm
