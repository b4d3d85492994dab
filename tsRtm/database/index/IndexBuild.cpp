#include "tsRtm/database/index/IndexBuild.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/database/index/FlatFile.hpp"
#include "tsRtm/database/index/TreeWriter.hpp"
#include "tsRtm/types/Failure.hpp"

namespace tsRtm {
namespace {

enum Phase : int32 { phaseRead = 1, phaseWrite = 2 };

// A sort key, its first bytes beside the record number: they decide nearly every comparison.
struct SortEntry {
    uint64 prefix;
    uint32 record;
    uint32 length;
    uint64 offset;  // in the room of all keys
};

uint64 prefixOf(const char* key, std::size_t length) noexcept {
    unsigned char bytes[8] = {};
    std::memcpy(bytes, key, std::min<std::size_t>(length, sizeof bytes));
    uint64 out = 0;
    for (const auto byte : bytes) out = out << 8 | byte;
    return out;
}

// Reports each hundredth of a work.
class Progress {
 public:
    Progress(const WorkProgress& tell, Phase phase, int32 sum) : tell_(tell), phase_(phase), sum_(sum) {}
    void operator()(int32 done) {
        if (done < next_) return;
        next_ = done + std::max(1, sum_ / 100);
        if (tell_) tell_(phase_, done, sum_);
    }

 private:
    const WorkProgress& tell_;
    Phase phase_;
    int32 sum_;
    int32 next_ = 1;
};

class KeySorter {
 public:
    KeySorter(RecordStore& store, const IndexKeys& keys) : store_(store), keys_(keys) {}

    std::vector<int32> sorted(const WorkProgress& tell) {
        collect(tell);
        const char* keys = room_.data();
        std::sort(entries_.begin(), entries_.end(), [keys](const SortEntry& a, const SortEntry& b) {
            if (a.prefix != b.prefix) return a.prefix < b.prefix;
            const std::size_t common = std::min(a.length, b.length);
            const int order =
                common > 8 ? std::memcmp(keys + a.offset + 8, keys + b.offset + 8, common - 8) : 0;
            if (order != 0) return order < 0;
            return a.length != b.length ? a.length < b.length : a.record < b.record;
        });
        std::vector<int32> out;
        out.reserve(entries_.size());
        for (const auto& entry : entries_) out.push_back(static_cast<int32>(entry.record));
        return out;
    }

 private:
    void collect(const WorkProgress& tell) {
        const int32 count = store_.count();
        entries_.reserve(static_cast<std::size_t>(count));
        room_.reserve(static_cast<std::size_t>(count) * 24);
        Progress progress(tell, phaseRead, count);
        Bytes record;
        for (int32 n = 1; n <= count; ++n) {
            const std::size_t offset = room_.size();
            keys_.appendSortKey(room_, store_.view(n, record));
            const std::size_t length = room_.size() - offset;
            entries_.push_back({prefixOf(room_.data() + offset, length), static_cast<uint32>(n),
                                static_cast<uint32>(length), offset});
            progress(n);
        }
        store_.bytes().check();
    }

    RecordStore& store_;
    const IndexKeys& keys_;
    Bytes room_;
    std::vector<SortEntry> entries_;
};

void writeFlat(FlatFile file, const std::vector<int32>& records) {
    FlatFile::Array array;
    array.reserve(records.size());
    for (const int32 record : records) array.push_back(static_cast<int16>(record));
    file.reserve(static_cast<int32>(array.size()));
    file.store(array, 0, array.size());
}

void writeTree(TreeWriter& writer, const std::vector<int32>& records, const WorkProgress& tell) {
    Progress progress(tell, phaseWrite, static_cast<int32>(records.size()));
    int32 done = 0;
    for (const int32 record : records) {
        writer.add(record);
        progress(++done);
    }
    writer.finish();
}

}  // namespace

std::vector<int32> recordsInOrder(RecordStore& store, const IndexKeys& keys, const WorkProgress& progress) {
    return KeySorter(store, keys).sorted(progress);
}

void buildNewIndex(platform::File& file, IndexFileForm form, const std::vector<int32>& records, int32 index,
                   const WorkProgress& progress) {
    if (form == IndexFileForm::flat) return writeFlat(FlatFile(file, false), records);
    TreeWriter writer(file, index);
    writeTree(writer, records, progress);
}

void rebuildIndex(platform::File& file, IndexFileForm form, const std::vector<int32>& records, int32 index) {
    if (form == IndexFileForm::flat) return writeFlat(FlatFile(file), records);
    TreeWriter writer(file, index, records.size());
    writeTree(writer, records, {});
}

}  // namespace tsRtm
