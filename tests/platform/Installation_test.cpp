// Where the installation is looked for, and the kernel's random bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "tests/support/TempFolder.hpp"
#include "tsRtm/platform/posix/PosixInstallation.hpp"
#include "tsRtm/platform/posix/PosixRandom.hpp"

namespace tsRtm::test {
namespace {

TEST(PosixInstallation, LiesBesideTheCodeOrInTheLibraryFolderOfIt) {
    const TempFolder temp;
    const auto root = std::filesystem::canonical(temp.path());
    for (const char* folder :
         {"tree/bin", "tree/lib/Tessarol", "tree/lib/x86_64-linux-gnu/Tessarol", "other"})
        std::filesystem::create_directories(root / folder);
    const auto found = [&](const char* code) {
        return platform::posix::installationFolderFrom((root / code).string());
    };
    EXPECT_EQ(found("tree/lib"), (root / "tree/lib").string()) << "a shared library";
    const auto ofProgram = std::filesystem::path(found("tree/bin"));
    EXPECT_EQ(ofProgram.lexically_relative(root / "tree").begin()->string(), "lib") << "a program";
    const auto none = found("other");
    EXPECT_EQ(none, found("no such folder"));
    EXPECT_NE(none.find("/lib"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_regular_file(
        std::filesystem::path(platform::posix::installationFolder()) / "Tessarol" / "KeyTS.dat"))
        << "the build tree is an installation, too";
}

TEST(PosixRandom, FillsEveryByte) {
    platform::posix::PosixRandom random;
    ASSERT_EQ(random.check(), platform::SystemError::none);
    // More than one call of the kernel gives; 256 equal bytes in a row come in no lifetime.
    std::vector<std::byte> bytes(1 << 16);
    ASSERT_EQ(random.fill(bytes), platform::SystemError::none);
    for (std::size_t at = 0; at < bytes.size(); at += 256)
        EXPECT_FALSE(std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                 bytes.begin() + static_cast<std::ptrdiff_t>(at) + 256,
                                 [&](std::byte b) { return b == bytes[at]; }));
    EXPECT_EQ(random.fill({}), platform::SystemError::none);
}

}  // namespace
}  // namespace tsRtm::test
