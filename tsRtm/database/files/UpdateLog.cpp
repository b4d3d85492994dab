#include "tsRtm/database/files/UpdateLog.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/database/files/SectorMending.hpp"
#include "tsRtm/frame/ground/Ground.hpp"
#include "tsRtm/frame/runtime/DebugLog.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

struct Head {
    uint64 run = 0;
    uint64 place = 0;
    uint32 now = 0;
    uint32 before = 0;
    uint32 isNew = 0;
    uint32 reserved = 0;
    uint64 sum = 0;
};
static_assert(sizeof(Head) == 40);

constexpr uint64 kFull = uint64{1} << 20;
// The file grows before it is needed: a flush that finds the length as it was is the quicker one.
constexpr uint64 kGrain = uint64{64} << 10;
constexpr uint32 kLongestChange = uint32{1} << 24;  // whatever a damaged file asks for

uint64 sumOf(Head head, uint64 offset, BytesView bytes) noexcept {
    head.sum = offset;
    uint64 sum = byteSum({reinterpret_cast<const char*>(&head), sizeof head});
    return sum ^ byteSum(bytes, sum);
}

constexpr uint64 lengthOf(std::size_t now, std::size_t before) noexcept {
    return (sizeof(Head) + now + before + 7) / 8 * 8;
}

}  // namespace

bool UpdateLog::open(bool toMake) {
    if (file_ != 0) return true;
    const bool isThere = FilesTopic::Exist(folder_.path(kFileName));
    if (!isThere && !toMake) return false;
    if (!inPlace || inPlace()) file_ = folder_.open(kFileName, folder_.shared);
    if (file_ == 0) raiseFileFailure(platform::SystemError::sharingViolation, folder_.path(kFileName));
    bytes_ = BlockFile(folder_.files.file(file_));
    if (!isThere) must(rtmMain::system().files.flushFolder(folder_.name), bytes_.file());
    return true;
}

void UpdateLog::close() noexcept {
    bytes_ = BlockFile();
    run_ = end_ = 0;
    last_.reset();
    folder_.close(file_);
}

std::optional<UpdateLog::Entry> UpdateLog::at(uint64 offset, uint64& run) const {
    Head head;
    const bool there = bytes_.read(offset, {reinterpret_cast<char*>(&head), sizeof head}) == sizeof head;
    if (!there || head.run == 0 || (run != 0 && head.run != run)) return {};
    if (head.now > kLongestChange || (head.before != 0 && head.before != head.now)) return {};
    Bytes bytes(std::size_t{head.now} + head.before, '\0');
    if (bytes_.read(offset + sizeof head, bytes) != bytes.size()) return {};
    if (head.sum != sumOf(head, offset, bytes)) return {};
    run = head.run;
    return Entry{head.place, bytes.substr(0, head.now), bytes.substr(head.now), head.isNew != 0};
}

void UpdateLog::catchUp() {
    bytes_.refreshSize();
    uint64 run = 0;
    if (!at(0, run) || run != run_) {
        run_ = run;
        end_ = 0;
        last_.reset();
    }
    while (run_ != 0) {
        auto entry = at(end_, run_);
        if (!entry) break;
        end_ += lengthOf(entry->now.size(), entry->before.size());
        last_ = std::move(entry);
    }
}

bool UpdateLog::lastIsDone(const BlockFile& data) const {
    if (!last_) return true;
    Bytes there(last_->now.size(), '\0');
    return data.read(last_->place, there) == there.size() && there == last_->now;
}

void UpdateLog::note(BlockFile& data, const Overwriting& what) {
    open(true);
    catchUp();
    if (end_ + lengthOf(what.now.size(), what.before.size()) > kFull || !lastIsDone(data))
        empty(Emptied::soon);
    if (run_ == 0) {
        must(rtmMain::system().random.fill(std::as_writable_bytes(std::span(&run_, 1))), bytes_.file());
        run_ |= 1;
    }
    Head head{run_,
              what.place,
              static_cast<uint32>(what.now.size()),
              static_cast<uint32>(what.before.size()),
              what.isNew ? 1u : 0u,
              0,
              0};
    Bytes bytes(what.now);
    bytes.append(what.before);
    head.sum = sumOf(head, end_, bytes);
    bytes.insert(0, reinterpret_cast<const char*>(&head), sizeof head);
    bytes.resize(lengthOf(what.now.size(), what.before.size()), '\0');
    if (const uint64 needed = end_ + bytes.size(); needed > bytes_.knownSize())
        bytes_.write(bytes_.knownSize(),
                     Bytes((needed + kGrain - 1) / kGrain * kGrain - bytes_.knownSize(), '\0'));
    bytes_.write(end_, bytes);
    must(bytes_.file().flush(), bytes_.file());
    end_ += bytes.size();
    last_ = Entry{what.place, Bytes(what.now), Bytes(what.before), what.isNew};
}

void UpdateLog::empty(Emptied when) {
    if (!open(false)) return;
    flushFiles();
    forget();
    if (when == Emptied::surely) must(bytes_.file().flush(), bytes_.file());
}

void UpdateLog::forget() {
    if (!open(false)) return;
    if (bytes_.refreshSize() >= sizeof(uint64)) bytes_.write(0, Bytes(sizeof(uint64), '\0'));
    run_ = end_ = 0;
    last_.reset();
}

int32 UpdateLog::replay(BlockFile& data) {
    if (!open(false)) return 0;
    run_ = 0;
    bytes_.refreshSize();
    SectorMending mending;
    std::vector<Entry> entries;
    uint64 offset = 0, run = 0;
    while (auto entry = at(offset, run)) {
        offset += lengthOf(entry->now.size(), entry->before.size());
        entries.push_back(std::move(*entry));
    }
    for (const auto& entry : entries) mending.add({entry.place, entry.now, entry.before, entry.isNew});
    const int32 mended = mending.mend(data);
    empty(Emptied::surely);
    return mended;
}

}  // namespace tsRtm
