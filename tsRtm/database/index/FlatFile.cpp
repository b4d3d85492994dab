#include "tsRtm/database/index/FlatFile.hpp"

#include <bit>

namespace tsRtm {

static_assert(std::endian::native == std::endian::little, "the array is read and written as it lies");

int32 FlatFile::entries() { return static_cast<int32>(bytes_.refreshSize() / kEntryBytes); }

int32 FlatFile::at(int32 position) {
    int16 record = 0;
    // A growing database shows by its records before it shows here.
    if (bytes_.knownSize() < offsetOf(position) + kEntryBytes) bytes_.refreshSize();
    const std::span<char> into(reinterpret_cast<char*>(&record), sizeof record);
    return bytes_.read(offsetOf(position), into) == sizeof record ? record : 0;
}

void FlatFile::load(int32 count, Array& into) {
    into.assign(static_cast<std::size_t>(count), 0);
    if (into.empty()) return;
    bytes_.refreshSize();
    bytes_.read(0, {reinterpret_cast<char*>(into.data()), into.size() * kEntryBytes});
}

void FlatFile::store(const Array& array, std::size_t first, std::size_t last) {
    if (first >= last) return;
    bytes_.store(first * kEntryBytes,
                 {reinterpret_cast<const char*>(array.data() + first), (last - first) * kEntryBytes});
}

void FlatFile::reserve(int32 entries) {
    const uint64 size = bytes_.refreshSize();
    const uint64 wanted = offsetOf(entries + 1);
    if (size < wanted) bytes_.write(size, Bytes(wanted - size, '\0'));
}

}  // namespace tsRtm
