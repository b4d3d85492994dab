#include <initializer_list>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/runtime/Folders.hpp"
#include "tsRtm/frame/runtime/LocaleForms.hpp"
#include "tsRtm/frame/runtime/StartSequence.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm::rtmMain {

namespace {

using platform::FolderId;
using platform::HKeys;

constexpr TextView rootKey = u"Software\\Tessarol";
constexpr TextView ourFolder = u"Tessarol";
constexpr TextView oldProgram = u"TSRtm.exe";
constexpr int32 writeInto = 2 + 4 + 64;  // add a file, add a subfolder, delete a child
constexpr int32 defaultNetWait = 5;      // seconds

bool userSwitch(TextView name) { return SwitchValue(RegRaw(HKeys::currentUser, rootKey, name)) != 0; }

Text folder(FolderId id) { return SpecialFolder(static_cast<int32>(id)); }

bool endsInDelimiter(TextView path) { return !path.empty() && isDelimiter(path.back()); }

// Does not tell a missing file from a locked one.
bool canBeRead(TextView path) {
    const platform::OpenRequest request{platform::Access::read, platform::Sharing::all,
                                        platform::Disposition::openExisting};
    return system().files.open(path, request).ok();
}

// Without a delimiter at the end.
Text hostFolder() {
    const Text host = system().system.hostPath();
    const auto last = host.find_last_of(u"\\/");
    return last == Text::npos ? Text{} : host.substr(0, last);
}

void logOperatingSystem() {
    auto& ground = system().system;
    state().os = ground.osVersion();
    DebugLog(Text(u"GetVersionEx OSVERSIONINFOEX:") + (state().os.extended ? u"1" : u"0"));
    if (!state().os.extended) DebugLog(u"GetVersionEx OSVERSIONINFO:1");
    state().processor = ground.processor();
    DebugLog(u"GetSystemInfo: ProcessorType " + toText(state().processor.type));
}

void readLanguage() {
    auto& locale = system().locale;
    state().lcid = locale.lcid();
    DebugLog(u"GetUserDefaultLCID: " + toText(state().lcid));
    state().langId = locale.langId();
    DebugLog(u"GetUserDefaultLangID: " + toText(state().langId));
    state().codePage = locale.codePage();
    DebugLog(u"GetACP: " + toText(state().codePage));
}

// "\\server\share" up to the delimiter behind its third character, "X:\" of a path with a drive, else empty.
Text volumeRoot(const Text& path) {
    if (path.size() >= 2 && isDelimiter(path[0]) && isDelimiter(path[1])) {
        const auto end = path.find_first_of(u"\\/", 3);
        return end == Text::npos ? path + PathDelimiter() : path.substr(0, end + 1);
    }
    if (path.size() >= 2 && path[1] == u':') return path.substr(0, 2) + PathDelimiter();
    return {};
}

// For the log only: paths are held to 260 characters whatever the volume says.
void logVolume() {
    if (!state().debugging) return;
    const Text root = volumeRoot(hostFolder());
    const auto volume = system().system.volumeInfo(root);
    DebugLog(u"GetVolumeInformation " + root + u" - FSName:" + volume.fileSystem + u" - MaxPathLength:" +
             toText(int64{volume.maxComponent} + 5));
}

// A folder that ends in the delimiter is taken unchecked; any other must hold the program, or both folders
// are dropped. Installations rely on either.
void readInstalledFolders() {
    auto& our = state();
    our.runtimeDir = RegRaw(HKeys::localMachine, rootKey, u"RunTimeDir");
    our.runtimeDataDir = RegRaw(HKeys::localMachine, rootKey, u"RunTimeDataDir");
    if (our.runtimeDir.empty() || endsInDelimiter(our.runtimeDir)) return;
    our.runtimeDir += PathDelimiter();
    if (canBeRead(our.runtimeDir + Text(oldProgram))) return;
    our.runtimeDir.clear();
    our.runtimeDataDir.clear();
}

// The first drive of C to Z, then B, then A that holds an old installation. Only a ground with drive letters
// has any.
void searchOldInstallation() {
    if (PathDelimiter() != u"\\") return;
    for (const char16_t drive : TextView(u"CDEFGHIJKLMNOPQRSTUVWXYZBA")) {
        const Text candidate = Text(1, drive) + u":\\Tessarol\\";
        if (!canBeRead(candidate + Text(oldProgram))) continue;
        state().runtimeDir = candidate;
        return;
    }
}

// Without a delimiter at the end, unlike the folder of an old installation.
Text commonRuntimeFolder() {
    Text base = folder(FolderId::commonProgramFiles);
    if (base.empty()) base = folder(FolderId::programFiles);
    const Text ours = JoinPath({base, ourFolder});
    return !base.empty() && EnsureFolder(ours) ? ours : hostFolder();
}

void findRuntimeDir() {
    auto& our = state();
    readInstalledFolders();
    if (our.runtimeDir.empty()) searchOldInstallation();
    our.oldTS = !our.runtimeDir.empty();
    if (our.oldTS) {
        DebugLog(u"RuntimeDir OldTS: " + our.runtimeDir);
        return;
    }
    our.runtimeDir = commonRuntimeFolder();
    DebugLog(u"RuntimeDir: " + our.runtimeDir);
}

// The first candidate below which our folder can be written to, else the documents, unchecked. The user's
// own is made where it is missing: who never ran a program has none yet.
Text writableFolder(std::initializer_list<FolderId> candidates) {
    for (const auto id : candidates) {
        const Text base = system().system.folder(id, id == FolderId::applicationData);
        if (base.empty()) continue;
        Text ours = JoinPath({base, ourFolder});
        if (EnsureFolder(ours) && CheckAccess(ours, 1, writeInto)) return ours;
    }
    const Text documents = folder(FolderId::documents);
    Text ours = JoinPath({documents, ourFolder});
    // Without a folder of documents the name is relative: nothing is made where the program happens to stand.
    if (!documents.empty()) EnsureFolder(ours);
    return ours;
}

void findDataFolders() {
    auto& our = state();
    if (our.runtimeDataDir.empty())
        our.runtimeDataDir = writableFolder({FolderId::commonApplicationData, FolderId::applicationData});
    DebugLog(u"RuntimeDataDir: " + our.runtimeDataDir);
    our.userDir = writableFolder({FolderId::applicationData});
    DebugLog(u"UserDir: " + our.userDir);
}

void readHostPath() {
    state().hostPath = CutAtNul(system().system.hostPath());
    DebugLog(u"GetModuleFileName: " + state().hostPath);
}

void readSwitches() {
    state().expert = userSwitch(u"Expert");
    const int32 seconds = SwitchValue(RegRaw(HKeys::currentUser, rootKey, u"NetWait"));
    state().netWait = seconds == 0 ? defaultNetWait : seconds;
}

}  // namespace

void runStartSequence() {
    state().debugging = userSwitch(u"Debug");
    DebugLog(u"Start Rtm " + GeneralDate(system().clock.now()));
    logOperatingSystem();
    readLanguage();
    logVolume();
    ReadLocaleInfos();
    DebugLog(u"ReadLocaleInfos done");
    ReadSystemMetrics();
    DebugLog(u"ReadSystemMetrics done");
    findRuntimeDir();
    findDataFolders();
    readHostPath();
    readSwitches();
}

}  // namespace tsRtm::rtmMain
