#pragma once
// The file systems that keep the contract of the seam, each with an empty folder to work in.
#include "tests/platform/FileHelp.hpp"
#include "tests/support/CrashingFiles.hpp"
#include "tests/support/FailingFiles.hpp"
#include "tests/support/MemoryFiles.hpp"
#include "tests/support/TempFolder.hpp"
#include "tsRtm/platform/posix/PosixPlatform.hpp"

namespace tsRtm::test {

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
