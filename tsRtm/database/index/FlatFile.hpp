#pragma once
// The file of a flat index: 16-bit record numbers, little-endian; position p at byte 2(p - 1). All its bytes
// are read and written here.
#include <vector>

#include "tsRtm/database/files/BlockFile.hpp"

namespace tsRtm {

// Not thread-safe. Failures of the file raise as raiseFileFailure tells.
class FlatFile {
 public:
    using Array = std::vector<int16>;

    explicit FlatFile(platform::File& file, bool inPlace = true) : bytes_(file, inPlace) {}

    // Whole entries that the file holds.
    int32 entries();
    // The number at a position; 0 behind the end.
    int32 at(int32 position);
    // `count` entries; those behind the end of the file are 0.
    void load(int32 count, Array& into);
    // Entries first .. last - 1, from 0, of the array to their places.
    void store(const Array& array, std::size_t first, std::size_t last);
    // Room for so many entries before one of them is written over.
    void reserve(int32 entries);

 private:
    static constexpr uint64 kEntryBytes = sizeof(int16);
    static constexpr uint64 offsetOf(int32 position) noexcept {
        return kEntryBytes * static_cast<uint64>(position - 1);
    }

    BlockFile bytes_;
};

}  // namespace tsRtm
