#pragma once
// Texts in and out of the files of the seam, and the openings that the tests of this room ask for.
#include "tests/support/Told.hpp"
#include "tsRtm/platform/FileSystem.hpp"

namespace tsRtm::test {

using namespace platform;

inline constexpr OpenRequest kShared{Access::readWrite, Sharing::all, Disposition::openOrCreate};
inline constexpr OpenRequest kExclusive{Access::readWrite, Sharing::none, Disposition::openOrCreate};
inline constexpr OpenRequest kReader{Access::read, Sharing::all, Disposition::openExisting};
inline constexpr OpenRequest kExclusiveReader{Access::read, Sharing::none, Disposition::openExisting};

// Opens and fails the test where that is refused.
inline std::unique_ptr<File> openFile(FileSystem& files, TextView name, OpenRequest request = kShared) {
    auto file = files.open(name, request);
    EXPECT_EQ(file.error(), SystemError::none) << toUtf8(name);
    return file ? std::move(*file) : nullptr;
}

[[nodiscard]] inline SystemError writeText(File& file, uint64 offset, BytesView text) {
    return file.writeAt(offset, std::as_bytes(std::span(text)));
}

inline Bytes readText(File& file, uint64 offset = 0, std::size_t count = 1000) {
    Bytes into(count, '?');
    const auto got = file.readAt(offset, std::as_writable_bytes(std::span(into)));
    if (!got) return Told::one(got);
    into.resize(*got);
    return into;
}

}  // namespace tsRtm::test
