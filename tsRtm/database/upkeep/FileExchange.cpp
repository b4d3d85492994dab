#include "tsRtm/database/upkeep/FileExchange.hpp"

#include <algorithm>

#include "tsRtm/database/files/BlockFile.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

using platform::SystemError;

constexpr TextView kLock = u"Lock.tsd";
constexpr TextView kNew = u".tmp";
constexpr TextView kOld = u".old";
// The text of the commit on its way.
constexpr TextView kCommit = u"Control.tsd.new";
constexpr std::string_view kHead = "TS3,0\r\nexchange\r\n";
constexpr std::string_view kReplace = "replace,";
constexpr std::string_view kRemove = "remove,";
constexpr std::chrono::milliseconds kPause{5};
constexpr std::chrono::microseconds kMoment{200};

platform::FileSystem& files() { return rtmMain::system().files; }

SystemError codeOf(SystemError error) noexcept { return error; }
template <class T>
SystemError codeOf(const platform::Result<T>& result) noexcept {
    return result.error();
}

// Who opens the database reads the control, and who exchanges renames it: for a moment one of them is in the
// other's way. Waits for NetWait seconds, without the program's events: files are closed.
template <class Step>
auto silently(Step step) {
    auto& clock = rtmMain::system().clock;
    const auto end = clock.elapsed() + std::chrono::seconds(rtmMain::state().netWait);
    for (;;) {
        auto outcome = step();
        if (codeOf(outcome) != SystemError::sharingViolation || clock.elapsed() > end) return outcome;
        clock.sleep(kMoment);
    }
}

void rename(const Text& from, const Text& to) {
    must(silently([&] { return files().rename(from, to, true); }), to);
}

// A name of which nobody can tell is a failure: a step passed over would mix old files with new ones.
bool exists(const Text& name) {
    const auto error = files().status(name).error();
    if (error != SystemError::fileNotFound && error != SystemError::pathNotFound) must(error, name);
    return !platform::failed(error);
}

void flushFolder(const DatabaseFolder& folder) { must(files().flushFolder(folder.name), folder.name); }

std::unique_ptr<platform::File> makeEmpty(const Text& name) {
    auto made = files().open(
        name, {platform::Access::readWrite, platform::Sharing::none, platform::Disposition::createEmpty});
    if (!made) raiseFileFailure(made.error(), name);
    return std::move(*made);
}

void writeWhole(const Text& name, BytesView bytes) {
    const auto file = makeEmpty(name);
    must(file->writeAt(0, std::as_bytes(std::span(bytes.data(), bytes.size()))), name);
    must(file->flush(), name);
}

Bytes contentOf(const Text& name) {
    const auto file = silently([&] { return files().open(name, {}); });
    const auto size = file ? (*file)->size() : platform::Result<uint64>(file.error());
    if (!size) raiseFileFailure(size.error(), name);
    Bytes bytes(*size, '\0');
    const auto got = (*file)->readAt(0, std::as_writable_bytes(std::span(bytes)));
    if (!got) raiseFileFailure(got.error(), name);
    bytes.resize(*got);
    return bytes;
}

void step(const DatabaseFolder& folder, TextView name, bool replaces) {
    const Text place = folder.path(name);
    const Text fresh = place + Text(kNew);
    // Done already: each step may come again after a death.
    if (replaces && !exists(fresh)) return;
    if (exists(place)) rename(place, place + Text(kOld));
    if (replaces) rename(fresh, place);
}

// What a commit tells, all of it, and the true control in its place at the end.
void carryOut(const DatabaseFolder& folder, BytesView text) {
    BytesView lines = text.substr(kHead.size());
    while (!lines.empty()) {
        const BytesView line = lines.substr(0, lines.find("\r\n"));
        lines.remove_prefix(std::min(line.size() + 2, lines.size()));
        if (line.starts_with(kReplace)) step(folder, fromUtf8(line.substr(kReplace.size())), true);
        if (line.starts_with(kRemove)) step(folder, fromUtf8(line.substr(kRemove.size())), false);
    }
    flushFolder(folder);
    const Text control = folder.path(kControlFile);
    rename(control + Text(kNew), control);
    flushFolder(folder);
}

// What exchanges leave: old files, new ones that were never put in place. Control.tmp and Data.tmp are
// others'.
bool isLeftover(const Text& name) {
    const Text capitals = upper(name);
    if (!capitals.ends_with(u".OLD") && !capitals.ends_with(u".TMP") && !capitals.ends_with(u".NEW"))
        return false;
    const Text base = capitals.substr(0, capitals.size() - 4);
    return base == u"DATA.TSD" || base == u"CONTROL.TSD" || base == u"INDEX.TSD" ||
           base.starts_with(u"MEMO-") || base.starts_with(u"KETTEDAT.") || base.starts_with(u"KETTECTL.") ||
           (base.size() == 4 && base.front() == u'I');
}

std::vector<Text> leftovers(const DatabaseFolder& folder) {
    auto names = folder.fileNames();
    std::erase_if(names, [](const Text& name) { return !isLeftover(name); });
    return names;
}

// Who reorganises holds Lock.tsd.
class LockFile {
 public:
    explicit LockFile(const DatabaseFolder& folder) : folder_(folder) {
        folder.files.OpenWrite(folder.path(kLock), number_);
    }
    ~LockFile() { folder_.close(number_); }
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    explicit operator bool() const noexcept { return number_ != 0; }

 private:
    const DatabaseFolder& folder_;
    int32 number_ = 0;
};

bool isCommit(BytesView text) noexcept { return text.starts_with(kHead); }

Bytes controlNow(const DatabaseFolder& folder) {
    const Text name = folder.path(kControlFile);
    return exists(name) ? contentOf(name) : Bytes();
}

void takeAwayLeftovers(const DatabaseFolder& folder) {
    const LockFile lock(folder);
    if (!lock || isCommit(controlNow(folder))) return;
    for (const auto& name : leftovers(folder)) static_cast<void>(files().remove(folder.path(name)));
}

}  // namespace

FileExchange::~FileExchange() {
    if (committed_) return;
    for (auto& step : steps_) {
        step.file.reset();
        if (step.replaces) static_cast<void>(files().remove(folder_.path(step.name) + Text(kNew)));
    }
}

platform::File& FileExchange::make(TextView name) {
    auto file = makeEmpty(folder_.path(name) + Text(kNew));
    return *steps_.emplace_back(Step{Text(name), true, std::move(file)}).file;
}

void FileExchange::drop(TextView name) {
    if (exists(folder_.path(name))) steps_.push_back({Text(name), false, nullptr});
}

void FileExchange::commit() {
    Bytes text(kHead);
    for (auto& step : steps_) {
        if (step.file) must(step.file->flush(), step.name);
        step.file.reset();
        text.append(step.replaces ? kReplace : kRemove).append(toUtf8(step.name)).append("\r\n");
    }
    const Text control = folder_.path(kControlFile);
    try {
        writeWhole(control + Text(kNew), control_.empty() ? contentOf(control) : control_);
        writeWhole(folder_.path(kCommit), text);
        flushFolder(folder_);
        rename(folder_.path(kCommit), control);
    } catch (const Failure&) {
        static_cast<void>(files().remove(folder_.path(kCommit)));
        static_cast<void>(files().remove(control + Text(kNew)));
        throw;
    }
    committed_ = true;
    flushFolder(folder_);
    carryOut(folder_, text);
}

void FileExchange::discardOld() noexcept {
    for (const auto& step : steps_) try {
            const Text old = folder_.path(step.name) + Text(kOld);
            if (!exists(old)) continue;
            if (folder_.sensible)
                folder_.files.SecureKill(old);
            else if (step.name == u"Data.tsd")
                FilesTopic::Recycle(old);
            else
                static_cast<void>(files().remove(old));
        } catch (const Failure& failure) {
            rtmMain::DebugLog(failure.Description());
        }
}

bool exchangeBegun(const DatabaseFolder& folder) { return isCommit(controlNow(folder)); }

bool finishExchange(const DatabaseFolder& folder) {
    const auto patience = std::chrono::seconds(rtmMain::state().netWait);
    auto& clock = rtmMain::system().clock;
    const auto start = clock.elapsed();
    try {
        while (exchangeBegun(folder)) {
            if (folder.readOnly && clock.elapsed() - start > patience) return false;
            if (!folder.readOnly) {
                const LockFile lock(folder);
                // Read anew under the lock: it may be done by now.
                const Bytes text = lock ? controlNow(folder) : Bytes();
                if (isCommit(text)) {
                    rtmMain::DebugLog(folder.name + u": ein Austausch von Dateien wird beendet");
                    carryOut(folder, text);
                }
                if (!lock && clock.elapsed() - start > patience) return false;
            }
            clock.sleep(kPause);
        }
        if (!folder.readOnly && !leftovers(folder).empty()) takeAwayLeftovers(folder);
        return true;
    } catch (const Failure& failure) {
        rtmMain::DebugLog(failure.Source() + u": " + failure.Description());
        return false;
    }
}

}  // namespace tsRtm
