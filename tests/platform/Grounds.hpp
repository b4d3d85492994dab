#pragma once
// Texts in and out of the files of the seam, the openings that the tests of this room ask for, and the file
// systems that keep the contract of the seam, each with an empty folder to work in.
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TempFolder.hpp"
#include "tests/support/Told.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

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

inline constexpr const char* kGrounds[] = {"posix", "memory", "memoryWithoutWindows", "failing", "crashing"};

// The parameter is a number in kGrounds.
class OnGround : public testing::TestWithParam<std::size_t> {
 protected:
    OnGround() {
        memory.putFolder(u"/daten");
        memory.offerWindows(GetParam() != 2);
    }

    Text at(TextView entry) const { return folder + u"/" + Text(entry); }
    std::unique_ptr<File> open(TextView entry, OpenRequest request = kShared) {
        return openFile(files, at(entry), request);
    }

    const bool onDisk = GetParam() == 0;
    TempFolder temp;
    MemoryFiles memory;
    FailingFiles failing{memory};
    CrashingFiles crashing{memory};
    FileSystem* const grounds[std::size(kGrounds)] = {&posixPlatform().files, &memory, &memory, &failing,
                                                      &crashing};
    FileSystem& files = *grounds[GetParam()];
    const Text folder = onDisk ? temp.name() : Text(u"/daten");
};

inline std::string groundName(const testing::TestParamInfo<std::size_t>& number) {
    return kGrounds[number.param];
}

}  // namespace tsRtm::test
