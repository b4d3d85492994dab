#include "tsRtm/database/writing/OpenDatabase.hpp"

#include <set>

#include "tsRtm/database/writing/ChainMemos.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/state/State.hpp"

namespace tsRtm {
namespace {

constexpr int32 kBigFrom = 32768;
constexpr uint64 kSniffFrom = 2;

// The name of an index file has three digits of its first field. One file has one order: of indexes that
// would share it the first one is kept.
void leaveOutSharing(clsControl& control) {
    std::set<int32> digits;
    for (int32 number = 1; number <= control.Indizes();) {
        if (digits.insert(control.Index(number) % 1000).second) {
            ++number;
            continue;
        }
        rtmMain::DebugLog(u"Index " + toText(number) +
                          u" hat die Datei eines anderen und bleibt ohne Wirkung");
        control.IndexWeg(number);
    }
}

}  // namespace

OpenDatabase::OpenDatabase(FilesTopic& files) : folder(files) {
    guard.eachFile = [this](const std::function<void(platform::File&)>& work) {
        if (store) work(store.bytes().file());
        indexes.eachFile(work);
        memos.eachFile(work);
        chains.eachFile(work);
    };
    log.inPlace = [this] { return count && count.inPlace(); };
    log.flushFiles = [this] {
        for (auto* const file :
             {store ? &store.bytes().file() : nullptr, changes ? &changes.file() : nullptr})
            if (const auto error = file ? file->flush() : platform::SystemError::none;
                platform::failed(error))
                raiseFileFailure(error, file->name());
    };
}

std::unique_ptr<RowMemos> OpenDatabase::memosOf(ChainStore& chain) {
    return std::make_unique<ChainMemos>(
        chain, MemoStores::Parts{folder, count, store, locks, guard, chain.rows().layout()});
}

MemoStores* OpenDatabase::rowMemos(const ChainStore& chain) {
    return chain.memos() ? &static_cast<ChainMemos*>(chain.memos())->stores() : nullptr;
}

bool OpenDatabase::readStructure() {
    control = std::make_shared<clsControl>(folder.files);
    bool dos = true;
    if (!control->Oeffne(folder.path(kControlFile), dos)) return false;
    leaveOutSharing(*control);
    layout = RecordLayout(*control, control->IstUnicode(), dos);
    // Nothing on disk says so: a change of MaxRecords across this number needs new index files.
    indexes.define(*control, layout, control->MaxRecords() >= kBigFrom);
    memos.define(*control);
    chains.define(control, layout);
    return true;
}

// A data file in UTF-16 gives itself away by its high bytes. The flag reaches only those who ask the control:
// how the records are read was settled before, by the control file.
void OpenDatabase::sniffUnicode() {
    if (store.bytes().knownSize() < 6) return;
    char bytes[4] = {};
    store.bytes().read(kSniffFrom, bytes);
    control->IstUnicode(static_cast<uint8>(bytes[1]) < 10 || static_cast<uint8>(bytes[3]) < 10);
}

bool OpenDatabase::openData() {
    opened.data = folder.files.OpenBinaryAPI(folder.path(u"Data.tsd"), !folder.filesWritable, folder.shared);
    if (opened.data == 0) return false;
    guard.opened(folder.files.handleFile(opened.data));
    store = RecordStore(folder.files.handleFile(opened.data), layout, folder.shared);
    refreshCount();
    sniffUnicode();
    return true;
}

bool OpenDatabase::openChanges() {
    const Text name = folder.path(ChangeCount::kFileName);
    const bool exists = FilesTopic::Exist(name);
    // Nobody of ours has written yet where it is missing.
    if (!folder.filesWritable && !exists) return false;
    opened.changes = folder.open(ChangeCount::kFileName, true);
    if (opened.changes == 0) return false;
    // Whoever may write to the database needs it.
    if (!exists) static_cast<void>(rtmMain::system().files.copyAccess(count.file().name(), name));
    changes = ChangeCount(folder.files.file(opened.changes));
    return true;
}

void OpenDatabase::refreshCount() {
    if (!store) return;
    if (changes) guard.lookAnew();
    store.refresh();
    refreshed_ = rtmMain::system().clock.elapsed();
}

void OpenDatabase::refreshWhenDue() {
    if (!folder.shared || !store) return;
    if (rtmMain::system().clock.elapsed() - refreshed_ > std::chrono::seconds(6 * rtmMain::state().netWait))
        refreshCount();
}

void OpenDatabase::refreshWhenChanged() {
    refreshWhenDue();
    if (!folder.shared || !store || !changes) return;
    // Asked first: what comes behind it is another change.
    const uint64 now = changes.value();
    if (now != refreshedAt_) refreshCount();
    refreshedAt_ = now;
}

void OpenDatabase::read(int32 record, uint32 offset, std::span<char> into) {
    // A handler within an update of this program sees the records as they are.
    if (!store.tears(record, offset, offset + into.size()) || UpdateMarks::underWayHere(count))
        return store.readPart(record, offset, into);
    const auto copied = [&] {
        store.readPart(record, offset, into);
        return true;
    };
    // Who may not complete it in the file sees it as it is to be.
    const auto completed = [&] {
        copied();
        const auto left = marks.kept();
        for (std::size_t i = 0; left.record == record && i < left.bytes.size(); ++i)
            if (const std::size_t at = left.offset + i; at >= offset && at < offset + into.size())
                into[at - offset] = left.bytes[i];
        return true;
    };
    watch.steady([&](uint64) { return copied(); }, completed);
}

void OpenDatabase::readRun(int32 first, int32 howMany, Bytes& into) {
    const std::size_t length = layout.bytes();
    into.resize(length * static_cast<std::size_t>(howMany));
    guard.lookAnew();
    if (watch.undisturbed([&] { store.readRun(first, into); })) return;
    // Somebody is at work, or died in it: those that lie in two pages are read one by one.
    store.readRun(first, into);
    for (std::size_t at = 0; at < into.size(); at += length, ++first)
        if (store.tears(first, 0, length)) read(first, 0, std::span(into).subspan(at, length));
}

void OpenDatabase::flush() {
    const auto toDevice = [](platform::File& file) { static_cast<void>(file.flush()); };
    if (serial) toDevice(serial.file());
    if (changes) toDevice(changes.file());
    guard.eachFile(toDevice);
}

void OpenDatabase::close() noexcept {
    marks.giveUp();
    memos.releaseWaiting(MemoStores::When::now);
    // While all files are open: what is not on the device then would be missed by nobody.
    if (count) sign.leave([this] { flush(); }, [this] { log.forget(); });
    log.close();
    memos.close();
    serial = SerialNumber();
    folder.close(opened.serial);
    indexes.clear();
    chains.clear();
    store = RecordStore();
    folder.closeHandle(opened.data);
    changes = ChangeCount();
    folder.close(opened.changes);
    count = CountFile();
    folder.close(opened.count);
    guard.closed();
    reorganisation.forget();
    locks.forget();
}

}  // namespace tsRtm
