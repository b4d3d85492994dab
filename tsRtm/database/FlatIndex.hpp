#pragma once
// The index of a normal database: a sorted array of 16-bit record numbers, little-endian; position p at byte
// 2(p - 1).
#include <vector>

#include "tsRtm/database/IndexForm.hpp"
#include "tsRtm/database/UpdateWatch.hpp"

namespace tsRtm {

namespace flatFormat {
inline constexpr uint64 kEntryBytes = 2;
constexpr uint64 offsetOf(int32 position) noexcept { return kEntryBytes * static_cast<uint64>(position - 1); }
}  // namespace flatFormat

// Knows store and keys by reference.
class FlatIndex final : public IndexForm {
 public:
    FlatIndex(platform::File& file, RecordStore& store, const IndexKeys& keys, UpdateWatch& watch,
              bool shared)
        : bytes_(file), store_(store), keys_(keys), watch_(watch), shared_(shared) {}

    Found locate(const SearchKey& key) override;
    int32 positionOf(int32 record) override;
    int32 recordAt(int32 position) override;
    int32 move(int32 record, const SearchKey* from, const SearchKey& to) override;
    bool erase(int32 record, const SearchKey& key) override;
    void append(int32 record) override;
    int32 total() override { return -1; }
    void forget() override {}
    IndexFindings inspect(int32 index) override;

 private:
    using Array = std::vector<int16>;

    void load();
    void save(std::size_t first, std::size_t last);
    // Lower bound of (key, number) in the loaded array.
    std::size_t placeOf(const SearchKey& key, int32 number) const;

    struct Probe {
        int32 position;
        int32 record;
    };
    Found search(const SearchKey& key);
    bool probesUnchanged();

    BlockFile bytes_;
    RecordStore& store_;
    const IndexKeys& keys_;
    UpdateWatch& watch_;
    bool shared_;
    std::vector<Probe> probes_;  // of the last search
    Array array_;                // the whole file while an operation works on it
    mutable Bytes room_;
};

}  // namespace tsRtm
