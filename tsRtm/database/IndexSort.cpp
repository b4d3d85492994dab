#include "tsRtm/database/IndexSort.hpp"

#include <algorithm>
#include <cstring>

#include "tsRtm/database/FlatIndex.hpp"
#include "tsRtm/database/TreeWriter.hpp"

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
    Progress(const DatabaseEvents& events, Phase phase, int32 sum)
        : events_(events), phase_(phase), sum_(sum) {}
    void operator()(int32 done) {
        if (done < next_) return;
        next_ = done + std::max(1, sum_ / 100);
        events_.UpdateProgress(phase_, done, sum_);
    }

 private:
    const DatabaseEvents& events_;
    Phase phase_;
    int32 sum_;
    int32 next_ = 1;
};

class KeySorter {
 public:
    KeySorter(DatabaseParts& parts, int32 number) : parts_(parts), keys_(parts.index(number).keys) {}

    std::vector<SortEntry> sorted() {
        collect();
        const char* keys = room_.data();
        std::sort(entries_.begin(), entries_.end(), [keys](const SortEntry& a, const SortEntry& b) {
            if (a.prefix != b.prefix) return a.prefix < b.prefix;
            const std::size_t common = std::min(a.length, b.length);
            const int order =
                common > 8 ? std::memcmp(keys + a.offset + 8, keys + b.offset + 8, common - 8) : 0;
            if (order != 0) return order < 0;
            return a.length != b.length ? a.length < b.length : a.record < b.record;
        });
        return std::move(entries_);
    }

 private:
    void collect() {
        const int32 count = parts_.records();
        entries_.reserve(static_cast<std::size_t>(count));
        room_.reserve(static_cast<std::size_t>(count) * 24);
        Progress progress(parts_.events, phaseRead, count);
        Bytes record;
        for (int32 n = 1; n <= count; ++n) {
            const std::size_t offset = room_.size();
            keys_.appendSortKey(room_, parts_.store.view(n, record));
            const std::size_t length = room_.size() - offset;
            entries_.push_back({prefixOf(room_.data() + offset, length), static_cast<uint32>(n),
                                static_cast<uint32>(length), offset});
            progress(n);
        }
        parts_.store.bytes().check();
    }

    DatabaseParts& parts_;
    const IndexKeys& keys_;
    Bytes room_;
    std::vector<SortEntry> entries_;
};

void writeFlat(const std::vector<SortEntry>& entries, platform::File& file) {
    std::vector<int16> array;
    array.reserve(entries.size());
    for (const auto& entry : entries) array.push_back(static_cast<int16>(entry.record));
    BlockFile(file, false)
        .write(0, {reinterpret_cast<const char*>(array.data()), array.size() * flatFormat::kEntryBytes});
}

}  // namespace

void writeSortedIndex(DatabaseParts& parts, int32 number, platform::File& file) {
    const auto entries = KeySorter(parts, number).sorted();
    if (!parts.big) return writeFlat(entries, file);
    Progress progress(parts.events, phaseWrite, static_cast<int32>(entries.size()));
    TreeWriter writer(file, number);
    int32 done = 0;
    for (const auto& entry : entries) {
        writer.add(static_cast<int32>(entry.record));
        progress(++done);
    }
    writer.finish();
}

}  // namespace tsRtm
