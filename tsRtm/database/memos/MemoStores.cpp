#include "tsRtm/database/memos/MemoStores.hpp"

#include <algorithm>

#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/frame/text/CodePages.hpp"
#include "tsRtm/frame/text/NumberCode.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

constexpr std::chrono::seconds kBetweenFlushes{1};
// A writer moves a text in microseconds; older programs free the old one before the pointer goes.
constexpr int32 kMostLooks = 100;
constexpr int32 kBusyLooks = 20;
constexpr std::chrono::milliseconds kPause{2};

}  // namespace

MemoStores::MemoStores(const Parts& parts) : p_(parts), scrambler_(parts.folder.messages()) {}

void MemoStores::define(const clsControl& control) {
    close();
    kinds_.assign(static_cast<std::size_t>(control.Felder()) + 1, {});
    isMemo_.assign(kinds_.size(), false);
    for (int32 i = 1; i <= control.Felder(); ++i) {
        const TSIO& field = control.field(i);
        kinds_[static_cast<std::size_t>(i)] = MemoKind(field);
        isMemo_[static_cast<std::size_t>(i)] = field.IsMemo() || field.IsBlob();
    }
}

const MemoKind* MemoStores::kindOf(int32 field) const noexcept {
    const auto i = static_cast<std::size_t>(field);
    return field > 0 && i < kinds_.size() && isMemo_[i] ? &kinds_[i] : nullptr;
}

void MemoStores::close() noexcept {
    releaseWaiting(When::now);
    waiting_.clear();  // what could not be given free stays: no file is there any more
    for (auto& [field, store] : open_) {
        store.file.reset();
        p_.folder.close(store.fileNumber);
    }
    open_.clear();
}

void MemoStores::eachFile(const std::function<void(platform::File&)>& work) {
    for (const auto& [field, store] : open_) work(store.file->file());
}

MemoFile* MemoStores::tryOpen(int32 field, Missing missing) {
    if (const auto known = open_.find(field); known != open_.end()) return known->second.file.get();
    const Text name = fileName(field);
    // A client on a share may remember that there was none: only to make it asks the server.
    const bool make = p_.folder.filesWritable && (missing == Missing::make || p_.guard.needed());
    const bool there = make || !isMissing(field);
    if (!there || !p_.count.inPlace()) return nullptr;
    Store store{p_.folder.open(name, p_.folder.shared), nullptr,
                FilesTopic::Exist(p_.folder.path(kLeftover))};
    if (store.fileNumber == 0) return nullptr;
    auto& file = p_.folder.files.file(store.fileNumber);
    p_.guard.opened(file);
    store.file = std::make_unique<MemoFile>(file);
    store.file->lastNamed = [this, field] { return lastNamed(field); };
    return open_.emplace(field, std::move(store)).first->second.file.get();
}

MemoFile* MemoStores::openForReading(int32 field) {
    using platform::SystemError;
    if (auto* const file = tryOpen(field, Missing::leave)) return file;
    const auto error = rtmMain::system().files.status(p_.folder.path(fileName(field))).error();
    if (error == SystemError::fileNotFound || error == SystemError::pathNotFound) return nullptr;
    raiseClosed(field);
}

MemoFile& MemoStores::open(int32 field) {
    if (auto* const file = tryOpen(field, Missing::make)) return *file;
    raiseClosed(field);
}

void MemoStores::raiseClosed(int32 field) const {
    raise(70, kFileFailureSource,
          u"Datei \"" + p_.folder.path(fileName(field)) + u"\" kann nicht geöffnet werden");
}

int32 MemoStores::pointerIn(BytesView record, int32 field) const {
    if (record.empty()) return 0;
    const auto& columns = p_.layout.field(field);
    const BytesView bytes = p_.layout.bytesOf(columns, record);
    return rtmMain::DecodeNumber(columns.wide ? fromUtf16Le(bytes) : fromAnsi(bytes));
}

void MemoStores::setPointer(std::span<char> record, int32 field, int32 pointer) const {
    const auto& columns = p_.layout.field(field);
    p_.layout.encode(columns, pointer > 0 ? rtmMain::EncodeNumber(pointer) : Text(),
                     record.subspan(columns.offset, columns.bytes));
}

int32 MemoStores::pointerInFile(int32 record, int32 field) const {
    Bytes bytes(p_.layout.bytes(), ' ');
    const auto& columns = p_.layout.field(field);
    p_.store.readPart(record, columns.offset, std::span(bytes).subspan(columns.offset, columns.bytes));
    return pointerIn(bytes, field);
}

int32 MemoStores::lastNamed(int32 field) const {
    int32 last = 0;
    const auto look = [&](BytesView owner) {
        const int32 pointer = pointerIn(owner, field);
        if (pointer > last && memoFormat::offsetOf(pointer) < kLongestLost) last = pointer;
    };
    if (p_.eachRow)
        p_.eachRow(look);
    else
        p_.store.each(look);
    return last;
}

// Who moves a text shows the new pointer before the old entry goes: a pointer that is the same behind the
// look proves the entry whole.
MemoEntry MemoStores::readSteadily(int32 field, const std::function<int32()>& pointerNow) {
    MemoEntry entry;
    for (int32 look = 1;; ++look) {
        const int32 pointer = pointerNow();
        MemoFile* const file = pointer > 0 ? openForReading(field) : nullptr;
        entry = file ? file->read(pointer) : MemoEntry();
        if (p_.locks.alone() || pointer < 1) break;
        // A store is made before anybody names a place in it.
        if (!file && pointerNow() == pointer) break;
        const bool gone = entry.kind == MemoEntry::Kind::none || entry.kind == MemoEntry::Kind::free;
        if (!gone && pointerNow() == pointer) break;
        if (look == kMostLooks) {
            rtmMain::DebugLog(p_.folder.path(fileName(field)) + u": kein Text an der Stelle " +
                              toText(pointer));
            break;
        }
        rtmMain::system().clock.sleep(look < kBusyLooks ? std::chrono::milliseconds(0) : kPause);
    }
    return entry;
}

Text MemoStores::textOf(int32 field, const std::function<int32()>& pointer) {
    return texts(field).decode(readSteadily(field, pointer));
}

Bytes MemoStores::bytesOf(int32 field, const std::function<int32()>& pointer) {
    return texts(field).decodeBytes(readSteadily(field, pointer));
}

Text MemoStores::text(int32 record, int32 field) {
    return textOf(field, [&] { return pointerInFile(record, field); });
}

Bytes MemoStores::bytes(int32 record, int32 field) {
    return bytesOf(field, [&] { return pointerInFile(record, field); });
}

bool MemoStores::leadsSomewhere(int32 field, int32 pointer) {
    MemoFile* const file = openForReading(field);
    const auto kind = file ? file->kindAt(pointer) : MemoEntry::Kind::none;
    return kind == MemoEntry::Kind::entry || kind == MemoEntry::Kind::raw;
}

int32 MemoStores::copy(int32 field, int32 pointer, MemoFile& to) {
    if (pointer < 1) return 0;
    const MemoEntry entry = open(field).read(pointer);
    if (entry.kind == MemoEntry::Kind::entry) {
        const bool empty = entry.head.length < 1 || entry.head.length == memoFormat::kEmptyLength;
        return empty ? 0 : to.append(entry.head, entry.payload);
    }
    if (entry.kind != MemoEntry::Kind::raw) return 0;
    // Never scrambled anew: the key file of today need not be that of its day.
    const MemoKind kind = *kindOf(field);
    const Bytes payload = kind.blob ? entry.payload : oemToAnsi(entry.payload);
    return to.append({memoFormat::ansi, 0, static_cast<int32>(payload.size())}, payload);
}

void MemoStores::release(int32 field, int32 pointer) {
    if (pointer > 0 && !keepsAll(field)) waiting_.push_back({field, pointer});
    releaseWaiting(When::due);
}

void MemoStores::releaseWaiting(When when) noexcept {
    if (waiting_.empty()) return;
    const auto now = rtmMain::system().clock.elapsed();
    if (when == When::due && (p_.locks.heldExplicitly() || now - flushed_ < kBetweenFlushes)) return;
    const DatabaseHold hold(p_.locks, DatabaseLocks::Wait::never);
    if (!hold && p_.guard.needed()) return;
    try {
        const auto todo = std::exchange(waiting_, {});
        // The new entries and the pointers to them first: else a cut of the power might leave neither text.
        for (std::size_t i = 0; i < todo.size(); ++i) {
            const bool again =
                std::any_of(todo.begin(), todo.begin() + static_cast<std::ptrdiff_t>(i),
                            [&](const Waiting& other) { return other.field == todo[i].field; });
            if (!again) must(open(todo[i].field).file().flush(), open(todo[i].field).file());
        }
        if (p_.flushOwner) p_.flushOwner();
        must(p_.store.bytes().file().flush(), p_.store.bytes().file());
        flushed_ = rtmMain::system().clock.elapsed();
        for (const auto& [field, pointer] : todo) open(field).release(pointer);
    } catch (const Failure& failure) {  // room is lost, no text
        rtmMain::DebugLog(failure.Description());
    }
}

}  // namespace tsRtm
