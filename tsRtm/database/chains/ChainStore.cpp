#include "tsRtm/database/chains/ChainStore.hpp"

#include <algorithm>
#include <atomic>
#include <chrono>

#include "tsRtm/database/files/LockWait.hpp"
#include "tsRtm/frame/MessagesTopic.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"

namespace tsRtm {
namespace {

constexpr TextView kSource = u"clsTSDB_KetteOpen";
constexpr LockRequest kFirstByte{1, -1, false};
constexpr platform::ByteRange kFirstByteRange{0, 1};
constexpr int32 kBusyWalks = 64;   // a write of a chain takes microseconds
constexpr int32 kMostWalks = 400;  // then the lock is quicker
constexpr std::chrono::microseconds kPause{100};

}  // namespace

ChainStore::ChainStore(const ChainParts& parts, const FieldLayout& field, std::shared_ptr<clsControl> rows)
    : p_(parts),
      field_(field),
      control_(std::move(rows)),
      rows_(RecordLayout(*control_, control_->IstUnicode(), !control_->IstAnsi())),
      format_(field_, rows_.layout()) {
    supply_.lastNamed = [this] { return lastNamed(); };
    if (p_.rowMemos && rows_.layout().namesPlaces()) memos_ = p_.rowMemos(*this);
}

Text ChainStore::fileName() const { return u"KetteDat." + threeDigits(control_->Anker()); }

bool ChainStore::open(bool toWrite) {
    if (isOpen()) return true;
    const Text name = path();
    const auto quoted = [&] { return u"Datei \"" + name + u"\" "; };
    if (!format_.usable()) {
        const Text text = quoted() + u"kann keine Zeilen haben: zu wenig Platz für zwei Zeiger";
        rtmMain::DebugLog(text);
        raise(numberOf(DatabaseError::badField), kSource, text);
    }
    if (!toWrite && !FilesTopic::Exist(name)) return false;
    // There already where a fault came between it and its length.
    if (handle_ == 0 && p_.count && p_.count.inPlace())
        handle_ = p_.folder.files.OpenBinaryAPI(name, !p_.folder.filesWritable, p_.folder.shared);
    if (handle_ == 0)
        raise(numberOf(DatabaseError::locked), kSource, quoted() + u"kann nicht geöffnet werden");
    auto& file = p_.folder.files.handleFile(handle_);
    p_.guard.opened(file);
    file_ = ChainFile(file, format_);
    const auto isThere = [&](const Text& other) { return FilesTopic::Exist(p_.folder.path(other)); };
    hasLeftover_ = isThere(u"Memo.tmp") || isThere(u"Kette.tmp") ||
                   isThere(u"KetteTmp." + threeDigits(control_->Anker()));
    return true;
}

bool ChainStore::openToRead() { return open(false); }

void ChainStore::openToWrite() { open(true); }

void ChainStore::close() noexcept {
    unlock();
    if (memos_) memos_->close();
    file_ = ChainFile();
    p_.folder.closeHandle(handle_);
}

// --- Walks

void ChainStore::beginWalk() {
    met_.resize(static_cast<std::size_t>(file_.refresh()) + 1, 0);
    if (++walk_ != 0) return;
    std::fill(met_.begin(), met_.end(), 0);
    walk_ = 1;
}

bool ChainStore::meets(int32 row) {
    return std::exchange(met_[static_cast<std::size_t>(row)], walk_) != walk_;
}

ChainContent ChainStore::walk(BytesView columns) {
    ChainContent out{Bytes(columns), {}, {}};
    int32 row = format_.ends(columns).first;
    if (row == 0 || !openToRead()) return out;
    beginWalk();
    while (file_.has(row, room_) && meets(row)) {
        const std::size_t from = out.bytes.size();
        out.bytes += file_.row(row, room_);
        out.rows.push_back(row);
        row = format_.next(BytesView(out.bytes).substr(from));
    }
    file_.check();
    return out;
}

int32 ChainStore::lastNamed() const {
    int32 last = 0;
    p_.records.each([&](BytesView record) {
        const ChainEnds ends = format_.ends(record.substr(field_.offset, field_.bytes));
        for (const int32 row : {ends.first, ends.last})
            if (row > last && format_.offsetOf(row) < kLongestLost) last = row;
    });
    return last;
}

int32 ChainStore::lastFrom(int32 row) {
    beginWalk();
    for (meets(row);;) {
        const int32 next = format_.next(file_.row(row, room_));
        if (!file_.has(next, room_) || !meets(next)) break;
        row = next;
    }
    file_.check();
    return row;
}

ChainContent ChainStore::look(int32 record) {
    Bytes columns(field_.bytes, ' ');
    p_.readRecord(record, field_.offset, columns);
    // Keeps the compiler from taking two looks at shared memory for one.
    std::atomic_signal_fence(std::memory_order_seq_cst);
    return walk(columns);
}

ChainContent ChainStore::steady(int32 record) {
    ChainContent last = look(record);
    if (p_.locks.alone()) return last;
    for (int32 walks = 0; walks < kMostWalks; ++walks) {
        ChainContent now = look(record);
        if (now == last) return now;
        last = std::move(now);
        if (walks >= kBusyWalks) rtmMain::system().clock.sleep(kPause);
    }
    const DatabaseHold hold(p_.locks, DatabaseLocks::Wait::silently);
    if (!hold) rtmMain::DebugLog(path() + u": eine Kette wird ständig geändert");
    return look(record);
}

ChainContent ChainStore::read(int32 record) {
    // On a share a client may remember another state of the record than of the rows.
    if (!p_.guard.needed()) return steady(record);
    return p_.watch.steady([&](uint64) { return steady(record); });
}

// --- The lock

void ChainStore::lock() {
    if (locked_ || !p_.folder.shared) return;
    const LockHooks hooks{{}, p_.locks.aboutToWait, p_.locks.givenUp};
    if (lockWithWait(p_.folder.messages(), file_.file(), kFirstByte, hooks) != 0)
        raise(numberOf(DatabaseError::locked), kSource, u"Datei \"" + path() + u"\" ist gesperrt");
    locked_ = true;
}

void ChainStore::unlock() noexcept {
    if (!std::exchange(locked_, false) || handle_ == 0) return;
    static_cast<void>(file_.file().unlock(kFirstByteRange));
}

}  // namespace tsRtm
